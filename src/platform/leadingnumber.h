#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace vek {

/// The number that a text begins with: blanks, a sign, digits with "." as decimal point whatever the locale;
/// what follows is ignored. Nothing for a text that begins with no number. Never infinite or not-a-number.
std::optional<double> numberAtBegin(std::string_view text);

/// The same; 0 for a text that begins with no number.
double leadingNumber(std::string_view text);

/// The value rounded to the nearest whole number, an exact half to the even neighbour; `outside` when that is
/// not within lowest..highest.
std::int64_t wholeNumber(double value, std::int64_t lowest, std::int64_t highest, std::int64_t outside = 0);

}  // namespace vek
