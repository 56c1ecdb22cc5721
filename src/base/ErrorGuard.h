#pragma once
// One guard for every event handler, and the continue-on-error helper.
//
// An error that leaves a handler is fatal: it goes to the fatal-error handler,
// which by default prints it and ends the process with status 1. The widget
// layer installs a handler that shows the standard error box first; tests
// install one that records the error instead of ending the process.

#include "RuntimeError.h"

#include <functional>
#include <type_traits>
#include <utility>

namespace base {

using FatalHandler = std::function<void(const RuntimeError &)>;

// Installs a handler and returns the previous one.
FatalHandler setFatalHandler(FatalHandler handler);

// Reports an error that escaped a handler. Returns only if the installed
// handler returns (tests); in the program it ends the process.
void reportFatal(const RuntimeError &error);

// The text of the standard error box: "运行时错误 'N':", a blank line, the description.
QString fatalErrorText(const RuntimeError &error);

// Ends the process at once with the given status, without running the
// destructors of windows or static objects.
[[noreturn]] void endProgram(int status);

// Runs f; any error that leaves it is reported as fatal.
template <typename F>
void guard(F &&f)
{
    try {
        std::forward<F>(f)();
    } catch (const RuntimeError &e) {
        reportFatal(e);
    } catch (const std::bad_alloc &) {
        reportFatal(RuntimeError(7, QStringLiteral("内存不够")));
    } catch (const std::exception &e) {
        reportFatal(RuntimeError(51, QString::fromUtf8(e.what())));
    }
}

// Wraps a callable so that every call runs through guard(); used for slots:
//   connect(button, &QPushButton::clicked, this, guarded([this] { ... }));
// Arguments of the signal that the callable does not take are dropped.
template <typename F>
auto guarded(F f)
{
    return [f = std::move(f)](auto &&...args) mutable {
        guard([&] {
            if constexpr (std::is_invocable_v<F &, decltype(args)...>)
                f(std::forward<decltype(args)>(args)...);
            else
                f();
        });
    };
}

// Continue-on-error: runs one statement, drops a runtime error it raises and
// tells whether it completed.
template <typename F>
bool resumeNext(F &&f)
{
    try {
        std::forward<F>(f)();
        return true;
    } catch (const RuntimeError &) {
        return false;
    }
}

} // namespace base
