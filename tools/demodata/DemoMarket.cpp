#include "DemoMarket.h"

#include "marketdata/MarketCodes.h"
#include "marketdata/MarketSettings.h"
#include "marketdata/QuoteLookup.h"
#include "marketdata/StockList.h"

#include <QDate>
#include <QDir>
#include <QFile>

#include <algorithm>
#include <cmath>
#include <cstring>

namespace demodata {

using marketdata::StockBar;

namespace {

struct Known {
    const char *code;
    const char *name;
    double price; // a plausible starting price, yuan
};

const Known kShanghai[] = {
    {"600000", "浦发银行", 10.2}, {"600036", "招商银行", 18.5}, {"600519", "贵州茅台", 320.0},
    {"600028", "中国石化", 5.6},  {"601398", "工商银行", 4.3},  {"601318", "中国平安", 45.0},
    {"600030", "中信证券", 16.8}, {"600900", "长江电力", 13.9}, {"601857", "中国石油", 7.8},
    {"600104", "上汽集团", 21.0}, {"600585", "海螺水泥", 24.5}, {"600690", "海尔智家", 12.4},
    {"601988", "中国银行", 3.2},  {"600276", "恒瑞医药", 38.0}, {"600887", "伊利股份", 22.0},
};
const Known kShenzhen[] = {
    {"000001", "平安银行", 11.0}, {"000002", "万科Ａ", 9.8},    {"000858", "五粮液", 60.0},
    {"000651", "格力电器", 32.0}, {"000333", "美的集团", 40.0}, {"002415", "海康威视", 28.0},
    {"000725", "京东方Ａ", 3.1},  {"002594", "比亚迪", 55.0},   {"000063", "中兴通讯", 18.0},
    {"000568", "泸州老窖", 35.0}, {"002304", "洋河股份", 80.0}, {"000100", "TCL科技", 3.4},
    {"000538", "云南白药", 70.0}, {"002142", "宁波银行", 14.0}, {"000895", "双汇发展", 26.0},
};

// splitmix64: a small generator whose sequence is the same everywhere.
class Random {
public:
    explicit Random(uint64_t seed) : m_state(seed) {}
    uint64_t next()
    {
        uint64_t z = (m_state += 0x9E3779B97F4A7C15ull);
        z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ull;
        z = (z ^ (z >> 27)) * 0x94D049BB133111EBull;
        return z ^ (z >> 31);
    }
    double uniform() { return static_cast<double>(next() >> 11) / 9007199254740992.0; }
    // Roughly normal, mean 0 and deviation 1 (sum of four uniforms).
    double normal() { return (uniform() + uniform() + uniform() + uniform() - 2.0) * 1.7320508; }

private:
    uint64_t m_state;
};

int32_t dateNumber(const QDate &d)
{
    return d.year() * 10000 + d.month() * 100 + d.day();
}

QDate dateOf(int32_t n)
{
    return QDate(n / 10000, n / 100 % 100, n % 100);
}

// Prices are kept in whole cents, as the packages store them.
double cents(double v)
{
    return std::round(v * 100.0) / 100.0;
}

void put32(char *p, int32_t v)
{
    const auto u = static_cast<uint32_t>(v);
    p[0] = static_cast<char>(u & 0xFF);
    p[1] = static_cast<char>((u >> 8) & 0xFF);
    p[2] = static_cast<char>((u >> 16) & 0xFF);
    p[3] = static_cast<char>((u >> 24) & 0xFF);
}

int32_t milli(float v)
{
    return static_cast<int32_t>(std::lround(static_cast<double>(v) * 1000.0));
}

bool writeFile(const QString &path, const QByteArray &bytes)
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile f(path);
    return f.open(QIODevice::WriteOnly | QIODevice::Truncate) && f.write(bytes) == bytes.size();
}

bool writeQianlongFiles(const QString &market, const DemoStock &s, const std::vector<StockBar> &days)
{
    const QString stem = marketdata::qianlongIndexStem(s.code);
    const QString dir = market + (s.shanghai ? QStringLiteral("/data/shase/") : QStringLiteral("/data/sznse/"));
    bool ok = writeFile(dir + QStringLiteral("day/") + stem + QStringLiteral(".day"), qianlongFile(days));
    ok = writeFile(dir + QStringLiteral("week/") + stem + QStringLiteral(".wek"),
                   qianlongFile(finishedPeriodBars(days, 2))) && ok;
    return writeFile(dir + QStringLiteral("month/") + stem + QStringLiteral(".mnt"),
                     qianlongFile(finishedPeriodBars(days, 3))) && ok;
}

// The package keeps days only: weeks and months are built from them.
bool writeTdxFiles(const QString &market, const DemoStock &s, const std::vector<StockBar> &days)
{
    const marketdata::TdxSecurity security = marketdata::tdxSecurity(s.code);
    QByteArray bytes;
    bytes.reserve(static_cast<qsizetype>(days.size()) * 32);
    for (const StockBar &b : days)
        bytes += tdxRecord(b, security.priceDivisor);
    return writeFile(market + QStringLiteral("/vipdoc/") + security.market + QStringLiteral("/lday/") + security.market
                         + security.stem + QStringLiteral(".day"),
                     bytes);
}

} // namespace

