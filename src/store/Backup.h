#pragma once
// Automatic backups of the journal. Once per process, just before the first
// statement that changes user2.mdb, the file is copied - still encrypted, with
// the same password - through the engine's online backup from the connection
// that is about to write, into programFolder()\backup as
// user2-YYYYMMDD-HHMMSS.mdb; only the newest kBackupsKept copies are kept.
// A failing backup never stops the write: it is only reported, in the
// logging category tessaly.backup (stderr).

#include <QDateTime>
#include <QString>

#include <functional>

struct sqlite3;

namespace store {

constexpr int kBackupsKept = 10;

// Called by the database layer before a statement that writes through
// `connection`. Does nothing unless the connection's file is the program's
// user2.mdb and no backup was attempted yet in this process.
void backupBeforeFirstWrite(sqlite3 *connection);

// The folder that receives the copies: programFolder() + "\backup", resolved.
QString backupFolder();

// Copies the open database of `connection` into `target` (a real path that
// must not exist yet), keyed with the journal's password and given the
// permissions of the database's own file. Raises
// base::RuntimeError when the copy cannot be made; no partial file is left.
void copyDatabase(sqlite3 *connection, const QString &target);

// Removes the oldest backups in `folder` (files named like the ones made here,
// other files are left alone), oldest by their time on disk, so that `keep`
// remain; `spare` (a file name in the folder) is never removed and counts
// among those kept.
void pruneBackups(const QString &folder, int keep, const QString &spare = QString());

// Removes what a backup cut short (by a crash or a power loss) left in the
// backup folder: the copy's temporary file and its engine journal. Runs once
// per process, at the first opening of the journal; those files are never
// taken for a copy.
void removeUnfinishedBackups();

// For tests: forgets that this process has already made its backup and
// removed unfinished ones, and replaces the clock that names the copies (an
// empty function restores the system clock).
void resetBackupState();
void setBackupClock(std::function<QDateTime()> clock);

} // namespace store
