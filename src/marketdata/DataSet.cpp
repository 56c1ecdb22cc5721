#include "DataSet.h"
#include "DirList.h"
#include "MarketSettings.h"

#include "base/ErrorGuard.h"
#include "base/Gbk.h"
#include "base/Paths.h"
#include "base/RuntimeError.h"
#include "ui/MsgBox.h"

#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSaveFile>
#include <QVBoxLayout>


namespace marketdata {

using base::resumeNext;

const DataSource kDataSources[7] = {
    {"钱龙", "c:\\ml30", "\\DATA\\SHASE", "\\DATA\\SZNSE", nullptr},
    {"胜龙", "C:\\slon", "\\Data\\Sh", "\\Data\\Sz", nullptr},
    {"分析家", "c:\\superstk", nullptr, nullptr, nullptr},
    {"Csv Text", "c:\\csvtext", nullptr, nullptr, "格式：YYYY/MM/DD,OPEN,HIGH,LOW,CLOSE,VOLUME,OPENINT"},
    {"GET Text", "c:\\gettext", nullptr, nullptr, "格式：MM/DD/YYYY,OPEN,HIGH,LOW,CLOSE,VOLUME,OPENINT"},
    {"MetaStock Text", "c:\\metatext", nullptr, nullptr, "格式：YYYYMMDD,OPEN,HIGH,LOW,CLOSE,VOLUME,OPENINT"},
    {"Time Trader Text", "c:\\ttext", nullptr, nullptr, "格式：MM/DD/YYYY,OPEN,HIGH,LOW,CLOSE,VOLUME,OPENINT"},
};

namespace {

QString dateSetName()
{
    return base::programFolder() + QStringLiteral("\\dateset.dat");
}

QLabel *label(const char *name, const QString &text, QWidget *parent)
{
    auto *l = new QLabel(text, parent);
    l->setObjectName(QLatin1String(name));
    return l;
}

QLineEdit *textBox(const char *name, QWidget *parent)
{
    auto *t = new QLineEdit(parent);
    t->setObjectName(QLatin1String(name));
    return t;
}

} // namespace

DataSet::DataSet(QWidget *parent) : ui::Form(parent)
{
    setObjectName(QStringLiteral("DataSet"));
    setWindowTitle(QStringLiteral("数据路径"));

    Frame1 = new QGroupBox(QStringLiteral("数据路径设置"), this);
    Frame1->setObjectName(QStringLiteral("Frame1"));
    Label1 = label("Label1", QStringLiteral("数据格式："), Frame1);
    Label2 = label("Label2", QStringLiteral("数据路径："), Frame1);
    Label3 = label("Label3", QStringLiteral("上海路径"), Frame1);
    Label4 = label("Label4", QStringLiteral("深圳路径"), Frame1);
    Label5 = label("Label5", QString(), Frame1);
    Combo1 = new QComboBox(Frame1);
    Combo1->setObjectName(QStringLiteral("Combo1"));
    Text1 = textBox("Text1", Frame1);
    Text2 = textBox("Text2", Frame1);
    Text3 = textBox("Text3", Frame1);
    Drive1 = new QComboBox(Frame1);
    Drive1->setObjectName(QStringLiteral("Drive1"));
    Drive1->addItems(driveTexts());
    Drive1->setCurrentIndex(0); // "/", the drive of the folder the list starts in; no change event yet
    Dir1 = new DirList(Frame1);
    Dir1->setObjectName(QStringLiteral("Dir1"));
    resumeNext([&] { Dir1->setPath(QDir::homePath()); }); // the user's home, where his data usually lies
    Command1 = ui::button(this, "Command1", QStringLiteral("确定"));
    Command2 = ui::button(this, "Command2", QStringLiteral("取消"));

    auto *grid = new QGridLayout(Frame1);
    grid->addWidget(Label1, 0, 0);
    grid->addWidget(Combo1, 0, 1);
    grid->addWidget(Label2, 1, 0);
    grid->addWidget(Text1, 1, 1);
    grid->addWidget(Label3, 2, 0);
    grid->addWidget(Text2, 2, 1);
    grid->addWidget(Label4, 3, 0);
    grid->addWidget(Text3, 3, 1);
    grid->addWidget(Label5, 4, 0, 1, 2);
    grid->addWidget(Drive1, 0, 2);
    grid->addWidget(Dir1, 1, 2, 4, 1);
    grid->setColumnMinimumWidth(1, 260);

    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(Command1);
    buttons->addWidget(Command2);
    auto *outer = new QVBoxLayout(this);
    outer->addWidget(Frame1);
    outer->addLayout(buttons);

    connect(Combo1, &QComboBox::currentIndexChanged, this, base::guarded([this](int i) { comboClick(i); }));
    connect(Text1, &QLineEdit::textChanged, this, base::guarded([this](const QString &) { text1Change(); }));
    connect(Dir1, &DirList::pathChanged, this, base::guarded([this](const QString &) { dir1Change(); }));
    connect(Drive1, &QComboBox::currentIndexChanged, this, base::guarded([this](int) { drive1Change(); }));
    connect(Command1, &QPushButton::clicked, this, base::guarded([this](bool) { command1Click(); }));
    connect(Command2, &QPushButton::clicked, this, base::guarded([this](bool) { unload(); }));
}

void DataSet::formLoad()
{
    // The list starts with no selection: selecting a source fills Text1.
    {
        const QSignalBlocker block(Combo1);
        Combo1->clear();
        for (const DataSource &s : kDataSources)
            Combo1->addItem(QString::fromUtf8(s.listText));
        Combo1->setCurrentIndex(-1);
    }
    readDateSet();
}

void DataSet::GetDateSet()
{
    if (!isLoaded())
        load();
    readDateSet();
}

void DataSet::readDateSet()
{
    int16_t index = 0;
    QString directory;
    const QString name = dateSetName();
    if (base::fileExists(name)) {
        QFile f(base::resolvePath(name));
        if (f.open(QIODevice::ReadOnly))
            readDateSetItems(base::fromGbk(f.readAll()), index, directory);
        resumeNext([&] { selectSource(index); });
        resumeNext([&] { Text1->setText(directory); });
    } else {
        resumeNext([&] { selectSource(0); });
    }
    setDataPath(directory);
    setDataFormat(index);
}

void DataSet::selectSource(int16_t index)
{
    if (index < 0 || index >= Combo1->count())
        throw base::RuntimeError(380, QStringLiteral("无效的属性值"));
    Combo1->setCurrentIndex(index);
}

void DataSet::comboClick(int index)
{
    if (index < 0 || index > 6)
        return;
    const DataSource &s = kDataSources[index];
    Text1->setText(QString::fromUtf8(s.defaultDir));
    if (s.shanghaiSubPath) {
        Text2->setText(Text1->text() + QString::fromLatin1(s.shanghaiSubPath));
        Text3->setText(Text1->text() + QString::fromLatin1(s.shenzhenSubPath));
    } else if (index == 2) {
        Text2->setText(Text1->text());
        Text3->setText(Text1->text());
    }
    if (s.formatHint)
        Label5->setText(QString::fromUtf8(s.formatHint));
}

void DataSet::text1Change()
{
    const int index = Combo1->currentIndex();
    if (index < 0 || index > 6)
        return;
    const DataSource &s = kDataSources[index];
    const QString dir = Text1->text();
    Text2->setText(s.shanghaiSubPath ? dir + QString::fromLatin1(s.shanghaiSubPath) : dir);
    Text3->setText(s.shenzhenSubPath ? dir + QString::fromLatin1(s.shenzhenSubPath) : dir);
}

void DataSet::dir1Change()
{
    resumeNext([&] { Text1->setText(Dir1->path()); });
}

void DataSet::drive1Change()
{
    resumeNext([&] {
        const QString drive = Drive1->currentText();
        Dir1->setPath(drive == QStringLiteral("/") ? drive : drive + u'\\');
    });
}

void DataSet::command1Click()
{
    const int index = Combo1->currentIndex();
    if (index == 0 || index == 1) {
        const bool shanghai = base::dirExists(Text2->text());
        const bool shenzhen = base::dirExists(Text3->text());
        if (!shanghai)
            resumeNext([] { ui::msgBox(QStringLiteral("上海目录错误")); });
        if (!shenzhen)
            resumeNext([] { ui::msgBox(QStringLiteral("深圳目录错误")); });
        if (!shanghai || !shenzhen)
            return;
    } else if (!base::dirExists(Text1->text())) {
        resumeNext([] { ui::msgBox(QStringLiteral("没有这个目录")); });
        return;
    }
    resumeNext([&] { SaveDateSet(); });
    resumeNext([&] { unload(); });
}

void DataSet::SaveDateSet()
{
    const auto index = static_cast<int16_t>(Combo1->currentIndex());
    const QString directory = Text1->text();
    // Written beside the old file and renamed over it: a crash or a full disk
    // leaves the previous settings whole, never an empty or half file.
    QSaveFile f(base::resolvePath(dateSetName()));
    f.setDirectWriteFallback(true); // a folder that only lets the file itself be written
    const QByteArray bytes = dateSetFileBytes(index, directory);
    if (!f.open(QIODevice::WriteOnly) || f.write(bytes) != bytes.size() || !f.commit())
        throw base::RuntimeError(75, QStringLiteral("路径/文件访问错误"));
    setDataPath(directory);
    setDataFormat(index);
}

} // namespace marketdata
