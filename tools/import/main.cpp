// tessaly-import [--folder DIR] --user NAME --password PW [--dry-run] FILE
// Imports a broker's statement into the journal of NAME, as the window
// "导入交割单" does; --dry-run prints the preview as CSV and stores nothing.

#include "base/Paths.h"
#include "base/RuntimeError.h"
#include "import/ImportStore.h"
#include "store/Accounts.h"
#include "store/FeeRates.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QStringList>

#include <cstdio>

namespace {

const char kUsage[] = "usage: tessaly-import [--folder DIR] --user NAME --password PW [--dry-run] FILE\n";

QString csvCell(const QString &text)
{
    if (!text.contains(u',') && !text.contains(u'"') && !text.contains(u'\n'))
        return text;
    QString q = text;
    q.replace(u'"', QStringLiteral("\"\""));
    return u'"' + q + u'"';
}

void printLine(const QStringList &cells)
{
    QStringList quoted;
    for (const QString &c : cells)
        quoted << csvCell(c);
    std::printf("%s\n", quoted.join(u',').toUtf8().constData());
}

int fail(const QString &reason)
{
    std::fprintf(stderr, "tessaly-import: %s\n", reason.toUtf8().constData());
    return 1;
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    // Without --folder the journal is the program's: beside the executable in
    // a portable folder, otherwise the user's data folder of Tessaly.
    QCoreApplication::setApplicationName(QStringLiteral("Tessaly"));
    const QStringList args = app.arguments();
    QString folder, user, password, file;
    bool dryRun = false;
    for (int i = 1; i < args.size(); ++i) {
        const QString &a = args[i];
        const bool hasValue = i + 1 < args.size();
        if (a == u"--folder" && hasValue)
            folder = args[++i];
        else if (a == u"--user" && hasValue)
            user = args[++i];
        else if (a == u"--password" && hasValue)
            password = args[++i];
        else if (a == u"--dry-run")
            dryRun = true;
        else if (!a.startsWith(u"--") && file.isEmpty())
            file = a;
        else
            file.clear(), i = int(args.size()); // unknown option: usage below
    }
    if (user.isEmpty() || file.isEmpty()) {
        std::fputs(kUsage, stderr);
        return 2;
    }
    if (!folder.isEmpty())
        base::setProgramFolder(QFileInfo(folder).absoluteFilePath());

    try {
        store::Database db = store::openUserDatabase();
        store::Recordset rs;
        const store::LoginResult login =
            store::checkLogin(db, rs, user, password, store::LoginButton::Confirm);
        if (!login.accepted)
            return fail(QStringLiteral("用户名或密码错误！"));
        store::loadFeeValues(db);
        const importer::JournalState journal = importer::readJournalState(db, login.name);
        db.close();

        const importer::StatementTable table = importer::readStatementFile(file);
        if (!table.error.isEmpty())
            return fail(table.error);
        const QString problem = importer::mappingProblem(table.columns);
        if (!problem.isEmpty())
            return fail(problem);
        const QList<importer::PreviewRow> rows = importer::classify(table, table.columns, journal);
        const importer::PreviewCounts counts = importer::countRows(rows);

        if (dryRun) {
            printLine(importer::previewHeadings());
            for (const importer::PreviewRow &row : rows)
                printLine(importer::previewCells(row));
            return 0;
        }
        if (counts.trades + counts.deposits + counts.withdrawals + counts.actions == 0)
            return fail(QStringLiteral("没有可导入的行：") + importer::countsText(counts));
        const importer::StoreResult r = importer::storeImport(rows, login.name, QFileInfo(file).fileName());
        std::printf("%s\n", importer::countsText({r.stored.trades, r.stored.deposits, r.stored.withdrawals,
                                                  r.stored.actions, r.alreadyImported, r.skipped})
                                .toUtf8()
                                .constData());
    } catch (const base::RuntimeError &e) {
        return fail(QStringLiteral("导入失败，没有保存任何一行：") + e.description());
    }
    return 0;
}
