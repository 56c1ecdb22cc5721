// The DataSet window: sources, paths, messages and the dateset.dat round trip.

#include "base/Gbk.h"
#include "base/Paths.h"
#include "marketdata/DataSet.h"
#include "marketdata/MarketSettings.h"
#include "support/TestFolder.h"
#include "ui/MsgBox.h"

#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <gtest/gtest.h>

#include "marketdata/DirList.h"

using namespace marketdata;

namespace {

class DataSetTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        ui::setMsgBoxRecorder(&messages);
        setDataPath(QStringLiteral("before"));
        setDataFormat(-9);
    }
    void TearDown() override { ui::setMsgBoxRecorder(nullptr); }

    template <typename T>
    T *child(DataSet &w, const char *name)
    {
        T *c = w.findChild<T *>(QLatin1String(name));
        EXPECT_NE(c, nullptr) << name;
        return c;
    }
    QLineEdit *text(DataSet &w, const char *name) { return child<QLineEdit>(w, name); }
    QComboBox *combo(DataSet &w) { return child<QComboBox>(w, "Combo1"); }
    QStringList texts(DataSet &w)
    {
        return {text(w, "Text1")->text(), text(w, "Text2")->text(), text(w, "Text3")->text()};
    }

    QByteArray fileBytes() const
    {
        QFile f(folder.file(QStringLiteral("dateset.dat")));
        return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray("<none>");
    }
    void writeFile(const QByteArray &bytes) const
    {
        QFile f(folder.file(QStringLiteral("dateset.dat")));
        f.open(QIODevice::WriteOnly | QIODevice::Truncate);
        f.write(bytes);
    }
    QString makeDirs(const QStringList &dirs) const
    {
        for (const QString &d : dirs)
            QDir().mkpath(folder.path() + u'/' + d);
        return folder.path();
    }

    TestFolder folder{false};
    QStringList messages;
};

} // namespace

TEST_F(DataSetTest, CaptionsAndSources)
{
    DataSet w;
    const struct {
        const char *name;
        const char *text;
    } captions[] = {{"Label1", "数据格式："}, {"Label2", "数据路径："}, {"Label3", "上海路径"}, {"Label4", "深圳路径"},
                    {"Command1", "确定"},     {"Command2", "取消"}};
    EXPECT_EQ(w.windowTitle(), QStringLiteral("数据路径"));
    for (const auto &c : captions)
        EXPECT_EQ(child<QWidget>(w, c.name)->property("text").toString(), QString::fromUtf8(c.text)) << c.name;
    w.show();
    QStringList items;
    for (int i = 0; i < combo(w)->count(); ++i)
        items << combo(w)->itemText(i);
    EXPECT_EQ(items, (QStringList{"钱龙", "胜龙", "分析家", "Csv Text", "GET Text", "MetaStock Text", "Time Trader Text"}));
}

TEST_F(DataSetTest, NoFileShowsQianlongButLeavesPathEmpty)
{
    DataSet w; // never shown, as the main window uses it
    w.GetDateSet();
    EXPECT_EQ(combo(w)->currentIndex(), 0);
    EXPECT_EQ(texts(w), (QStringList{"c:\\ml30", "c:\\ml30\\DATA\\SHASE", "c:\\ml30\\DATA\\SZNSE"}));
    EXPECT_EQ(DataPath(), QString());
    EXPECT_EQ(DataFormat(), 0);
    EXPECT_FALSE(w.isVisible());
}

