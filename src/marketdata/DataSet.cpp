#include "DataSet.h"
#include "DirList.h"
#include "MarketSettings.h"

#include "base/ErrorGuard.h"
#include "base/Gbk.h"
#include "base/Paths.h"
#include "base/RuntimeError.h"
#include "ui/Controls.h"
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

const DataSource kDataSources[kDataSourceCount] = {
    {"钱龙", "c:\\ml30", "\\DATA\\SHASE", "\\DATA\\SZNSE", nullptr},
    {"胜龙", "C:\\slon", "\\Data\\Sh", "\\Data\\Sz", nullptr},
    {"分析家", "c:\\superstk", nullptr, nullptr, nullptr},
    {"Csv Text", "c:\\csvtext", nullptr, nullptr, "格式：YYYY/MM/DD,OPEN,HIGH,LOW,CLOSE,VOLUME,OPENINT"},
    {"GET Text", "c:\\gettext", nullptr, nullptr, "格式：MM/DD/YYYY,OPEN,HIGH,LOW,CLOSE,VOLUME,OPENINT"},
    {"MetaStock Text", "c:\\metatext", nullptr, nullptr, "格式：YYYYMMDD,OPEN,HIGH,LOW,CLOSE,VOLUME,OPENINT"},
    {"Time Trader Text", "c:\\ttext", nullptr, nullptr, "格式：MM/DD/YYYY,OPEN,HIGH,LOW,CLOSE,VOLUME,OPENINT"},
    {"通达信", "c:\\new_tdx", "\\vipdoc\\sh\\lday", "\\vipdoc\\sz\\lday", "格式：通达信 vipdoc 日线"},
};

namespace {

QString dateSetName() { return base::programFolder() + QStringLiteral("\\dateset.dat"); }

// The list row of an index, null outside the list.
const DataSource *sourceAt(int index)
{
    return index >= 0 && index < kDataSourceCount ? &kDataSources[index] : nullptr;
}

} // namespace

DataSet::DataSet(QWidget *parent) : ui::Form(parent)
{
    setObjectName(QStringLiteral("DataSet"));
    setWindowTitle(QStringLiteral("数据路径"));

    m_Frame1 = ui::frame(this, "Frame1", QStringLiteral("数据路径设置"));
    m_Label1 = ui::label(m_Frame1, "Label1", QStringLiteral("数据格式："));
    m_Label2 = ui::label(m_Frame1, "Label2", QStringLiteral("数据路径："));
    m_Label3 = ui::label(m_Frame1, "Label3", QStringLiteral("上海路径"));
    m_Label4 = ui::label(m_Frame1, "Label4", QStringLiteral("深圳路径"));
    m_Label5 = ui::label(m_Frame1, "Label5");
    m_Combo1 = ui::comboBox(m_Frame1, "Combo1");
    m_Text1 = ui::textBox(m_Frame1, "Text1");
    m_Text2 = ui::textBox(m_Frame1, "Text2");
    m_Text3 = ui::textBox(m_Frame1, "Text3");
    m_Drive1 = ui::comboBox(m_Frame1, "Drive1");
    m_Drive1->addItems(driveTexts());
    m_Drive1->setCurrentIndex(0); // "/", the drive of the folder the list starts in; no change event yet
    m_Dir1 = ui::named(new DirList(m_Frame1), "Dir1");
    resumeNext([&] { m_Dir1->setPath(QDir::homePath()); }); // the user's home, where his data usually lies
    m_Command1 = ui::button(this, "Command1", QStringLiteral("确定"));
    m_Command2 = ui::button(this, "Command2", QStringLiteral("取消"));

    auto *grid = new QGridLayout(m_Frame1);
    grid->addWidget(m_Label1, 0, 0);
    grid->addWidget(m_Combo1, 0, 1);
    grid->addWidget(m_Label2, 1, 0);
    grid->addWidget(m_Text1, 1, 1);
    grid->addWidget(m_Label3, 2, 0);
    grid->addWidget(m_Text2, 2, 1);
    grid->addWidget(m_Label4, 3, 0);
    grid->addWidget(m_Text3, 3, 1);
    grid->addWidget(m_Label5, 4, 0, 1, 2);
    grid->addWidget(m_Drive1, 0, 2);
    grid->addWidget(m_Dir1, 1, 2, 4, 1);
    grid->setColumnMinimumWidth(1, 260);

    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(m_Command1);
    buttons->addWidget(m_Command2);
    auto *outer = new QVBoxLayout(this);
    outer->addWidget(m_Frame1);
    outer->addLayout(buttons);

    connect(m_Combo1, &QComboBox::currentIndexChanged, this, base::guarded([this](int i) { onCombo1Click(i); }));
    connect(m_Text1, &QLineEdit::textChanged, this, base::guarded([this](const QString &) { onText1Change(); }));
    connect(m_Dir1, &DirList::pathChanged, this, base::guarded([this](const QString &) { onDir1Change(); }));
    connect(m_Drive1, &QComboBox::currentIndexChanged, this, base::guarded([this](int) { onDrive1Change(); }));
    connect(m_Command1, &QPushButton::clicked, this, base::guarded([this](bool) { onCommand1Click(); }));
    connect(m_Command2, &QPushButton::clicked, this, base::guarded([this](bool) { unload(); }));
}

