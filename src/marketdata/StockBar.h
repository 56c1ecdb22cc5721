#pragma once
// One price bar in memory and the bar array every reader fills.
//
// The field order (Close before High and Low) is fixed: readers and the chart
// address the fields in this order.

#include <cstddef>
#include <cstdint>
#include <vector>

namespace marketdata {

struct StockBar {
    int32_t Date = 0; // YYYYMMDD
    float Open = 0;
    float Close = 0;
    float High = 0;
    float Low = 0;
    float Volume = 0;
    float Amount = 0;
};

inline bool operator==(const StockBar &a, const StockBar &b)
{
    return a.Date == b.Date && a.Open == b.Open && a.Close == b.Close && a.High == b.High && a.Low == b.Low &&
           a.Volume == b.Volume && a.Amount == b.Amount;
}

constexpr int kBarArrayLast = 20000;

// Bars with indexes 1 .. 20000, every field zero at first. An index outside
// that range raises the subscript-out-of-range error.
//
// Storage grows with the highest index reached, so an array that a short
// file or a week/month merge only partly uses costs what it holds, not 20000
// bars.
class BarArray {
public:
    StockBar &operator[](int i)
    {
        const std::size_t k = checked(i);
        if (k >= m_bars.size())
            grow(k);
        if (i > m_touched)
            m_touched = i;
        return m_bars[k];
    }
    const StockBar &operator[](int i) const
    {
        static const StockBar zero;
        const std::size_t k = checked(i);
        return k < m_bars.size() ? m_bars[k] : zero;
    }

    // Sets every bar back to zero (only bars ever reached for writing can
    // differ from zero, so only those are cleared).
    void clear();

    static constexpr int first() { return 1; }
    static constexpr int last() { return kBarArrayLast; }

private:
    static std::size_t checked(int i)
    {
        if (i < 1 || i > kBarArrayLast)
            raiseSubscript();
        return static_cast<std::size_t>(i - 1);
    }
    void grow(std::size_t k);
    [[noreturn]] static void raiseSubscript();
    std::vector<StockBar> m_bars;
    int m_touched = 0; // highest index handed out for writing
};

} // namespace marketdata
