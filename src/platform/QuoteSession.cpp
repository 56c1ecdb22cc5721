#include "QuoteSession.h"

#include "PictureBox.h"
#include "PriceChart.h"
#include "marketdata/DataSet.h"
#include "marketdata/MarketSettings.h"
#include "marketdata/QuoteLookup.h"

namespace platform {

struct QuoteSession::State {
    marketdata::QuoteState quote;
};

void loadMarketSettings()
{
    marketdata::DataSet settings;
    settings.GetDateSet();
}

QString dataPath() { return marketdata::DataPath(); }

QString quoteSource() { return marketdata::quoteSourceFor(marketdata::DataFormat()); }

QuoteSession::QuoteSession() : m_state(std::make_unique<State>()) {}

QuoteSession::~QuoteSession() = default;

void QuoteSession::lookup(const QString &dataDir, const QString &source, const QString &code, PictureBox *chartBox,
                          float &lastClose)
{
    marketdata::DrawChart drawer;
    if (chartBox) {
        drawer = [chartBox](const marketdata::BarArray &bars, int16_t count, float highestHigh, float lowestLow) {
            const CandleAt candle = [&bars](int i) {
                const marketdata::StockBar &b = bars[i];
                return Candle{b.Open, b.Close, b.High, b.Low};
            };
            DrawPriceChart(candle, highestHigh, lowestLow, count, 80, *chartBox, QColor(255, 0, 0), QColor(0, 0, 255),
                           3);
        };
    }
    marketdata::QuoteLookup(dataDir, source, code, chartBox != nullptr, lastClose, m_state->quote, drawer);
}

} // namespace platform