QList<DemoStock> demoStocks(const DemoOptions &options)
{
    QList<DemoStock> stocks;
    if (options.withIndex)
        stocks.append({QStringLiteral("1A0001"), QStringLiteral("上证指数"), true});
    const int known = int(std::size(kShanghai) + std::size(kShenzhen));
    for (int i = 0; stocks.size() < options.stocks; ++i) {
        if (i < known) {
            const Known &k = (i % 2 == 0) ? kShanghai[i / 2] : kShenzhen[i / 2];
            stocks.append({QString::fromLatin1(k.code), QString::fromUtf8(k.name), i % 2 == 0});
        } else {
            const int n = i - known;
            const bool sh = n % 2 == 0;
            // Shenzhen numbers go on in 300xxx once 002xxx is used up.
            const int k = n / 2;
            const QString code = sh       ? QStringLiteral("603%1").arg(k, 3, 10, QChar(u'0'))
                                 : k < 400 ? QStringLiteral("002%1").arg(600 + k, 3, 10, QChar(u'0'))
                                           : QStringLiteral("300%1").arg(k - 400, 3, 10, QChar(u'0'));
            stocks.append({code, QStringLiteral("演示%1号").arg(n + 1), sh});
        }
    }
    return stocks;
}

std::vector<StockBar> demoDailyBars(int position, const DemoOptions &options)
{
    Random rnd(options.seed * 1000003u + static_cast<uint64_t>(position) * 7919u + 1u);
    double price;
    const int known = int(std::size(kShanghai) + std::size(kShenzhen));
    const int k = options.withIndex ? position - 1 : position;
    if (options.withIndex && position == 0)
        price = 2200.0;
    else if (k < known)
        price = (k % 2 == 0 ? kShanghai[k / 2] : kShenzhen[k / 2]).price;
    else
        price = 4.0 + 40.0 * rnd.uniform();

    // Trading days backwards from the last date, then oldest first.
    std::vector<QDate> days;
    for (QDate d = dateOf(options.lastDate); int(days.size()) < options.bars; d = d.addDays(-1))
        if (d.dayOfWeek() <= 5)
            days.push_back(d);
    std::reverse(days.begin(), days.end());

    const bool index = options.withIndex && position == 0;
    std::vector<StockBar> bars;
    bars.reserve(days.size());
    double close = price;
    for (const QDate &d : days) {
        const double open = cents(close * (1.0 + 0.006 * rnd.normal()));
        double change = 0.018 * rnd.normal() + 0.0002;
        change = std::clamp(change, -0.095, 0.095);
        const double next = std::max(0.5, cents(close * (1.0 + change)));
        const double high = cents(std::max(open, next) * (1.0 + 0.012 * rnd.uniform()));
        const double low = cents(std::min(open, next) * (1.0 - 0.012 * rnd.uniform()));
        const double lots = std::round((index ? 8e6 : 2e4) * (0.4 + 1.2 * rnd.uniform()) * (1.0 + 8.0 * std::fabs(change)));
        StockBar bar;
        bar.Date = dateNumber(d);
        bar.Open = static_cast<float>(open);
        bar.Close = static_cast<float>(next);
        bar.High = static_cast<float>(high);
        bar.Low = static_cast<float>(low);
        bar.Volume = static_cast<float>(lots);
        // Amount in thousands of yuan: 100 shares a lot at the day's mean price.
        bar.Amount = static_cast<float>(std::round(lots * 100.0 * (open + next) / 2.0 / 1000.0));
        bars.push_back(bar);
        close = next;
    }
    return bars;
}

