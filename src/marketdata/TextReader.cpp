// The text reader: one file per stock, one line per day, fields split at
// blanks and commas.

#include "BarFile.h"
#include "Readers.h"
#include "TextFields.h"

#include "base/Gbk.h"
#include "base/Numbers.h"
#include "base/RuntimeError.h"

#include <optional>

namespace marketdata {

namespace {

constexpr int kMaxFields = 15;

enum class DateLayout { None, YearFirst, MonthFirst, Whole };

DateLayout layoutOf(const QString &name)
{
    static const struct {
        const char *upper;
        const char *lower;
        DateLayout layout;
    } table[] = {
        {"CSV", "csv", DateLayout::YearFirst},
        {"GET", "get", DateLayout::MonthFirst},
        {"TT2", "tt2", DateLayout::MonthFirst},
        {"METATEXT", "metatext", DateLayout::Whole},
    };
    for (const auto &row : table)
        if (name == QLatin1String(row.upper) || name == QLatin1String(row.lower))
            return row.layout;
    return DateLayout::None;
}

// Date text cut from field 1 at fixed character positions.
QString dateText(const QString &f, DateLayout layout)
{
    auto piece = [&](int from, int len) { return trimBlanks(f.mid(from - 1, len)); };
    switch (layout) {
    case DateLayout::YearFirst:
        return piece(1, 4) + piece(6, 2) + piece(9, 2);
    case DateLayout::MonthFirst:
        return piece(7, 4) + piece(1, 2) + piece(4, 2);
    case DateLayout::Whole:
        return f;
    case DateLayout::None:
        break;
    }
    return QString();
}

} // namespace

QString trimBlanks(const QString &s)
{
    qsizetype b = 0, e = s.size();
    while (b < e && s[b] == u' ')
        ++b;
    while (e > b && s[e - 1] == u' ')
        --e;
    return s.mid(b, e - b);
}

QStringList splitTextFields(QStringView line)
{
    QStringList fields;
    QString buffer;
    for (qsizetype i = 0; i < line.size(); ++i) {
        const QChar c = line[i];
        buffer.append(c);
        if (c != u' ' && c != u',' && i != line.size() - 1)
            continue;
        if (buffer != QStringLiteral(" ")) {
            QString field = trimBlanks(buffer);
            if (c == u',')
                field.chop(1);
            if (fields.size() == kMaxFields)
                base::raiseSubscript();
            fields.append(field);
        }
        buffer.clear();
    }
    return fields;
}

QList<QStringView> splitTextLines(QStringView text)
{
    QList<QStringView> lines;
    qsizetype start = 0;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text[i] != u'\r' && text[i] != u'\n')
            continue;
        lines.append(text.mid(start, i - start));
        if (text[i] == u'\r' && i + 1 < text.size() && text[i + 1] == u'\n')
            ++i;
        start = i + 1;
    }
    if (start < text.size())
        lines.append(text.mid(start));
    return lines;
}

StockBar textBar(const QStringList &fields, const QString &layout)
{
    auto field = [&](int n) { return n <= fields.size() ? fields[n - 1] : QString(); };
    auto number = [&](int n) { return base::toSingle(base::val(field(n))); };
    StockBar bar;
    bar.Date = base::toInt32(base::val(dateText(field(1), layoutOf(layout))));
    if (bar.Date == 0)
        return bar;
    bar.Open = number(2);
    bar.High = number(3);
    bar.Low = number(4);
    bar.Close = number(5);
    bar.Volume = number(6);
    bar.Amount = number(7);
    return bar;
}

std::optional<BarRead> ReadTextBars(const BarRequest &request, const QString &layout, BarArray &bars)
{
    BarFile file;
    if (!file.open(request.dataDir + u'\\' + request.code + QStringLiteral(".txt")))
        return std::nullopt;
    QByteArray bytes(static_cast<qsizetype>(file.size()), Qt::Uninitialized);
    file.read(0, bytes.data(), bytes.size());
    const QString text = base::fromGbk(bytes);

    DayBars days(bars, request.period);
    for (const QStringView line : splitTextLines(text)) {
        const StockBar bar = textBar(splitTextFields(line), layout);
        if (bar.Date != 0)
            days.add(bar);
    }
    return days.finish();
}

} // namespace marketdata
