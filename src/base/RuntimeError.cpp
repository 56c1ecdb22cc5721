#include "RuntimeError.h"

namespace base {

RuntimeError::RuntimeError(int number, const QString &description)
    : std::runtime_error(description.toStdString()), m_number(number), m_description(description)
{}

void raiseOverflow() { throw RuntimeError(ErrOverflow, QStringLiteral("溢出")); }
void raiseSubscript() { throw RuntimeError(ErrSubscript, QStringLiteral("下标越界")); }
void raiseDivisionByZero() { throw RuntimeError(ErrDivisionByZero, QStringLiteral("除数为零")); }
void raiseTypeMismatch() { throw RuntimeError(ErrTypeMismatch, QStringLiteral("类型不匹配")); }

} // namespace base