void DataSet::formLoad()
{
    // The list starts with no selection: selecting a source fills Text1.
    {
        const QSignalBlocker block(m_Combo1);
        m_Combo1->clear();
        for (const DataSource &s : kDataSources)
            m_Combo1->addItem(QString::fromUtf8(s.listText));
        m_Combo1->setCurrentIndex(-1);
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
        resumeNext([&] { m_Text1->setText(directory); });
    } else {
        resumeNext([&] { selectSource(0); });
    }
    setDataPath(directory);
    setDataFormat(index);
}

void DataSet::selectSource(int16_t index)
{
    if (index < 0 || index >= m_Combo1->count())
        throw base::RuntimeError(380, QStringLiteral("无效的属性值"));
    m_Combo1->setCurrentIndex(index);
}

void DataSet::onCombo1Click(int index)
{
    const DataSource *s = sourceAt(index);
    if (!s)
        return;
    m_Text1->setText(QString::fromUtf8(s->defaultDir));
    if (s->shanghaiSubPath) {
        m_Text2->setText(m_Text1->text() + QString::fromLatin1(s->shanghaiSubPath));
        m_Text3->setText(m_Text1->text() + QString::fromLatin1(s->shenzhenSubPath));
    } else if (index == 2) {
        m_Text2->setText(m_Text1->text());
        m_Text3->setText(m_Text1->text());
    }
    if (s->formatHint)
        m_Label5->setText(QString::fromUtf8(s->formatHint));
}

void DataSet::onText1Change()
{
    const DataSource *s = sourceAt(m_Combo1->currentIndex());
    if (!s)
        return;
    const QString dir = m_Text1->text();
    m_Text2->setText(s->shanghaiSubPath ? dir + QString::fromLatin1(s->shanghaiSubPath) : dir);
    m_Text3->setText(s->shenzhenSubPath ? dir + QString::fromLatin1(s->shenzhenSubPath) : dir);
}

void DataSet::onDir1Change()
{
    resumeNext([&] { m_Text1->setText(m_Dir1->path()); });
}

void DataSet::onDrive1Change()
{
    resumeNext([&] {
        const QString drive = m_Drive1->currentText();
        m_Dir1->setPath(drive == QStringLiteral("/") ? drive : drive + u'\\');
    });
}

void DataSet::onCommand1Click()
{
    // Sources with their own Shanghai and Shenzhen folders check both.
    const DataSource *s = sourceAt(m_Combo1->currentIndex());
    if (s && s->shanghaiSubPath) {
        const bool shanghai = base::dirExists(m_Text2->text());
        const bool shenzhen = base::dirExists(m_Text3->text());
        if (!shanghai)
            resumeNext([] { ui::msgBox(QStringLiteral("上海目录错误")); });
        if (!shenzhen)
            resumeNext([] { ui::msgBox(QStringLiteral("深圳目录错误")); });
        if (!shanghai || !shenzhen)
            return;
    } else if (!base::dirExists(m_Text1->text())) {
        resumeNext([] { ui::msgBox(QStringLiteral("没有这个目录")); });
        return;
    }
    resumeNext([&] { SaveDateSet(); });
    resumeNext([&] { unload(); });
}

void DataSet::SaveDateSet()
{
    const auto index = static_cast<int16_t>(m_Combo1->currentIndex());
    const QString directory = m_Text1->text();
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
