#pragma once
#include <QLoggingCategory>

namespace ui {
// tessaly.ui: message-box texts written to stderr instead of being shown.
Q_DECLARE_LOGGING_CATEGORY(lcUi)
} // namespace ui
