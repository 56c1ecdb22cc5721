#pragma once
// Exact money arithmetic of the analysis: amounts in whole fen (int64),
// shares in whole shares (int64).
//
// The file holds prices as doubles, fee rates and minimums as singles: binary
// fractions near the decimal the user typed (10.5 is exact, 0.35f is
// 0.3499999940...). Each is taken as the decimal it was typed as: the
// shortest text that reads back as the same value, at most fifteen
// significant digits for a double and seven for a single (the same texts the
// report windows show). Products of these decimals are formed exactly in
// 128-bit integers and rounded once, half to even.

#include <QString>

#include <cstdint>
#include <optional>

namespace analysis {

using Int128 = __int128;

// value = digits * 10^-scale
struct Decimal {
    Int128 digits = 0;
    int scale = 0;
};

// The decimal a double / single was typed as; nullopt for NaN, infinity or a
// value too large to multiply safely (above 10^15).
std::optional<Decimal> decimalOf(double v);
std::optional<Decimal> decimalOfSingle(float v);

// num / den rounded to the nearest whole number, halves to even; den > 0.
int64_t roundHalfEven(Int128 num, Int128 den);

// The product of the decimals times 10^shift, rounded half to even; nullopt
// when it does not fit.
std::optional<int64_t> roundedProduct(std::initializer_list<Decimal> factors, int shift = 0);

// Money of a double amount (资金数量, price x shares ...) in fen.
std::optional<int64_t> fenOf(double yuan);

// The fee of a trade in fen: price x shares x rate (rate in percent, so the
// product is the fee in fen) rounded half to even, then raised to the
// minimum of the code's class when it is not above it ("00"/"40" the
// Shenzhen minimum, "60" the Shanghai one; other codes have none).
std::optional<int64_t> tradeFeeFen(double price, int64_t shares, float rate, const QString &code, float minShenzhen,
                                   float minShanghai);

// "1234.56", "-0.05": fen as yuan with two decimals.
QString yuanText(int64_t fen);

} // namespace analysis

namespace analysis {

// A decimal typed into a box, as a whole number of 10^-decimals units:
// "3" with 4 decimals is 30000, "1.25" with 2 is 125; blanks around it are
// dropped and an empty text is 0. nullopt for anything else (letters, a
// sign, more decimals than allowed, too many digits).
std::optional<int64_t> parseScaled(const QString &text, int decimals);

} // namespace analysis
