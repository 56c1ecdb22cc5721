#include "ListInput.h"

#include "base/Gbk.h"
#include "base/Numbers.h"
#include "base/RuntimeError.h"

#include <QFile>

namespace marketdata {

ListInput ListInput::fromFile(const QString &realPath)
{
    QFile f(realPath);
    if (!f.open(QIODevice::ReadOnly))
        return ListInput(QString());
    return ListInput(base::fromGbk(f.readAll()));
}

bool ListInput::isBlank(qsizetype i) const { return i < m_text.size() && (m_text[i] == u' ' || m_text[i] == u'\t'); }

void ListInput::skipBlanks()
{
    while (isBlank(m_pos))
        ++m_pos;
}

// Consumes the comma or the line end that closes an item, if one follows.
void ListInput::skipDelimiter()
{
    if (atEnd())
        return;
    const QChar c = m_text[m_pos];
    if (c == u',' || c == u'\n') {
        ++m_pos;
    } else if (c == u'\r') {
        ++m_pos;
        if (!atEnd() && m_text[m_pos] == u'\n')
            ++m_pos;
    }
}

void ListInput::raisePastEnd() const { throw base::RuntimeError(kErrInputPastEnd, QStringLiteral("输入超出文件尾")); }

QString ListInput::readText()
{
    if (atEnd())
        raisePastEnd();
    skipBlanks();
    QString item;
    if (!atEnd() && m_text[m_pos] == u'"') {
        const qsizetype close = m_text.indexOf(u'"', m_pos + 1);
        const qsizetype end = close < 0 ? m_text.size() : close;
        item = m_text.mid(m_pos + 1, end - m_pos - 1);
        m_pos = close < 0 ? m_text.size() : close + 1;
        // Whatever stands between the closing quote and the delimiter is dropped.
        while (!atEnd() && m_text[m_pos] != u',' && m_text[m_pos] != u'\r' && m_text[m_pos] != u'\n')
            ++m_pos;
    } else {
        const qsizetype start = m_pos;
        while (!atEnd() && m_text[m_pos] != u',' && m_text[m_pos] != u'\r' && m_text[m_pos] != u'\n')
            ++m_pos;
        item = m_text.mid(start, m_pos - start);
    }
    skipDelimiter();
    return item;
}

int16_t ListInput::readInt16()
{
    if (atEnd())
        raisePastEnd();
    skipBlanks();
    const qsizetype start = m_pos;
    while (!atEnd() && !isBlank(m_pos) && m_text[m_pos] != u',' && m_text[m_pos] != u'\r' && m_text[m_pos] != u'\n')
        ++m_pos;
    const QString token = m_text.mid(start, m_pos - start);
    skipBlanks();
    skipDelimiter();
    if (token.isEmpty())
        return 0;
    bool ok = false;
    const double v = token.toDouble(&ok);
    if (!ok)
        base::raiseTypeMismatch();
    return base::toInt16(v);
}

} // namespace marketdata
