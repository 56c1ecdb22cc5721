#pragma once
// The environment variables through which tests, tools and the benchmark
// drive the program from outside. A user never sets them. Each is read when
// asked, so a test may set or clear one while it runs.

#include <QtGlobal>

namespace base::testhooks {

// TESSALY_MESSAGES_TO_STDERR (any value): message boxes are not shown; their
// text goes to stderr (logging category tessaly.ui). Set by the tests that
// run the program as a child process and by the screenshot tool.
inline bool messagesToStderr() { return qEnvironmentVariableIsSet("TESSALY_MESSAGES_TO_STDERR"); }

inline void setMessagesToStderr(bool on)
{
    if (on)
        qputenv("TESSALY_MESSAGES_TO_STDERR", "1");
    else
        qunsetenv("TESSALY_MESSAGES_TO_STDERR");
}

// TESSALY_ERRORS_TO_STDERR (any value): the standard error box is not shown
// before the program ends; its text goes to stderr in any case (category
// tessaly.errors). Set by ctest for the window suites and by the tests that
// expect the program to end on an error.
inline bool errorsToStderr() { return qEnvironmentVariableIsSet("TESSALY_ERRORS_TO_STDERR"); }

// TESSALY_REPORT_SHOWN=1: the program prints "login-shown" on stdout once the
// login window has been painted, so that start-up can be timed from outside.
// Set by the start-up benchmark and the user-folder test.
inline bool reportShown() { return qEnvironmentVariableIntValue("TESSALY_REPORT_SHOWN") == 1; }

} // namespace base::testhooks
