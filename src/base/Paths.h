#pragma once
// The program folder and the one resolver that turns the file names the
// program builds (Windows-style texts such as "c:\ml30\data\shase\day\600000.day"
// or programFolder() + "\user2.mdb") into real paths on this machine.

#include <QString>

namespace base {

// The folder every file of the program is looked up in. The executable's
// folder when it holds a user2.mdb (a portable program folder, as in the
// build tree); otherwise the user's data folder. A test may point it elsewhere.
QString programFolder();
void setProgramFolder(const QString &folder);

// The user's own data folder (~/.local/share/Tessaly on Linux).
QString userDataFolder();

// Resolves a path text: "\" and "/" both separate components; a component is
// matched case-insensitively when the exact name is missing; a drive-letter
// path "X:\..." is looked up under the Wine prefix ($WINEPREFIX or ~/.wine,
// its dosdevices/x: entry). A path that does not exist comes back with the
// components that could not be matched as written.
QString resolvePath(const QString &text);

// A path text as the user is shown it: every "\" or "/" the native separator.
QString nativeSeparators(const QString &text);

// Existence tests on resolved paths.
bool fileExists(const QString &text);
bool dirExists(const QString &text);

} // namespace base
