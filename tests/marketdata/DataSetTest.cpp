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

TEST_F(DataSetTest, ControlsAndCaptions)
{
    DataSet w;
    EXPECT_EQ(w.windowTitle(), QStringLiteral("数据路径"));
    const struct {
        const char *name;
        const char *text;
    } labels[] = {{"Label1", "数据格式："}, {"Label2", "数据路径："}, {"Label3", "上海路径"}, {"Label4", "深圳路径"}, {"Label5", ""}};
    for (const auto &l : labels)
        EXPECT_EQ(child<QLabel>(w, l.name)->text(), QString::fromUtf8(l.text));
    EXPECT_EQ(child<QPushButton>(w, "Command1")->text(), QStringLiteral("确定"));
    EXPECT_EQ(child<QPushButton>(w, "Command2")->text(), QStringLiteral("取消"));
    EXPECT_NE(w.findChild<QWidget *>(QStringLiteral("Drive1")), nullptr);
    EXPECT_NE(w.findChild<QWidget *>(QStringLiteral("Dir1")), nullptr);
    w.show();
    const QStringList expected{"钱龙", "胜龙", "分析家", "Csv Text", "GET Text", "MetaStock Text", "Time Trader Text"};
    QStringList items;
    for (int i = 0; i < combo(w)->count(); ++i)
        items << combo(w)->itemText(i);
    EXPECT_EQ(items, expected);
}

TEST_F(DataSetTest, NoFileShowsQianlongButLeavesPathEmpty)
{
    DataSet w; // never shown, as the main window uses it
    w.GetDateSet();
    EXPECT_EQ(combo(w)->currentIndex(), 0);
    EXPECT_EQ(text(w, "Text1")->text(), QStringLiteral("c:\\ml30"));
    EXPECT_EQ(text(w, "Text2")->text(), QStringLiteral("c:\\ml30\\DATA\\SHASE"));
    EXPECT_EQ(text(w, "Text3")->text(), QStringLiteral("c:\\ml30\\DATA\\SZNSE"));
    EXPECT_EQ(DataPath(), QString());
    EXPECT_EQ(DataFormat(), 0);
    EXPECT_FALSE(w.isVisible());
}

TEST_F(DataSetTest, SelectingSourcesSetsPathsAndHints)
{
    DataSet w;
    w.show();
    QLabel *hint = child<QLabel>(w, "Label5");
    combo(w)->setCurrentIndex(1);
    EXPECT_EQ(text(w, "Text1")->text(), QStringLiteral("C:\\slon"));
    EXPECT_EQ(text(w, "Text2")->text(), QStringLiteral("C:\\slon\\Data\\Sh"));
    EXPECT_EQ(text(w, "Text3")->text(), QStringLiteral("C:\\slon\\Data\\Sz"));
    combo(w)->setCurrentIndex(2);
    EXPECT_EQ(text(w, "Text2")->text(), QStringLiteral("c:\\superstk"));
    EXPECT_EQ(text(w, "Text3")->text(), QStringLiteral("c:\\superstk"));
    EXPECT_EQ(hint->text(), QString());
    combo(w)->setCurrentIndex(3);
    EXPECT_EQ(hint->text(), QStringLiteral("格式：YYYY/MM/DD,OPEN,HIGH,LOW,CLOSE,VOLUME,OPENINT"));
    combo(w)->setCurrentIndex(0); // the CSV hint stays
    EXPECT_EQ(hint->text(), QStringLiteral("格式：YYYY/MM/DD,OPEN,HIGH,LOW,CLOSE,VOLUME,OPENINT"));
    combo(w)->setCurrentIndex(6);
    EXPECT_EQ(hint->text(), QStringLiteral("格式：MM/DD/YYYY,OPEN,HIGH,LOW,CLOSE,VOLUME,OPENINT"));
    EXPECT_EQ(text(w, "Text1")->text(), QStringLiteral("c:\\ttext"));
    combo(w)->setCurrentIndex(5);
    EXPECT_EQ(hint->text(), QStringLiteral("格式：YYYYMMDD,OPEN,HIGH,LOW,CLOSE,VOLUME,OPENINT"));

    // Typing in Text1 recomputes both paths, the text used as typed.
    combo(w)->setCurrentIndex(0);
    QLineEdit *t1 = text(w, "Text1");
    t1->clear();
    QTest::keyClicks(t1, QStringLiteral("d:\\qa\\"));
    EXPECT_EQ(text(w, "Text2")->text(), QStringLiteral("d:\\qa\\\\DATA\\SHASE"));
    combo(w)->setCurrentIndex(4);
    t1->clear();
    QTest::keyClicks(t1, QStringLiteral("e:\\x"));
    EXPECT_EQ(text(w, "Text2")->text(), QStringLiteral("e:\\x"));
    EXPECT_EQ(text(w, "Text3")->text(), QStringLiteral("e:\\x"));
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
