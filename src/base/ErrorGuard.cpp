#include "ErrorGuard.h"
#include "LogCategories.h"

#include <cstdio>
#include <cstdlib>

namespace base {

Q_LOGGING_CATEGORY(lcErrors, "tessaly.errors")

namespace {

void defaultHandler(const RuntimeError &error)
{
    qCCritical(lcErrors).noquote() << fatalErrorText(error);
    endProgram(1);
}

FatalHandler &currentHandler()
{
    static FatalHandler handler = defaultHandler;
    return handler;
}

} // namespace

FatalHandler setFatalHandler(FatalHandler handler)
{
    FatalHandler old = std::move(currentHandler());
    currentHandler() = handler ? std::move(handler) : FatalHandler(defaultHandler);
    return old;
}

void reportFatal(const RuntimeError &error)
{
    FatalHandler handler = currentHandler();
    handler(error);
}

QString fatalErrorText(const RuntimeError &error)
{
    return QStringLiteral("运行时错误 '%1':\n\n%2").arg(error.number()).arg(error.description());
}

void endProgram(int status)
{
    std::fflush(nullptr);
    std::_Exit(status);
}

} // namespace base
