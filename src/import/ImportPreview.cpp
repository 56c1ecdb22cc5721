#include "ImportPreview.h"

#include "analysis/CorporateActions.h"
#include "base/Numbers.h"
#include "base/RuntimeError.h"
#include "entry/TradeEntry.h"
#include "reports/TradeMath.h"
#include "store/FeeRates.h"

#include <QRegularExpression>

#include <algorithm>
#include <cmath>

namespace importer {

namespace {

struct OperationRule {
    const char *words; // any of them in the operation text, separated by '|'
    RowKind kind;
};

// The most specific words first: "股息红利税补缴" is a tax, not a dividend;
// "红股入账" is bonus shares, not a purchase.
const OperationRule kOperationRules[] = {
    {"税", RowKind::DividendTax},
    {"红股|送股|转增", RowKind::BonusShares},
    {"红利|股息|派息|分红", RowKind::Dividend},
    {"银行转证券|银证转入|转入|存入", RowKind::Deposit},
    {"证券转银行|银证转出|转出|取出|提取", RowKind::Withdrawal},
    {"卖", RowKind::Sell},
    {"买", RowKind::Buy},
};

std::optional<RowKind> kindOfOperation(const QString &operation)
{
    for (const OperationRule &rule : kOperationRules)
        for (const QString &w : QString::fromUtf8(rule.words).split(u'|'))
            if (operation.contains(w))
                return rule.kind;
    return std::nullopt;
}

// The cells of one line by meaning; fee columns add up.
class LineCells {
public:
    LineCells(const StatementLine &line, const QList<Column> &columns) : m_line(line), m_columns(columns) {}

