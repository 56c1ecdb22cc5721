#include "StatementFile.h"

#include "base/Gbk.h"

#include <QFile>
#include <QHash>
#include <QRegularExpression>
#include <QStringDecoder>

namespace importer {

namespace {

struct Meaning {
    Column column;
    const char *title;
    const char *headings; // the names brokers' clients use, separated by '|'
};

// Order of Column.
const Meaning kMeanings[kColumnKinds] = {
    {Column::None, "（不用）", ""},
    {Column::Date, "日期", "成交日期|发生日期|交收日期|清算日期|业务日期|交易日期|日期"},
    {Column::Code, "证券代码", "证券代码|股票代码|代码|证券编码"},
    {Column::Name, "证券名称", "证券名称|股票名称|名称|证券简称|股票简称"},
    {Column::Operation, "业务", "操作|业务名称|买卖标志|摘要|业务类型|业务标志|买卖方向|委托类别|交易类别|交易类型"},
    {Column::Quantity, "成交数量", "成交数量|成交股数|发生数量|数量|股数"},
    {Column::Price, "成交价格", "成交均价|成交价格|成交价|价格|均价"},
    {Column::Amount, "成交金额", "成交金额|金额"},
    {Column::Commission, "佣金", "手续费|佣金|净佣金"},
    {Column::StampDuty, "印花税", "印花税"},
    {Column::TransferFee, "过户费", "过户费"},
    {Column::OtherFee, "其他费用", "其他杂费|其他费|杂费|其他费用|规费|交易规费|经手费|证管费|结算费"},
    {Column::NetAmount, "发生金额", "发生金额|清算金额|收付金额|变动金额|资金发生数"},
    {Column::Balance, "资金余额", "资金余额|剩余金额|本次余额|余额|资金本次余额"},
    {Column::Contract, "合同编号", "合同编号|委托编号|合同号|委托序号"},
};

constexpr int kHeadingSearchLines = 40;
constexpr qint64 kLargestStatement = 256LL * 1024 * 1024;
constexpr qsizetype kMaxLines = 2'000'000;
const QChar kSeparators[3] = {u'\t', u',', u';'};

QString decode(const QByteArray &bytes, QString &encoding, QString &error)
{
    if (bytes.startsWith("\xEF\xBB\xBF")) {
        encoding = QStringLiteral("UTF-8 BOM");
        return QString::fromUtf8(bytes.mid(3));
    }
    if (bytes.startsWith("\xFF\xFE") || bytes.startsWith("\xFE\xFF")) {
        encoding = QStringLiteral("UTF-16");
        QStringDecoder d(QStringDecoder::Utf16, QStringDecoder::Flag::ConvertInvalidToNull);
        return d.decode(bytes);
    }
    if (bytes.startsWith("\xD0\xCF\x11\xE0") || bytes.startsWith("PK\x03\x04")) {
        error = QStringLiteral("这是 Excel 表格文件，不是文本：请在交易软件中把交割单导出为文本（制表符或逗号分隔）");
        return {};
    }
    if (bytes.contains('\0')) {
        error = QStringLiteral("文件不是文本（含有二进制字节）");
        return {};
    }
    QStringDecoder utf8(QStringDecoder::Utf8);
    const QString asUtf8 = utf8.decode(bytes);
    if (!utf8.hasError()) {
        encoding = QStringLiteral("UTF-8");
        return asUtf8;
    }
    const QString asGbk = base::fromGbk(bytes);
    // A few bad bytes are a damaged line; many mean the file is in some
    // other encoding (or not text at all).
    if (asGbk.count(QChar::ReplacementCharacter) * 50 > asGbk.size() + 50) {
        error = QStringLiteral("无法识别文件的文字编码（既不是 GBK 也不是 UTF-8）");
        return {};
    }
    encoding = QStringLiteral("GBK");
    return asGbk;
}

// Splits a line at `sep`; double quotes group a cell that holds the
// separator ("1,234.00"), a doubled quote inside stands for one.
QStringList splitLine(const QString &line, QChar sep)
{
    QStringList cells;
    QString cell;
    bool quoted = false;
    for (qsizetype i = 0; i < line.size(); ++i) {
        const QChar c = line[i];
        if (quoted) {
            if (c == u'"' && i + 1 < line.size() && line[i + 1] == u'"') {
                cell += c;
                ++i;
            } else if (c == u'"') {
                quoted = false;
            } else {
                cell += c;
            }
        } else if (c == u'"' && cell.trimmed().isEmpty()) {
            quoted = true;
        } else if (c == sep) {
            cells << cell.trimmed();
            cell.clear();
        } else {
            cell += c;
        }
    }
    cells << cell.trimmed();
    // Clients often end every line with the separator.
    while (cells.size() > 1 && cells.last().isEmpty())
        cells.removeLast();
    return cells;
}

int recognised(const QList<Column> &columns)
{
    int n = 0;
    for (Column c : columns)
        n += c != Column::None;
    return n;
}

QList<Column> meaningsOf(const QStringList &headings)
{
    QList<Column> columns;
    for (const QString &h : headings) {
        Column c = columnFor(h);
        if (c != Column::None && !isFeeColumn(c) && columns.contains(c))
            c = Column::None; // a second column of one meaning is left for the user to choose
        columns << c;
    }
    return columns;
}

} // namespace

QString columnTitle(Column c) { return QString::fromUtf8(kMeanings[int(c)].title); }

Column columnFor(const QString &heading)
{
    QString h = cellText(heading);
    h.remove(u' ');
    if (h.isEmpty())
        return Column::None;
    // Every heading name of every meaning, split once; the first meaning that
    // lists a name keeps it.
    static const QHash<QString, Column> byName = [] {
        QHash<QString, Column> names;
        for (const Meaning &m : kMeanings)
            for (const QString &name : QString::fromUtf8(m.headings).split(u'|', Qt::SkipEmptyParts))
                names.insert(name, names.value(name, m.column));
        return names;
    }();
    return byName.value(h, Column::None);
}

bool isFeeColumn(Column c) { return c >= Column::Commission && c <= Column::OtherFee; }

QString cellText(const QString &cell)
{
    QString t = cell.normalized(QString::NormalizationForm_KC).trimmed();
    if (t.startsWith(QLatin1String("=\"")) && t.endsWith(u'"') && t.size() >= 3)
        t = t.mid(2, t.size() - 3).trimmed();
    return t;
}

std::optional<double> cellNumber(const QString &cell)
{
    QString t = cellText(cell);
    t.remove(u',');
    t.remove(u' ');
    t.remove(u'¥');
    if (t.isEmpty() || t == u"-" || t == u"--")
        return 0.0;
    bool ok = false;
    const double v = t.toDouble(&ok);
    if (!ok || !std::isfinite(v))
        return std::nullopt;
    return v;
}

QDate cellDate(const QString &cell)
{
    QString t = cellText(cell);
    const qsizetype blank = t.indexOf(u' ');
    if (blank > 0)
        t.truncate(blank);
    static const QRegularExpression compact(QStringLiteral("^(\\d{4})(\\d{2})(\\d{2})$"));
    static const QRegularExpression parts(QStringLiteral("^(\\d{4})[-/.年](\\d{1,2})[-/.月](\\d{1,2})日?$"));
    QRegularExpressionMatch m = compact.match(t);
    if (!m.hasMatch())
        m = parts.match(t);
    if (!m.hasMatch())
        return {};
    return QDate(m.captured(1).toInt(), m.captured(2).toInt(), m.captured(3).toInt());
}

QString mappingProblem(const QList<Column> &columns)
{
    if (!columns.contains(Column::Date))
        return QStringLiteral("没有日期列（成交日期或发生日期）");
    if (!columns.contains(Column::Operation))
        return QStringLiteral("没有业务列（操作、业务名称或买卖标志）");
    return {};
}

StatementTable readStatement(const QByteArray &bytes)
{
    StatementTable t;
    if (bytes.trimmed().isEmpty()) {
        t.error = QStringLiteral("文件是空的");
        return t;
    }
    const QString text = decode(bytes, t.encoding, t.error);
    if (!t.error.isEmpty())
        return t;

    QStringList lines = text.split(QRegularExpression(QStringLiteral("\r\n|\r|\n")));
    if (lines.size() > kMaxLines) {
        t.error = QStringLiteral("文件超过 %1 行，不像是交割单").arg(kMaxLines);
        return t;
    }

    // The heading is the first line whose cells name the most known columns.
    int bestCount = 0;
    for (int i = 0; i < lines.size() && i < kHeadingSearchLines; ++i) {
        for (QChar sep : kSeparators) {
            if (!lines[i].contains(sep))
                continue;
            const QStringList cells = splitLine(lines[i], sep);
            const QList<Column> columns = meaningsOf(cells);
            const int n = recognised(columns);
            if (n > bestCount) {
                bestCount = n;
                t.separator = sep;
                t.headingLine = i + 1;
                t.headings = cells;
                t.columns = columns;
            }
        }
    }
    if (bestCount < 3) {
        t.error = QStringLiteral("找不到标题行：前 %1 行中没有一行含有成交日期、证券代码、操作等列名")
                      .arg(kHeadingSearchLines);
        t.headings.clear();
        t.columns.clear();
        return t;
    }
    for (int i = t.headingLine; i < lines.size(); ++i) {
        if (lines[i].trimmed().isEmpty())
            continue;
        t.lines.append({i + 1, splitLine(lines[i], t.separator)});
    }
    return t;
}

StatementTable readStatementFile(const QString &path)
{
    StatementTable t;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        t.error = QStringLiteral("无法打开文件“%1”").arg(path);
    else if (file.size() > kLargestStatement)
        t.error = QStringLiteral("文件太大，不像是交割单");
    else
        t = readStatement(file.readAll());
    return t;
}

} // namespace importer