std::vector<StockBar> finishedPeriodBars(const std::vector<StockBar> &days, int period)
{
    auto key = [period](int32_t date) {
        const QDate d = dateOf(date);
        if (period == 2)
            return dateNumber(d.addDays(-(d.dayOfWeek() % 7))); // the Sunday that begins its week
        return d.year() * 100 + d.month();
    };
    std::vector<StockBar> out;
    int32_t current = 0;
    for (const StockBar &day : days) {
        const int32_t k = key(day.Date);
        if (out.empty() || k != current) {
            out.push_back(day);
            current = k;
            continue;
        }
        StockBar &b = out.back();
        b.Date = day.Date;
        b.Close = day.Close;
        b.High = std::max(b.High, day.High);
        b.Low = std::min(b.Low, day.Low);
        b.Volume += day.Volume;
        b.Amount += day.Amount;
    }
    if (!out.empty())
        out.pop_back(); // the week or month still running lives in the daily file only
    return out;
}

QByteArray qianlongRecord(const StockBar &bar)
{
    QByteArray rec(40, '\0');
    char *p = rec.data();
    put32(p, bar.Date);
    put32(p + 4, milli(bar.Open));
    put32(p + 8, milli(bar.High));
    put32(p + 12, milli(bar.Low));
    put32(p + 16, milli(bar.Close));
    put32(p + 20, static_cast<int32_t>(std::lround(bar.Amount)));
    put32(p + 24, static_cast<int32_t>(std::lround(bar.Volume)));
    return rec;
}

QByteArray qianlongFile(const std::vector<StockBar> &bars)
{
    QByteArray out;
    out.reserve(static_cast<qsizetype>(bars.size()) * 40);
    for (const StockBar &b : bars)
        out += qianlongRecord(b);
    return out;
}

QByteArray tdxRecord(const StockBar &bar, int priceDivisor)
{
    QByteArray rec(32, '\0');
    char *p = rec.data();
    auto price = [&](float v) { return static_cast<int32_t>(std::lround(static_cast<double>(v) * priceDivisor)); };
    put32(p, bar.Date);
    put32(p + 4, price(bar.Open));
    put32(p + 8, price(bar.High));
    put32(p + 12, price(bar.Low));
    put32(p + 16, price(bar.Close));
    const float amount = bar.Amount * 1000.0f;
    std::memcpy(p + 20, &amount, 4);
    put32(p + 24, static_cast<int32_t>(std::lround(bar.Volume * 100.0)));
    return rec;
}

QByteArray stockListFile(const QList<DemoStock> &stocks)
{
    QStringList records;
    for (const DemoStock &s : stocks)
        records << s.code + s.name;
    return marketdata::stockListFileBytes(records);
}

bool makeDemoMarket(const QString &programFolder, const DemoOptions &options)
{
    const QString market = QDir(programFolder).absoluteFilePath(QStringLiteral("market"));
    const QList<DemoStock> stocks = demoStocks(options);
    QList<DemoStock> shanghai, shenzhen;
    bool ok = true;
    for (int i = 0; i < stocks.size(); ++i) {
        const DemoStock &s = stocks[i];
        const std::vector<StockBar> days = demoDailyBars(i, options);
        ok = (options.tdx ? writeTdxFiles(market, s, days) : writeQianlongFiles(market, s, days)) && ok;
        if (s.code != QStringLiteral("1A0001"))
            (s.shanghai ? shanghai : shenzhen).append(s);
    }
    ok = writeFile(programFolder + QStringLiteral("/GpSz"), stockListFile(shenzhen)) && ok;
    ok = writeFile(programFolder + QStringLiteral("/GpSh"), stockListFile(shanghai)) && ok;
    const int16_t source = options.tdx ? marketdata::kTdxSource : 0;
    ok = writeFile(programFolder + QStringLiteral("/dateset.dat"), marketdata::dateSetFileBytes(source, market)) && ok;
    return ok;
}

} // namespace demodata
