#include "Prices.h"

#include "base/RuntimeError.h"
#include "marketdata/MarketSettings.h"
#include "marketdata/QuoteLookup.h"

#include <optional>
#include <set>

namespace analysis {

PriceHistory readPrices(const Journal &journal, const QString &dataDir, const QString &source)
{
    std::set<QString> codes;
    for (const TradeRow &t : journal.trades)
        codes.insert(t.code);
    PriceHistory out;
    marketdata::BarArray bars;
    for (const QString &code : codes) {
        bars.clear();
        std::optional<marketdata::BarRead> read;
        try {
            read = marketdata::readDailyBars(dataDir, source, code, bars);
        } catch (const base::RuntimeError &) {
            continue;
        }
        if (!read)
            continue;
        std::vector<ClosePoint> closes;
        closes.reserve(size_t(std::max<int16_t>(read->count, 0)));
        for (int i = 1; i <= read->count; ++i) {
            const marketdata::StockBar &bar = bars[i];
            // Bars out of date order (a damaged file) are not used.
            if (bar.Close > 0 && (closes.empty() || bar.Date > closes.back().date))
                closes.push_back({bar.Date, bar.Close});
        }
        if (!closes.empty())
            out.emplace(code, std::move(closes));
    }
    return out;
}

PriceHistory readPrices(const Journal &journal)
{
    return readPrices(journal, marketdata::DataPath(), QString::number(marketdata::DataFormat()));
}

} // namespace analysis
