#pragma once
// The logging category of the store library (see base/LogCategories.h).

#include <QLoggingCategory>

namespace store {

// A backup of the database that failed (the write goes on without one).
inline const QLoggingCategory &lcBackup()
{
    static const QLoggingCategory category("tessaly.backup");
    return category;
}

} // namespace store
