// Decimal fractions as the Bayesian scanner and its criterion write them, whatever locale the program has set.
#pragma once

#include <string>
#include <string_view>

namespace pv {

// The number a text begins with: leading white space is skipped, then the longest prefix that is a decimal number
// counts ("97.5 %", ".5", "-1e2"; "0x10" begins with 0). 0 when there is none, as for "nan", "-inf" and "-". A number
// too large for the type becomes the largest that fits, one too small becomes 0.
double leading_decimal(std::string_view text);

// With six decimals: 97.500000.
std::string six_decimals(double number);

}  // namespace pv
