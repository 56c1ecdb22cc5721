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
// "000001"); other codes come back unchanged.
QString qianlongIndexStem(const QString &code);

} // namespace marketdata