    bool has(Column c) const { return m_columns.contains(c); }
    QString text(Column c) const
    {
        const qsizetype i = m_columns.indexOf(c);
        return i >= 0 && i < m_line.cells.size() ? cellText(m_line.cells[i]) : QString();
    }
    // nullopt with `bad` set to the cell's text when it is not a number.
    std::optional<double> number(Column c, QString &bad) const
    {
        const QString t = text(c);
        const std::optional<double> v = cellNumber(t);
        if (!v)
            bad = t;
        return v;
    }
    std::optional<double> fees(QString &bad) const
    {
        double sum = 0;
        for (qsizetype i = 0; i < m_columns.size(); ++i) {
            if (!isFeeColumn(m_columns[i]) || i >= m_line.cells.size())
                continue;
            const std::optional<double> v = cellNumber(m_line.cells[i]);
            if (!v) {
                bad = cellText(m_line.cells[i]);
                return std::nullopt;
            }
            sum += std::fabs(*v);
        }
        return sum;
    }
    bool feeColumns() const { return std::any_of(m_columns.begin(), m_columns.end(), isFeeColumn); }

private:
    const StatementLine &m_line;
    const QList<Column> &m_columns;
};

QString notANumber(const QString &what, const QString &text)
{
    return QStringLiteral("%1“%2”不是数字").arg(what, text);
}

QString numberText(double v) { return QString::number(v, 'f', v == std::floor(v) ? 0 : 2); }

qint64 toFen(double money) { return qint64(std::llround(std::fabs(money) * 100.0)); }

// Code and name of a row about a stock; a non-empty result is why the line
// is skipped.
QString readStock(const LineCells &cells, PreviewRow &row)
{
    row.code = cells.text(Column::Code);
    static const QRegularExpression sixDigits(QStringLiteral("^\\d{6}$"));
    if (!sixDigits.match(row.code).hasMatch())
        return row.code.isEmpty() ? QStringLiteral("没有证券代码")
                                  : QStringLiteral("证券代码“%1”不是六位数字").arg(row.code);
    row.name = cells.text(Column::Name);
    if (row.name.isEmpty())
        row.name = entry::kDefaultStockName;
    return {};
}

// Fills a trade; a non-empty result is why the line is skipped.
QString readTrade(const LineCells &cells, PreviewRow &row)
{
    if (QString bad = readStock(cells, row); !bad.isEmpty())
        return bad;

    QString bad;
    const std::optional<double> quantity = cells.number(Column::Quantity, bad);
    if (!quantity)
        return notANumber(QStringLiteral("成交数量"), bad);
    const std::optional<double> price = cells.number(Column::Price, bad);
    if (!price)
        return notANumber(QStringLiteral("成交价格"), bad);
    row.quantity = std::fabs(*quantity);
    row.price = std::fabs(*price);
    if (row.quantity == 0)
        return QStringLiteral("成交数量为 0（撤单或未成交）");
    if (row.price == 0)
        return QStringLiteral("成交价格为 0");
    if (row.price * row.quantity > 1e10)
        return QStringLiteral("成交金额过大");

    // The fee columns when there are any; otherwise what the cash moved
    // beyond price x quantity.
    std::optional<double> fee = 0.0;
    if (cells.feeColumns()) {
        fee = cells.fees(bad);
    } else if (cells.has(Column::NetAmount)) {
        const std::optional<double> net = cells.number(Column::NetAmount, bad);
        fee = net ? std::optional<double>(std::fabs(std::fabs(*net) - row.price * row.quantity)) : std::nullopt;
    }
    if (!fee)
        return notANumber(QStringLiteral("费用"), bad);
    row.feeFen = toFen(*fee);
    row.feeRate = rateForFee(row.price, row.quantity, row.feeFen);
    return {};
}

QString readMoney(const LineCells &cells, PreviewRow &row)
{
    QString bad;
    const Column source = cells.has(Column::NetAmount) ? Column::NetAmount : Column::Amount;
    const std::optional<double> amount = cells.number(source, bad);
    if (!amount)
        return notANumber(QStringLiteral("金额"), bad);
    row.amount = std::fabs(*amount);
    if (row.amount == 0)
        return QStringLiteral("金额为 0");
    return {};
}

// What the trade details will charge when the stored rate is applied, and a
// note when that is not the broker's fee (its minimum is higher).
QString feeDoubt(const PreviewRow &row)
{
    try {
        const reports::TradeFee shown =
            reports::tradeFee(row.price, row.quantity, row.feeRate, row.code, store::feeValue(3), store::feeValue(4));
        if (std::llround(double(shown.fee) * 100.0) != row.feeFen)
            return QStringLiteral("交易明细按最低收费计 %1 元，交割单为 %2 元")
                .arg(base::singleText(shown.fee), numberText(double(row.feeFen) / 100.0));
    } catch (const base::RuntimeError &) {
        return QStringLiteral("交易明细无法计算此笔费用（数值溢出）");
    }
    return {};
}

QString keyOf(const PreviewRow &row, const QString &contract)
{
    return QStringList{QString::number(int(row.kind)),
                       row.date.toString(Qt::ISODate),
                       row.code,
                       QString::number(row.price, 'g', 10),
                       QString::number(row.quantity, 'g', 12),
                       QString::number(row.amount, 'f', 2),
                       contract}
        .join(u'|');
}

} // namespace

QString kindTitle(RowKind kind)
{
    switch (kind) {
    case RowKind::Buy:
        return QStringLiteral("买进");
    case RowKind::Sell:
        return QStringLiteral("卖出");
    case RowKind::Deposit:
        return QStringLiteral("存入");
    case RowKind::Withdrawal:
        return QStringLiteral("提取");
    case RowKind::Dividend:
        return QStringLiteral("红利");
    case RowKind::DividendTax:
        return QStringLiteral("红利税");
    case RowKind::BonusShares:
        return QStringLiteral("红股");
    case RowKind::Skipped:
        break;
    }
    return QStringLiteral("跳过");
}

bool isCorporateAction(RowKind kind)
{
    return kind == RowKind::Dividend || kind == RowKind::DividendTax || kind == RowKind::BonusShares;
}

float rateForFee(double price, double quantity, qint64 feeFen)
{
    const double value = price * quantity;
    if (value <= 0 || feeFen <= 0)
        return 0;
    const auto fenOf = [&](float rate) { return std::llround(value * double(rate)); };
    float rate = float(double(feeFen) / value);
    // The nearest single may round to the neighbouring fen; step towards it.
    for (int step = 0; step < 64 && fenOf(rate) != feeFen; ++step)
        rate = std::nextafter(rate, fenOf(rate) < feeFen ? 1e30f : 0.0f);
    return fenOf(rate) == feeFen ? rate : float(double(feeFen) / value);
}

QList<PreviewRow> classify(const StatementTable &table, const QList<Column> &columns, const JournalState &journal)
{
    QList<PreviewRow> rows;
    rows.reserve(table.lines.size());
    const QString problem = mappingProblem(columns);
    QHash<QString, int> seen; // occurrences of a key in this file
    for (const StatementLine &line : table.lines) {
        PreviewRow row;
        row.line = line.number;
        const LineCells cells(line, columns);
        const QString operation = cells.text(Column::Operation);
        const std::optional<RowKind> kind = kindOfOperation(operation);
        row.date = cellDate(cells.text(Column::Date));
        QString reason = problem;
        if (reason.isEmpty() && line.cells.size() < 2)
            reason = QStringLiteral("不是交割单的行：“%1”").arg(line.cells.value(0).left(30));
        else if (reason.isEmpty() && !row.date.isValid())
            reason = QStringLiteral("日期“%1”无法识别").arg(cells.text(Column::Date));
        else if (reason.isEmpty() && !kind)
            reason = operation.isEmpty() ? QStringLiteral("没有业务名称")
                                         : QStringLiteral("不导入的业务“%1”").arg(operation);
        if (reason.isEmpty()) {
            row.kind = *kind;
            switch (row.kind) {
            case RowKind::Buy:
            case RowKind::Sell:
                reason = readTrade(cells, row);
                break;
            case RowKind::BonusShares: {
                reason = readTrade(cells, row);
                if (reason == QStringLiteral("成交价格为 0"))
                    reason.clear(); // bonus shares come at no price
                row.price = 0;
                row.feeFen = 0;
                row.feeRate = 0;
                break;
            }
            case RowKind::Dividend:
            case RowKind::DividendTax:
                reason = readStock(cells, row);
                if (reason.isEmpty())
                    reason = readMoney(cells, row);
                break;
            default:
                reason = readMoney(cells, row);
                break;
            }
            if (reason.isEmpty() && isCorporateAction(row.kind))
                reason = analysis::checkActionFigures(actionOf(row, QString()));
        }
        if (!reason.isEmpty()) {
            row.kind = RowKind::Skipped;
            row.note = reason;
        } else {
            const QString key = keyOf(row, cells.text(Column::Contract));
            row.key = key + u'#' + QString::number(++seen[key]);
            row.alreadyImported = journal.importedKeys.contains(row.key);
            if (row.alreadyImported)
                row.note = QStringLiteral("已导入过");
            else if (row.kind == RowKind::Buy || row.kind == RowKind::Sell)
                row.note = feeDoubt(row);
        }
        rows.append(row);
    }

    // Sales beyond what is held, walking the statement's new trades by date
    // on top of the journal (statements may list the newest first).
    QList<qsizetype> order;
    for (qsizetype i = 0; i < rows.size(); ++i)
        if (rows[i].willStore() && !rows[i].code.isEmpty())
            order << i;
    std::stable_sort(order.begin(), order.end(), [&](qsizetype a, qsizetype b) { return rows[a].date < rows[b].date; });
    QHash<QString, double> held = journal.heldShares;
    for (qsizetype i : order) {
        PreviewRow &row = rows[i];
        double &shares = held[row.code];
        if (row.kind == RowKind::Buy || row.kind == RowKind::BonusShares) {
            shares += row.quantity;
        } else if (row.kind == RowKind::Sell) {
            if (row.quantity > shares + 1e-9) {
                const QString oversold = QStringLiteral("卖出 %1 股，多于持有的 %2 股")
                                             .arg(numberText(row.quantity), numberText(std::max(shares, 0.0)));
                row.note = row.note.isEmpty() ? oversold : row.note + QStringLiteral("；") + oversold;
            }
            shares -= row.quantity;
        }
    }
    return rows;
}

analysis::CorporateAction actionOf(const PreviewRow &row, const QString &note)
{
    analysis::CorporateAction a;
    a.code = row.code;
    a.exDate = row.date;
    if (row.kind == RowKind::Dividend)
        a.bookedCashFen = toFen(row.amount);
    else if (row.kind == RowKind::DividendTax)
        a.taxFen = toFen(row.amount);
    else if (row.kind == RowKind::BonusShares)
        a.bookedShares = int64_t(std::llround(row.quantity));
    a.note = note;
    return a;
}

PreviewCounts countRows(const QList<PreviewRow> &rows)
{
    PreviewCounts n;
    for (const PreviewRow &row : rows) {
        if (row.kind == RowKind::Skipped)
            ++n.skipped;
        else if (row.alreadyImported)
            ++n.alreadyImported;
        else if (row.kind == RowKind::Buy || row.kind == RowKind::Sell)
            ++n.trades;
        else if (row.kind == RowKind::Deposit)
            ++n.deposits;
        else if (row.kind == RowKind::Withdrawal)
            ++n.withdrawals;
        else
            ++n.actions;
    }
    return n;
}

QString countsText(const PreviewCounts &n)
{
    return QStringLiteral("买卖 %1 笔，存入 %2 笔，提取 %3 笔，分红送配 %4 笔；已导入过 %5 行，跳过 %6 行")
        .arg(n.trades)
        .arg(n.deposits)
        .arg(n.withdrawals)
        .arg(n.actions)
        .arg(n.alreadyImported)
        .arg(n.skipped);
}

QStringList previewHeadings()
{
    return {QStringLiteral("行号"), QStringLiteral("类别"),  QStringLiteral("日期"), QStringLiteral("代码"),
            QStringLiteral("名称"), QStringLiteral("价格"),  QStringLiteral("数量"), QStringLiteral("金额"),
            QStringLiteral("费用"), QStringLiteral("费率%"), QStringLiteral("说明")};
}

QStringList previewCells(const PreviewRow &row)
{
    const bool trade = row.kind == RowKind::Buy || row.kind == RowKind::Sell;
    const bool shares = trade || row.kind == RowKind::BonusShares;
    const bool money = row.kind != RowKind::Skipped && !shares;
    return {QString::number(row.line),
            kindTitle(row.kind),
            row.date.isValid() ? row.date.toString(Qt::ISODate) : QString(),
            row.code,
            row.name,
            trade ? base::doubleText(row.price) : QString(),
            shares ? base::doubleText(row.quantity) : QString(),
            money ? QString::number(row.amount, 'f', 2) : QString(),
            trade ? QString::number(double(row.feeFen) / 100.0, 'f', 2) : QString(),
            trade ? base::singleText(row.feeRate) : QString(),
            row.note};
}

} // namespace importer
