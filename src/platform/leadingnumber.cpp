#include "platform/leadingnumber.h"

#include <charconv>
#include <cmath>

namespace vek {

std::optional<double> numberAtBegin(std::string_view text) {
    const std::size_t start = text.find_first_not_of(" \t");
    if (start == std::string_view::npos) {
        return std::nullopt;
    }
    text.remove_prefix(start);
    if (text.starts_with('+') && !text.starts_with("+-")) {
        text.remove_prefix(1);
    }
    // from_chars also knows "inf" and "nan", which are no numbers to a user.
    const std::size_t digits = text.starts_with('-') ? 1 : 0;
    if (text.size() == digits || (text[digits] != '.' && (text[digits] < '0' || text[digits] > '9'))) {
        return std::nullopt;
    }
    double value = 0;
    const auto result =
        std::from_chars(text.data(), text.data() + text.size(), value, std::chars_format::fixed);
    return result.ec == std::errc() ? std::optional(value) : std::nullopt;
}

double leadingNumber(std::string_view text) {
    return numberAtBegin(text).value_or(0);
}

std::int64_t wholeNumber(double value, std::int64_t lowest, std::int64_t highest, std::int64_t outside) {
    const double rounded = std::nearbyint(value);
    const bool within = rounded >= static_cast<double>(lowest) && rounded <= static_cast<double>(highest);
    return within ? static_cast<std::int64_t>(rounded) : outside;
}

}  // namespace vek
