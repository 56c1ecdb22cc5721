#pragma once
// The runtime errors the journal code raises itself (not the engine's own
// failures, which Engine.h maps).

#include "Database.h"

namespace store {

[[noreturn]] inline void raise(int number, const QString &description)
{
    throw base::RuntimeError(number, description);
}

[[noreturn]] inline void raiseNotSet() { raise(ErrObjectNotSet, QStringLiteral("对象变量或 With 块变量未设置")); }

[[noreturn]] inline void raiseClosed() { raise(ErrObjectClosed, QStringLiteral("对象无效或不再被设置。")); }

[[noreturn]] inline void raiseNoCurrentRecord() { raise(ErrNoCurrentRecord, QStringLiteral("无当前记录。")); }

[[noreturn]] inline void raiseRecordDeleted() { raise(ErrRecordDeleted, QStringLiteral("记录已删除。")); }

[[noreturn]] inline void raiseUpdateWithoutEdit()
{
    raise(ErrUpdateWithoutEdit, QStringLiteral("更新或取消更新时没有 AddNew 或 Edit。"));
}

[[noreturn]] inline void raiseConversion() { raise(ErrConversion, QStringLiteral("数据类型转换错误。")); }

} // namespace store
