#pragma once
#include <QLoggingCategory>

namespace store {
// tessaly.backup: a backup of the journal that failed (the write goes on).
Q_DECLARE_LOGGING_CATEGORY(lcBackup)
} // namespace store
