#pragma once
// The logging category of the ui library (see base/LogCategories.h).

#include <QLoggingCategory>

namespace ui {

// Message-box texts written to stderr instead of being shown.
inline const QLoggingCategory &lcUi()
{
    static const QLoggingCategory category("tessaly.ui");
    return category;
}

} // namespace ui
