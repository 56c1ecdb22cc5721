#pragma once
// Which market a stock code belongs to, by its length and first two
// characters, and the file-name stems of the Shanghai index codes.

#include <QString>

#include <span>

namespace marketdata {

enum class Market { None, Shanghai, Shenzhen };

// A 4-character code is Shenzhen; a 6-character code is Shanghai when it
// begins with one of `shanghaiPrefixes`, Shenzhen when it begins with "39",
// "00", "20" or "18"; anything else belongs to no market. Case-sensitive.
Market marketOf(const QString &code, std::span<const char *const> shanghaiPrefixes);

// The stem under which the 钱龙 package stores a Shanghai index ("1A0001" ->
// "000001", the exchange's own index code); other codes come back unchanged.
QString qianlongIndexStem(const QString &code);

// Where the 通达信 package keeps a security's daily bars and in what unit:
// vipdoc\<market>\lday\<market><stem>.day, prices as whole hundredths
// (shares, indexes) or thousandths (funds, bonds, Shanghai B shares) of the
// currency unit.
struct TdxSecurity {
    QString market; // "sh", "sz" or "bj"; empty: no such file
    QString stem;   // the six-digit code of the file name
    int priceDivisor = 0;
};

// The class of a 6-character code by its first two characters, as the
// package files it; the Shanghai index codes "1A0001" .. "1B0008" name the
// exchange's index files (sh000001 ...). Any other code has no file.
TdxSecurity tdxSecurity(const QString &code);

} // namespace marketdata
