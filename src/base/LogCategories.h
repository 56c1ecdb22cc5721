#pragma once
// The logging category of the base library. Its messages go to stderr with
// Qt's default message handler ("tessaly.errors: ..."); QT_LOGGING_RULES can
// silence them.

#include <QLoggingCategory>

namespace base {

// The report of a runtime error that ends the program.
inline const QLoggingCategory &lcErrors()
{
    static const QLoggingCategory category("tessaly.errors");
    return category;
}

} // namespace base
