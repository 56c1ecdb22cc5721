// The DataSet window: sources, paths, messages and the dateset.dat round trip.

#include "base/Gbk.h"
#include "base/Paths.h"
#include "marketdata/DataSet.h"
#include "marketdata/MarketSettings.h"
#include "support/Helpers.h"

using namespace marketdata;

namespace {

class DataSetTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        setDataPath(QStringLiteral("before"));
        setDataFormat(-9);
    }

    QLineEdit *text(DataSet &w, const char *name) { return child<QLineEdit>(w, name); }
    QComboBox *combo(DataSet &w) { return child<QComboBox>(w, "Combo1"); }
    QStringList texts(DataSet &w) { return {text(w, "Text1")->text(), text(w, "Text2")->text(), text(w, "Text3")->text()}; }
    void accept(DataSet &w, int source, const QString &path)
    {
        combo(w)->setCurrentIndex(source);
        retype(text(w, "Text1"), path); // Text2 and Text3 follow as it is typed
        QTest::mouseClick(child<QPushButton>(w, "Command1"), Qt::LeftButton);
    }

    QString dateset() const { return folder.file(QStringLiteral("dateset.dat")); }
    QString makeDir(const QString &dir) const
    {
        QDir().mkpath(folder.path() + u'/' + dir);
        return folder.path() + u'/' + dir;
    }

    TestFolder folder{false};
    QStringList messages;
    const MessageRecorder recording{messages};
};

} // namespace

TEST_F(DataSetTest, SourcesPathsAndHints)
{
    DataSet w;
    w.show();
    EXPECT_EQ(std::make_tuple(combo(w)->count(), combo(w)->itemText(6), combo(w)->itemText(7)),
              std::make_tuple(8, QStringLiteral("Time Trader Text"), QStringLiteral("通达信")));

    // Index, Text1 .. Text3 (empty: not checked), hint. 钱龙 keeps the last hint.
    const QString csv = QStringLiteral("格式：YYYY/MM/DD,OPEN,HIGH,LOW,CLOSE,VOLUME,OPENINT");
    const struct {
        int index;
        QStringList texts;
        QString hint;
    } cases[] = {
        {1, {"C:\\slon", "C:\\slon\\Data\\Sh", "C:\\slon\\Data\\Sz"}, QString()},
        {3, {}, csv},
        {0, {"c:\\ml30", "c:\\ml30\\DATA\\SHASE", "c:\\ml30\\DATA\\SZNSE"}, csv},
        {6, {"c:\\ttext", "c:\\ttext", "c:\\ttext"}, QStringLiteral("格式：MM/DD/YYYY,OPEN,HIGH,LOW,CLOSE,VOLUME,OPENINT")},
        {7, {"c:\\new_tdx", "c:\\new_tdx\\vipdoc\\sh\\lday", "c:\\new_tdx\\vipdoc\\sz\\lday"}, QStringLiteral("格式：通达信 vipdoc 日线")},
    };
    for (const auto &c : cases) {
        combo(w)->setCurrentIndex(c.index);
        if (!c.texts.isEmpty()) {
            EXPECT_EQ(texts(w), c.texts) << c.index;
        }
        EXPECT_EQ(child<QLabel>(w, "Label5")->text(), c.hint) << c.index;
    }
}

TEST_F(DataSetTest, AcceptValidatesSavesAndReadsBack)
{
    const QString ml = makeDir(QStringLiteral("ml/DATA/SHASE")).chopped(11);
    DataSet w;
    w.show();
    accept(w, 0, ml);
    EXPECT_EQ(messages, QStringList{QStringLiteral("深圳目录错误")});
    accept(w, 0, ml + QStringLiteral("x"));
    EXPECT_EQ(std::make_tuple(messages, w.isVisible()), std::make_tuple(QStringList{"深圳目录错误", "上海目录错误", "深圳目录错误"}, true));
    // Other sources test Text1 only; 取消 closes without saving.
    messages.clear();
    accept(w, 3, ml + QStringLiteral("x"));
    EXPECT_EQ(messages, QStringList{QStringLiteral("没有这个目录")});
    QTest::mouseClick(child<QPushButton>(w, "Command2"), Qt::LeftButton);
    EXPECT_EQ(std::make_pair(w.isVisible(), QFile::exists(dateset())), std::make_pair(false, false));

    // The directory test resolves letter case: DATA/sznse is found as DATA/SZNSE.
    makeDir(QStringLiteral("ml/DATA/sznse"));
    DataSet ok;
    ok.show();
    messages.clear();
    accept(ok, 0, ml);
    EXPECT_EQ(std::make_tuple(messages, ok.isVisible(), ::fileBytes(dateset()), DataPath(), DataFormat()),
              std::make_tuple(QStringList(), false, " 0 \r\n" + ml.toLocal8Bit() + "\r\n", ml, int16_t(0)));

    // A Chinese folder name with a comma is saved whole, in GBK, and read
    // back up to the comma.
    const QString comma = makeDir(QStringLiteral("数据,二"));
    DataSet chinese;
    chinese.show();
    accept(chinese, 2, comma);
    EXPECT_EQ(std::make_tuple(::fileBytes(dateset()), DataPath()), std::make_tuple(" 2 \r\n" + base::toGbk(comma) + "\r\n", comma));
    DataSet back;
    back.GetDateSet();
    EXPECT_EQ(std::make_tuple(DataPath(), DataFormat(), text(back, "Text1")->text()), std::make_tuple(comma.chopped(2), int16_t(2), comma.chopped(2)));

    // 通达信 checks both vipdoc folders, found in any letter case, and is read back with its paths.
    const QString tdx = makeDir(QStringLiteral("tdx/vipdoc/sh/lday")).chopped(15);
    DataSet t;
    t.show();
    messages.clear();
    accept(t, 7, tdx);
    makeDir(QStringLiteral("tdx/vipdoc/SZ/Lday"));
    accept(t, 7, tdx);
    EXPECT_EQ(std::make_tuple(messages, ::fileBytes(dateset())), std::make_tuple(QStringList{"深圳目录错误"}, " 7 \r\n" + tdx.toLocal8Bit() + "\r\n"));
    DataSet tdxBack;
    tdxBack.GetDateSet();
    EXPECT_EQ(std::make_tuple(DataFormat(), combo(tdxBack)->currentIndex(), text(tdxBack, "Text2")->text()),
              std::make_tuple(int16_t(7), 7, tdx + QStringLiteral("\\vipdoc\\sh\\lday")));
}

