// Errors that end the program: each runs in a child process, which shows the
// standard error box (its text goes to stderr) and exits; the parent then
// checks that the journal was left as it was.
#include "reports/frmCha.h"
#include "reports/frmJyrec.h"
#include "reports/frmYkui.h"
#include "reports/frmZjin.h"

#include "base/ErrorGuard.h"
#include "base/Paths.h"
#include "ui/FlexGrid.h"
#include "ui/MsgBox.h"

#include "support/Helpers.h"

using namespace testjournal;
using namespace reports;

namespace {

const QString kUser = QStringLiteral("ALICE");
QDate day(int d) { return QDate(2024, 5, d); }
Trade trade(const char *code, int d, double price, double shares, bool buy = true)
{
    return {.code = code, .name = "名", .date = day(d), .price = price, .shares = shares, .buy = buy};
}

// The program folder of a test whose ending is checked in a child process.
// The child re-runs the test from its start; it finds the parent's folder
// (already filled) in the environment instead of making and filling its own.
class SharedFolder {
public:
    SharedFolder()
    {
        if (const QByteArray inherited = qgetenv(kFolderVariable); !inherited.isEmpty())
            base::setProgramFolder(QString::fromLocal8Bit(inherited));
        else
            qputenv(kFolderVariable, (m_folder = std::make_unique<TestFolder>())->path().toLocal8Bit());
    }
    ~SharedFolder()
    {
        if (m_folder)
            qunsetenv(kFolderVariable);
    }
    bool inChild() const { return !m_folder; }

private:
    static constexpr const char *kFolderVariable = "TESSALY_REPORTS_TEST_FOLDER";
    std::unique_ptr<TestFolder> m_folder;
};

template <typename Window>
void load(Window &w)
{
    qputenv("TESSALY_ERRORS_TO_STDERR", "1");
    ui::installErrorBox();
    w.load();
}

template <typename Window>
void deleteRow(Window &w, int row)
{
    load(w);
    w.grid()->setRow(row);
    w.template findChild<QAction *>(QStringLiteral("mnudel"))->trigger();
}

} // namespace

TEST(ReportEndings, SixteenBitTotalsAndHeaderRowDeletesEndTheProgram)
{
    const struct {
        const char *what;
        std::function<void()> fill; // in the parent only
        std::function<void()> run;  // in the child
        const char *error;
    } cases[] = {
        {"trade details: sold total above 16 bits",
         [] { addTrades({trade("600000", 1, 5, 20000, false), trade("600000", 2, 5, 12768, false)}); },
         [] { frmJyrec w; w.GetMame(kUser, QString()); load(w); }, "运行时错误 '6':"},
        {"trade details: bought total too",
         [] { addTrades({trade("000001", 1, 5, 32767), trade("000001", 2, 5, 1)}); },
         [] { frmJyrec w; w.GetMame(kUser, QString()); load(w); }, "运行时错误 '6':"},
        {"profit and loss: proceeds above 16 bits",
         [] { addTrades({trade("600000", 1, 10, 3000), trade("600000", 2, 11, 3000, false)}); },
         [] { frmYkui w; w.GetMame(kUser, QString()); load(w); }, "运行时错误 '6':"},
        {"profit and loss: zero shares bought",
         [] { addTrades({trade("600000", 1, 10, 0), trade("600000", 2, 11, 100, false)}); },
         [] { frmYkui w; w.GetMame(kUser, QString()); load(w); }, "运行时错误 '6':"},
        {"stock records: delete with the header row selected",
         [] { addTrades({trade("600000", 1, 10, 100), trade("600000", 2, 11, 100, false)}); },
         [] { frmCha w; w.GetMame(kUser, QString(), QStringLiteral("600000")); deleteRow(w, 0); }, "运行时错误 '3021':"},
        {"fund records: delete with the header row selected",
         [] {
             addCash(1000, true, kUser, day(1), QStringLiteral("a"));
             addCash(300, false, kUser, day(2), QStringLiteral("300"));
         },
         [] { frmZjin w; w.GetMame(kUser, QString()); deleteRow(w, 0); }, "运行时错误 '3021':"},
        {"stock records: the fill stops on an error", [] {},
         [] {
             frmCha w;
             w.GetMame(kUser, QString(), QStringLiteral("600000"));
             load(w);
             base::guard([&] { w.SeachA(QStringLiteral("select * from nowhere")); });
             std::exit(0);
         },
         "运行时错误"},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.what);
        SharedFolder folder;
        if (!folder.inChild())
            c.fill();
        const int trades = count("havewhat"), cash = count("资金表");
        EXPECT_EXIT(c.run(), ::testing::ExitedWithCode(1), c.error);
        EXPECT_EQ(count("havewhat"), trades);
        EXPECT_EQ(count("资金表"), cash);
    }
}
