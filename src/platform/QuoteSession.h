#pragma once
// The main window's side of the quote lookup: the count and extremes it keeps
// between lookups, and the chart drawn into its picture box.

#include <QString>

#include <memory>

namespace platform {

class PictureBox;

// The market-data settings as the main window loads them at its load
// (GetDateSet of a hidden DataSet window), and the folder they name.
void loadMarketSettings();
QString dataPath();
// The source text of the window's lookups: "7" when the settings choose the
// 通达信 files, "0" for every other choice.
QString quoteSource();

class QuoteSession {
public:
    QuoteSession();
    ~QuoteSession();

    // Reads the daily bars of `code` through the reader of `source` ("0" to
    // "7"), writes lastClose when bars were found and, with a box, draws the
    // chart of the last bars into it.
    void lookup(const QString &dataDir, const QString &source, const QString &code, PictureBox *chartBox,
                float &lastClose);

    struct State;

private:
    std::unique_ptr<State> m_state;
};

} // namespace platform
