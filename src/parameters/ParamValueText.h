#pragma once

#include <optional>
#include <string_view>

namespace vek {

/// The number that a parameter's text begins with: digits with "." as decimal point whatever the locale,
/// perhaps a sign before and a decimal exponent (1e3) behind them; blanks, tabs and line breaks do not count
/// anywhere, what follows the number is ignored. 0 for a text that begins with no number. Never infinite or
/// not-a-number: a number beyond all bounds counts as the largest there is.
double ParamValueText(std::string_view text);

/// The same; nothing for a text that begins with no number.
std::optional<double> leadingTextNumber(std::string_view text);

/// The same for a text that is a number as a whole; nothing for any other text.
std::optional<double> wholeTextNumber(std::string_view text);

}  // namespace vek
