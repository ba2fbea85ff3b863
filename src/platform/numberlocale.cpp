#include "platform/numberlocale.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <string_view>

namespace vek {

namespace {

// A double has at most 309 digits before the point and 1074 behind it; written out in full it is exact.
constexpr int exactDecimals = 1074;
constexpr std::size_t exactSize = 309 + 1 + exactDecimals;

/// The magnitude in full, such as "12.345000...".
std::string exactDigits(double magnitude) {
    std::array<char, exactSize> buffer{};
    const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), magnitude,
                                   std::chars_format::fixed, exactDecimals)
                         .ptr;
    return {buffer.data(), end};
}

/// Adds one to a number made of digits only.
void increment(std::string& digits) {
    const std::size_t lastOther = digits.find_last_not_of('9');
    const std::size_t nines = lastOther == std::string::npos ? 0 : lastOther + 1;
    digits.replace(nines, std::string::npos, digits.size() - nines, '0');
    if (nines == 0) {
        digits.insert(digits.begin(), '1');
    } else {
        ++digits[lastOther];
    }
}

/// The magnitude times ten to the power of `decimals` as a whole number, halves up; at least `decimals` + 1
/// digits.
std::string scaledDigits(double magnitude, int decimals) {
    // Any rounding by to_chars() could turn "just below a half" into a half: cut the exact text instead.
    std::string digits = exactDigits(magnitude);
    const std::size_t point = digits.find('.');
    digits.erase(point, 1);
    const std::size_t kept = point + static_cast<std::size_t>(decimals);
    const bool up = digits[kept] >= '5';
    digits.resize(kept);
    if (up) {
        increment(digits);
    }
    return digits;
}

bool isZero(std::string_view digits) {
    return digits.find_first_not_of('0') == std::string_view::npos;
}

std::string grouped(std::string_view digits, std::string_view separator) {
    std::string text;
    for (std::size_t i = 0; i < digits.size(); ++i) {
        if (i > 0 && (digits.size() - i) % 3 == 0) {
            text += separator;
        }
        text += digits[i];
    }
    return text;
}

}  // namespace

std::string NumberLocale::fixed(double value, int decimals) const {
    if (!std::isfinite(value)) {
        return noValueText;
    }
    const std::string digits = scaledDigits(std::fabs(value), decimals);
    const std::string_view all = digits;
    const std::size_t whole = all.size() - static_cast<std::size_t>(decimals);
    std::string text = value < 0 && !isZero(all) ? "-" : "";
    text += grouped(all.substr(0, whole), groupSeparator);
    if (decimals > 0) {
        text += decimalPoint;
        text += all.substr(whole);
    }
    return text;
}

std::string NumberLocale::plain(float value) const {
    if (!std::isfinite(value)) {
        return noValueText;
    }
    if (value == 0.0F) {
        return "0";
    }
    // "d.dddddde+xx" holds the seven digits and the place of the point; only the layout is left to do.
    std::array<char, 16> buffer{};
    const auto written = std::to_chars(buffer.data(), buffer.data() + buffer.size(), std::fabs(value),
                                       std::chars_format::scientific, 6);
    const std::string_view scientific(buffer.data(), static_cast<std::size_t>(written.ptr - buffer.data()));
    const std::size_t mark = scientific.find('e');
    std::string digits = std::string(scientific.substr(0, 1)) + std::string(scientific.substr(2, mark - 2));
    digits.erase(digits.find_last_not_of('0') + 1);
    int exponent = 0;
    const std::size_t sign = scientific[mark + 1] == '+' ? 1 : 0;  // from_chars() takes no plus sign
    std::from_chars(scientific.data() + mark + 1 + sign, written.ptr, exponent);

    std::string text = value < 0.0F ? "-" : "";
    if (exponent < 0) {
        return text + "0" + decimalPoint + std::string(static_cast<std::size_t>(-exponent - 1), '0') + digits;
    }
    const std::size_t whole = static_cast<std::size_t>(exponent) + 1;
    if (digits.size() <= whole) {
        digits.resize(whole, '0');
        return text + digits;
    }
    return text + digits.substr(0, whole) + decimalPoint + digits.substr(whole);
}

}  // namespace vek