TEST_F(DataSetTest, SelectingSourcesSetsPathsAndHints)
{
    DataSet w;
    w.show();
    const QString csv = QStringLiteral("格式：YYYY/MM/DD,OPEN,HIGH,LOW,CLOSE,VOLUME,OPENINT");
    // Index, Text1 .. Text3 (empty: not checked), hint. 钱龙 keeps the last hint.
    const struct {
        int index;
        QStringList texts;
        QString hint;
    } cases[] = {
        {1, {"C:\\slon", "C:\\slon\\Data\\Sh", "C:\\slon\\Data\\Sz"}, QString()},
        {2, {"c:\\superstk", "c:\\superstk", "c:\\superstk"}, QString()},
        {3, {}, csv},
        {0, {"c:\\ml30", "c:\\ml30\\DATA\\SHASE", "c:\\ml30\\DATA\\SZNSE"}, csv},
        {6, {"c:\\ttext", "c:\\ttext", "c:\\ttext"}, QStringLiteral("格式：MM/DD/YYYY,OPEN,HIGH,LOW,CLOSE,VOLUME,OPENINT")},
        {5, {}, QStringLiteral("格式：YYYYMMDD,OPEN,HIGH,LOW,CLOSE,VOLUME,OPENINT")},
    };
    for (const auto &c : cases) {
        combo(w)->setCurrentIndex(c.index);
        if (!c.texts.isEmpty())
            EXPECT_EQ(texts(w), c.texts) << c.index;
        EXPECT_EQ(child<QLabel>(w, "Label5")->text(), c.hint) << c.index;
    }

    // Typing in Text1 recomputes both paths, the text used as typed.
    combo(w)->setCurrentIndex(0);
    QLineEdit *t1 = text(w, "Text1");
    t1->clear();
    QTest::keyClicks(t1, QStringLiteral("d:\\qa\\"));
    EXPECT_EQ(text(w, "Text2")->text(), QStringLiteral("d:\\qa\\\\DATA\\SHASE"));
    combo(w)->setCurrentIndex(4);
    t1->clear();
    QTest::keyClicks(t1, QStringLiteral("e:\\x"));
    EXPECT_EQ(texts(w), (QStringList{"e:\\x", "e:\\x", "e:\\x"}));
}

TEST_F(DataSetTest, AcceptValidatesSavesAndReadsBack)
{
    const QString root = makeDirs({QStringLiteral("ml/DATA/SHASE")});
    DataSet w;
    w.show();
    combo(w)->setCurrentIndex(0);
    text(w, "Text1")->setText(root + QStringLiteral("/ml"));
    QPushButton *ok = child<QPushButton>(w, "Command1");
    QTest::mouseClick(ok, Qt::LeftButton);
    EXPECT_EQ(messages, QStringList{QStringLiteral("深圳目录错误")});
    EXPECT_TRUE(w.isVisible());
    EXPECT_EQ(fileBytes(), QByteArray("<none>"));

    messages.clear();
    text(w, "Text1")->setText(root + QStringLiteral("/missing"));
    QTest::mouseClick(ok, Qt::LeftButton);
    EXPECT_EQ(messages, (QStringList{QStringLiteral("上海目录错误"), QStringLiteral("深圳目录错误")}));

    // The directory test resolves letter case: DATA/sznse is found as DATA/SZNSE.
    messages.clear();
    makeDirs({QStringLiteral("ml/DATA/sznse")});
    text(w, "Text1")->setText(root + QStringLiteral("/ml"));
    QTest::mouseClick(ok, Qt::LeftButton);
    EXPECT_TRUE(messages.isEmpty());
    EXPECT_FALSE(w.isVisible());
    EXPECT_EQ(fileBytes(), " 0 \r\n" + (root + QStringLiteral("/ml")).toLocal8Bit() + "\r\n");
    EXPECT_EQ(DataPath(), root + QStringLiteral("/ml"));
    EXPECT_EQ(DataFormat(), 0);

    // Other sources test Text1 only.
    DataSet other;
    other.show();
    combo(other)->setCurrentIndex(3);
    text(other, "Text1")->setText(root + QStringLiteral("/nowhere"));
    QTest::mouseClick(child<QPushButton>(other, "Command1"), Qt::LeftButton);
    EXPECT_EQ(messages, QStringList{QStringLiteral("没有这个目录")});
    // Cancel closes without saving.
    QTest::mouseClick(child<QPushButton>(other, "Command2"), Qt::LeftButton);
    EXPECT_FALSE(other.isVisible());
    EXPECT_EQ(DataFormat(), 0);

    DataSet again;
    again.GetDateSet();
    EXPECT_EQ(combo(again)->currentIndex(), 0);
    EXPECT_EQ(text(again, "Text1")->text(), root + QStringLiteral("/ml"));
}

