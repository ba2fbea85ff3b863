#include "parameters/ParamValueText.h"

#include <charconv>
#include <limits>
#include <locale>
#include <sstream>
#include <string>

namespace vek {

namespace {

struct NumberInText {
    double value = 0;
    std::size_t length = 0;  ///< characters of the number; 0 = there is none
};

std::string withoutBlanks(std::string_view text) {
    std::string kept(text);
    std::erase_if(kept, [](char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; });
    return kept;
}

/// Whether a number begins here; from_chars would also take "inf" and "nan", which are no numbers to a user.
bool beginsNumber(std::string_view unsignedText) {
    const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
    const std::size_t digit = unsignedText.starts_with('.') ? 1 : 0;
    return unsignedText.size() > digit && isDigit(unsignedText[digit]);
}

/// A well-formed number that a double cannot hold: the largest one, or 0 for one too small.
double boundedValue(const std::string& number) {
    std::istringstream stream(number);
    stream.imbue(std::locale::classic());
    double value = 0;
    stream >> value;
    return value;
}

NumberInText leadingNumberOf(const std::string& text) {
    const std::size_t sign = text.starts_with('+') || text.starts_with('-') ? 1 : 0;
    if (!beginsNumber(std::string_view(text).substr(sign))) {
        return {};
    }
    const char* const begin = text.data() + sign;
    double value = 0;
    const auto result = std::from_chars(begin, text.data() + text.size(), value);
    if (result.ec == std::errc::result_out_of_range) {
        value = boundedValue(std::string(begin, result.ptr));
    }
    return {text.starts_with('-') ? -value : value, static_cast<std::size_t>(result.ptr - text.data())};
}

}  // namespace

double ParamValueText(std::string_view text) {
    return leadingTextNumber(text).value_or(0);
}

std::optional<double> leadingTextNumber(std::string_view text) {
    const NumberInText number = leadingNumberOf(withoutBlanks(text));
    return number.length != 0 ? std::optional(number.value) : std::nullopt;
}

std::optional<double> wholeTextNumber(std::string_view text) {
    const std::string kept = withoutBlanks(text);
    const NumberInText number = leadingNumberOf(kept);
    return number.length != 0 && number.length == kept.size() ? std::optional(number.value) : std::nullopt;
}

}  // namespace vek
