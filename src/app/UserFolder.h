#pragma once
// The data folder of an installed program: on the first start it is made in
// the user's home and filled from the read-only templates installed with the
// program (the journal and the two stock lists; no demo data).

#include <QString>

namespace app {

// The installed templates, found relative to the executable
// (<prefix>/bin/tessaly and <prefix>/share/tessaly).
QString templateFolder();

// Makes `folder` and copies into it each template it lacks, the journal only
// once it has opened as a journal. Everything is checked before anything is
// written. Returns an empty text, or the message for the user when the folder
// cannot be made or a template is missing or damaged.
QString seedUserFolder(const QString &folder, const QString &templates);

// Before the first window: when the program folder is the user's data folder,
// seeds it. On failure shows the message and returns false.
bool prepareProgramFolder();

} // namespace app
