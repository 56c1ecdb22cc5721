#pragma once
// Free-format list input over a text file: items end at a comma or at the end
// of a line (CR, LF or CR LF); leading blanks are skipped. The settings file
// and the stock-list files are read this way.

#include <QString>

#include <cstdint>

namespace marketdata {

// Error raised when an item is read at the end of the text.
constexpr int kErrInputPastEnd = 62;

class ListInput {
public:
    explicit ListInput(QString text) : m_text(std::move(text)) {}

    // Whole content of a file decoded from GBK; empty when it cannot be read.
    static ListInput fromFile(const QString &realPath);

    bool atEnd() const { return m_pos >= m_text.size(); }

    // A text item: a quoted item runs to the closing quote, an unquoted one to
    // the first comma or line end (trailing blanks kept).
    QString readText();

    // A 16-bit integer item: blanks around it are ignored; an empty item is 0,
    // one that is not a number raises the type-mismatch error, one outside
    // the 16-bit range the overflow error.
    int16_t readInt16();

private:
    bool isBlank(qsizetype i) const;
    void skipBlanks();
    void skipDelimiter();
    void raisePastEnd() const;

    QString m_text;
    qsizetype m_pos = 0;
};

} // namespace marketdata
