#pragma once

#include <charconv>
#include <optional>
#include <string_view>
#include <system_error>

namespace vek::sim {

// The number that the whole text is, or nothing when it is none or lies outside min..max.
template <typename Number>
std::optional<Number> parseNumber(std::string_view text, Number min, Number max) {
    Number number{};
    const char* end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, number);
    const bool whole = result.ec == std::errc{} && result.ptr == end;
    return whole && number >= min && number <= max ? std::optional(number) : std::nullopt;
}

// Reads such a number into the target; returns whether there was one and leaves the target alone otherwise.
template <typename Number>
bool readNumber(std::string_view text, Number min, Number max, Number& target) {
    const auto number = parseNumber(text, min, max);
    target = number.value_or(target);
    return number.has_value();
}

}  // namespace vek::sim
