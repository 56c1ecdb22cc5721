// Quote lookup over a demonstration market of 300 stocks with 4,000 daily
// bars each, in the 钱龙 and the 通达信 layout, against reading the 钱龙
// bytes with a plain loop.
#include "Bench.h"

#include "DemoMarket.h"
#include "base/Paths.h"
#include "marketdata/MarketSettings.h"
#include "marketdata/QuoteLookup.h"

#include <QElapsedTimer>
#include <QTemporaryDir>

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <vector>

namespace {

constexpr int kStocks = 300;
constexpr int kBars = 4000;
constexpr int kRuns = 7;

QString dayFile(const QString &market, const demodata::DemoStock &s)
{
    const QString stem = s.code == QStringLiteral("1A0001") ? QStringLiteral("000001") : s.code;
    return market + (s.shanghai ? QStringLiteral("/data/shase/day/") : QStringLiteral("/data/sznse/day/")) + stem
        + QStringLiteral(".day");
}

// The last close of a 钱龙 daily file, read in one call into a reused buffer.
float plainLastClose(const QByteArray &path, std::vector<char> &buffer, double &checksum)
{
    std::FILE *f = std::fopen(path.constData(), "rb");
    if (!f)
        return 0;
    size_t n = 0;
    while (true) {
        if (n == buffer.size())
            buffer.resize(buffer.size() * 2 + 4096);
        const size_t got = std::fread(buffer.data() + n, 1, buffer.size() - n, f);
        if (got == 0)
            break;
        n += got;
    }
    std::fclose(f);
    float last = 0;
    for (size_t at = 0; at + 40 <= n; at += 40) {
        int32_t close;
        std::memcpy(&close, buffer.data() + at + 16, 4);
        last = static_cast<float>(close / 1000.0);
        checksum += last;
    }
    return last;
}

} // namespace

TESSALY_BENCH(marketdata_quote)
{
    QTemporaryDir folder, tdxFolder;
    demodata::DemoOptions options;
    options.stocks = kStocks;
    options.bars = kBars;
    demodata::DemoOptions tdxOptions = options;
    tdxOptions.tdx = true;
    if (!demodata::makeDemoMarket(folder.path(), options) || !demodata::makeDemoMarket(tdxFolder.path(), tdxOptions)) {
        std::fprintf(stderr, "marketdata bench: cannot write the demo market\n");
        return;
    }
    const QString market = folder.path() + QStringLiteral("/market");
    const QString tdxMarket = tdxFolder.path() + QStringLiteral("/market");
    marketdata::setDataPath(market);
    const QList<demodata::DemoStock> stocks = demodata::demoStocks(options);

    std::vector<double> quote, tdx, plain;
    double quoteSum = 0, tdxSum = 0, plainSum = 0, checksum = 0;
    std::vector<QByteArray> paths;
    for (const auto &s : stocks)
        paths.push_back(QFile::encodeName(dayFile(market, s)));
    std::vector<char> buffer;
    for (int run = 0; run < kRuns; ++run) {
        QElapsedTimer t;
        t.start();
        marketdata::QuoteState state;
        for (const auto &s : stocks) {
            float last = 0;
            marketdata::QuoteLookup(marketdata::DataPath(), QStringLiteral("0"), s.code, false, last, state);
            quoteSum += last;
        }
        quote.push_back(t.nsecsElapsed() / 1e6);

        t.restart();
        marketdata::QuoteState tdxState;
        for (const auto &s : stocks) {
            float last = 0;
            marketdata::QuoteLookup(tdxMarket, QStringLiteral("7"), s.code, false, last, tdxState);
            tdxSum += last;
        }
        tdx.push_back(t.nsecsElapsed() / 1e6);

        t.restart();
        for (const QByteArray &p : paths)
            plainSum += plainLastClose(p, buffer, checksum);
        plain.push_back(t.nsecsElapsed() / 1e6);
    }
    if (quoteSum != plainSum || tdxSum != plainSum)
        std::fprintf(stderr, "marketdata bench: closes differ (%f, %f vs %f)\n", quoteSum, tdxSum, plainSum);
    bench::figure(QStringLiteral("quote_300x4000_ms"), bench::median(quote), QStringLiteral("ms"));
    bench::figure(QStringLiteral("tdx_quote_300x4000_ms"), bench::median(tdx), QStringLiteral("ms"));
    bench::figure(QStringLiteral("plain_read_300x4000_ms"), bench::median(plain), QStringLiteral("ms"));
}
