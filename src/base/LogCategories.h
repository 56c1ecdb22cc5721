#pragma once
// Each library declares its logging categories in its LogCategories.h and
// defines each in the file that writes to it. The messages go to stderr
// through Qt's default handler ("tessaly.errors: ..."); QT_LOGGING_RULES
// can silence them.

#include <QLoggingCategory>

namespace base {

// tessaly.errors: the report of a runtime error that ends the program.
Q_DECLARE_LOGGING_CATEGORY(lcErrors)

} // namespace base
