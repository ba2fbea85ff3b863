#pragma once

#include <string>

namespace vek {

/// What stands where there is no number.
inline constexpr const char* noValueText = "---";

/// How numbers are shown: the system's decimal point and digit grouping, filled once by the front end.
struct NumberLocale {
    std::string decimalPoint = ".";
    std::string groupSeparator;  ///< between groups of three digits; empty = no grouping

    /// The value with exactly `decimals` (0 to 9) digits after the decimal point, halves of the exact value
    /// away from zero, with digit grouping. A value that rounds to zero has no sign. noValueText for
    /// infinities and not-a-number.
    std::string fixed(double value, int decimals) const;

    /// The value as plain decimal text with up to seven significant digits, no grouping, no exponent, no
    /// trailing zeros behind the decimal point. noValueText for infinities and not-a-number.
    std::string plain(float value) const;
};

}  // namespace vek
