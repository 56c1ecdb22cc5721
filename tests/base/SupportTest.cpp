// Paths, the ANSI code page and the error guard.
#include "base/ErrorGuard.h"
#include "base/Gbk.h"
#include "base/Paths.h"

#include "support/Helpers.h"

using namespace base;

namespace {
void touch(const QString &path)
{
    QDir().mkpath(QFileInfo(path).path());
    QFile f(path);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
}
} // namespace

TEST(PathResolver, BackslashesAndLetterCaseOfEveryComponentTheExactNameFirst)
{
    QTemporaryDir dir;
    touch(dir.path() + "/DATA/SHASE/DAY/600000.DAY");
    const QString expected = dir.path() + "/DATA/SHASE/DAY/600000.DAY";
    EXPECT_EQ(resolvePath(dir.path() + "\\data\\shase\\day\\600000.day"), expected);
    EXPECT_EQ(resolvePath(dir.path() + "/Data/ShAsE\\day/600000.Day"), expected);
    // A doubled separator (a directory typed with a trailing backslash) still resolves.
    EXPECT_EQ((std::vector<bool>{fileExists(dir.path() + "\\data\\shase\\day\\600000.day"), dirExists(dir.path() + "\\data\\shase"),
                                 fileExists(dir.path() + "\\data\\shase"), fileExists(dir.path() + "\\data\\sznse\\day\\000001.day"),
                                 fileExists(QString()), fileExists(dir.path() + "\\\\data\\shase\\day\\600000.day")}),
              (std::vector<bool>{true, true, false, false, false, true}));
    // The exact name wins over one in another case.
    touch(dir.path() + "/a/File");
    touch(dir.path() + "/a/file");
    EXPECT_EQ(resolvePath(dir.path() + "\\a\\file"), dir.path() + "/a/file");
    EXPECT_EQ(resolvePath(dir.path() + "\\a\\File"), dir.path() + "/a/File");
}

TEST(CodePage, GbkRoundTripAndInvalidBytes)
{
    const QString text = QStringLiteral("600000浦发银行 Ａ股指数");
    const QByteArray bytes = toGbk(text);
    EXPECT_EQ(bytes.left(8), QByteArray("600000\xC6\xD6")); // 浦 in GBK
    EXPECT_EQ(fromGbk(bytes), text);
    // A lone lead byte at the end and a stray byte decode without losing the rest.
    const QString broken = fromGbk(QByteArray("ab\x81") );
    EXPECT_TRUE(broken.startsWith("ab"));
    EXPECT_EQ(fromGbk(QByteArray("\xFF" "xyz")).right(3), "xyz");
    EXPECT_EQ(fromGbk(QByteArray()), "");
}

TEST(ErrorGuard, AnEscapingErrorReachesTheFatalHandlerOnce)
{
    std::vector<int> seen;
    auto old = setFatalHandler([&](const RuntimeError &e) { seen.push_back(e.number()); });
    guard([] { raiseOverflow(); });
    guard([] {});
    auto slot = guarded([](int n) {
        if (n > 0)
            raiseDivisionByZero();
    });
    slot(0);
    slot(1);
    setFatalHandler(old);
    EXPECT_EQ(seen, (std::vector<int>{ErrOverflow, ErrDivisionByZero}));
}

TEST(ErrorGuard, StandardErrorText)
{
    EXPECT_EQ(fatalErrorText(RuntimeError(6, QStringLiteral("溢出"))), QStringLiteral("运行时错误 '6':\n\n溢出"));
}
