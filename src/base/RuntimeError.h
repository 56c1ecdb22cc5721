#pragma once
// The runtime error every subsystem raises: an error number and a Chinese
// description, shown in the standard error box when it leaves an event handler.

#include <QString>
#include <stdexcept>

namespace base {

class RuntimeError : public std::runtime_error {
public:
    RuntimeError(int number, const QString &description);

    int number() const { return m_number; }
    const QString &description() const { return m_description; }

private:
    int m_number;
    QString m_description;
};

// The errors of the language runtime that the program raises itself.
enum ErrorNumber : int {
    ErrOverflow = 6,
    ErrSubscript = 9,
    ErrDivisionByZero = 11,
    ErrTypeMismatch = 13,
    ErrFileNotFound = 53,
    ErrBadFileName = 52,
    ErrPathNotFound = 76,
};

[[noreturn]] void raiseOverflow();
[[noreturn]] void raiseSubscript();
[[noreturn]] void raiseDivisionByZero();
[[noreturn]] void raiseTypeMismatch();

} // namespace base