TEST_F(DataSetTest, MissingAndDamagedFilesAreReadStepByStep)
{
    const struct {
        const char *bytes;
        int16_t index;
        const char *path;
        int comboIndex;
        const char *text1;
    } cases[] = {
        {nullptr, 0, "", 0, "c:\\ml30"},                     // no file: 钱龙 shown, no path
        {" 1 \r\n", 1, "", 1, ""},                          // no second line: directory empty
        {" 9 \r\nx:\\data\r\n", 9, "x:\\data", -1, "x:\\data"}, // index the list cannot take
        {"99999\r\nx:\\d\r\n", 0, "x:\\d", 0, "x:\\d"},        // 16-bit overflow: skipped
        {"  4  ,  y:\\e  \r\n", 4, "y:\\e  ", 4, "y:\\e  "},   // blanks around items
        {"", 0, "", 0, ""},                                  // empty file
    };
    for (const auto &c : cases) {
        if (c.bytes)
            ::writeFile(dateset(), c.bytes);
        DataSet w; // never shown, as the main window uses it
        w.GetDateSet();
        EXPECT_FALSE(w.isVisible());
        EXPECT_EQ(std::make_tuple(DataFormat(), DataPath(), combo(w)->currentIndex(), text(w, "Text1")->text()),
                  std::make_tuple(c.index, QLatin1String(c.path), c.comboIndex, QLatin1String(c.text1)))
            << c.bytes;
    }
    EXPECT_EQ(dateSetFileBytes(-1, QStringLiteral("z")) + dateSetFileBytes(12, QString()), QByteArray("-1 \r\nz\r\n 12 \r\n\r\n"));
}

TEST_F(DataSetTest, DriveAndDirectoryListsChooseTheFolder)
{
    // A Wine prefix whose drive c: is a folder of the test and whose d: points nowhere.
    makeDir(QStringLiteral("c/ml30/DATA/SHASE"));
    makeDir(QStringLiteral("c/ml30/DATA/SZNSE"));
    const QString devices = makeDir(QStringLiteral("prefix/dosdevices"));
    ASSERT_TRUE(QFile::link(folder.file(QStringLiteral("c")), devices + QStringLiteral("/c:")));
    ASSERT_TRUE(QFile::link(folder.file(QStringLiteral("gone")), devices + QStringLiteral("/d:")));
    const QByteArray previousPrefix = qgetenv("WINEPREFIX");
    qputenv("WINEPREFIX", folder.file(QStringLiteral("prefix")).toLocal8Bit());
    DataSet w;
    w.show();
    auto *drives = child<QComboBox>(w, "Drive1");
    auto *dirs = child<QListWidget>(w, "Dir1");
    EXPECT_EQ(drives->count(), 3);
    const auto openDir = [&](const QString &name) {
        const QList<QListWidgetItem *> items = dirs->findItems(name, Qt::MatchExactly);
        ASSERT_EQ(items.size(), 1) << name.toStdString();
        QTest::mouseClick(dirs->viewport(), Qt::LeftButton, {}, dirs->visualItemRect(items[0]).center());
        QTest::keyClick(dirs, Qt::Key_Return);
    };
    QTest::keyClick(drives, Qt::Key_Down); // c:
    EXPECT_EQ(texts(w), (QStringList{"c:\\", "c:\\\\DATA\\SHASE", "c:\\\\DATA\\SZNSE"}));
    openDir(QStringLiteral("ml30"));
    openDir(QStringLiteral("DATA"));
    openDir(QStringLiteral(".."));
    EXPECT_EQ(texts(w), (QStringList{"c:\\ml30", "c:\\ml30\\DATA\\SHASE", "c:\\ml30\\DATA\\SZNSE"}));
    QTest::keyClick(drives, Qt::Key_Down); // d: is not ready: the folder stays
    EXPECT_EQ(text(w, "Text1")->text(), "c:\\ml30");
    QTest::mouseClick(child<QPushButton>(w, "Command1"), Qt::LeftButton);
    EXPECT_TRUE(messages.isEmpty()) << messages.join(u'|').toStdString();
    EXPECT_EQ(::fileBytes(dateset()), QByteArray(" 0 \r\nc:\\ml30\r\n"));
    qputenv("WINEPREFIX", previousPrefix);
}