TEST_F(DataSetTest, ChineseDirectoryWithCommaIsSavedWholeAndReadToTheComma)
{
    const QString root = makeDirs({QStringLiteral("数据,二")});
    DataSet w;
    w.show();
    combo(w)->setCurrentIndex(2);
    text(w, "Text1")->setText(root + QStringLiteral("/数据,二"));
    QTest::mouseClick(child<QPushButton>(w, "Command1"), Qt::LeftButton);
    EXPECT_EQ(fileBytes(), " 2 \r\n" + base::toGbk(root + QStringLiteral("/数据,二")) + "\r\n");
    EXPECT_EQ(DataPath(), root + QStringLiteral("/数据,二"));

    DataSet back;
    back.GetDateSet();
    EXPECT_EQ(DataPath(), root + QStringLiteral("/数据"));
    EXPECT_EQ(DataFormat(), 2);
    EXPECT_EQ(text(back, "Text1")->text(), root + QStringLiteral("/数据"));
}

TEST_F(DataSetTest, DamagedFilesAreReadStepByStep)
{
    const struct {
        const char *bytes;
        int16_t index;
        const char *path;
        int comboIndex;
        const char *text1;
    } cases[] = {
        {" 1 \r\n", 1, "", 1, ""},                          // no second line: directory empty
        {" 9 \r\nx:\\data\r\n", 9, "x:\\data", -1, "x:\\data"}, // index the list cannot take
        {"abc\r\nx:\\d\r\n", 0, "x:\\d", 0, "x:\\d"},          // no number: index stays 0
        {"99999\r\nx:\\d\r\n", 0, "x:\\d", 0, "x:\\d"},        // 16-bit overflow: skipped
        {"  4  ,  y:\\e  \r\n", 4, "y:\\e  ", 4, "y:\\e  "},   // blanks around items
        {"", 0, "", 0, ""},                                  // empty file
        {"-1 \r\nz\r\n", -1, "z", -1, "z"},
    };
    for (const auto &c : cases) {
        writeFile(c.bytes);
        DataSet w;
        w.GetDateSet();
        EXPECT_EQ(DataFormat(), c.index) << c.bytes;
        EXPECT_EQ(DataPath(), QLatin1String(c.path)) << c.bytes;
        EXPECT_EQ(combo(w)->currentIndex(), c.comboIndex) << c.bytes;
        EXPECT_EQ(text(w, "Text1")->text(), QLatin1String(c.text1)) << c.bytes;
    }
    EXPECT_EQ(dateSetFileBytes(-1, QStringLiteral("z")), QByteArray("-1 \r\nz\r\n"));
    EXPECT_EQ(dateSetFileBytes(12, QString()), QByteArray(" 12 \r\n\r\n"));
}

TEST_F(DataSetTest, DirectoryListSetsText1)
{
    const QString root = makeDirs({QStringLiteral("pick/sub")});
    DataSet w;
    w.show();
    combo(w)->setCurrentIndex(3);
    auto *dir = w.findChild<DirList *>(QStringLiteral("Dir1"));
    ASSERT_NE(dir, nullptr);
    dir->setPath(root + QStringLiteral("/pick"));
    EXPECT_EQ(text(w, "Text1")->text(), root + QStringLiteral("/pick"));
    // Opening a folder in the list follows it.
    const auto items = dir->findItems(QStringLiteral("sub"), Qt::MatchExactly);
    ASSERT_EQ(items.size(), 1);
    emit dir->itemActivated(items[0]);
    EXPECT_EQ(text(w, "Text1")->text(), root + QStringLiteral("/pick/sub"));
    EXPECT_EQ(text(w, "Text3")->text(), root + QStringLiteral("/pick/sub"));
    emit dir->itemActivated(dir->item(0)); // ".."
    EXPECT_EQ(text(w, "Text1")->text(), root + QStringLiteral("/pick"));
}
