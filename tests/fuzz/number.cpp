// Texts as numbers. Input: the text.
#include <cmath>
#include <optional>

#include "fuzz.h"
#include "parameters/ParamValueText.h"
#include "platform/leadingnumber.h"

namespace vek {
namespace {

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

bool isBlank(char c) {
    return c == ' ' || c == '\t';
}

std::string withoutAnyBlanks(std::string_view text) {
    std::string kept(text);
    std::erase_if(kept, [](char c) { return isBlank(c) || c == '\r' || c == '\n'; });
    return kept;
}

/// What the C library makes of a plain number in front: a sign or none, up to 15 digits with at most one
/// point among them, and behind it nothing that a number could go on with. Nothing for any other text.
std::optional<double> plainNumber(std::string_view text) {
    std::string number;
    std::size_t at = 0;
    if (text.starts_with('-') || text.starts_with('+')) {
        number += text[at++];
    }
    std::size_t digits = 0;
    for (bool point = false; at < text.size() && (isDigit(text[at]) || (text[at] == '.' && !point)); ++at) {
        point = point || text[at] == '.';
        digits += isDigit(text[at]) ? 1 : 0;
        number += text[at];
    }
    constexpr std::size_t exactDigits = 15;
    const bool goesOn = at < text.size() && std::string_view(".eE").find(text[at]) != std::string_view::npos;
    if (digits == 0 || digits > exactDigits || goesOn) {
        return std::nullopt;
    }
    return std::strtod(number.c_str(), nullptr);
}

void checkLeadingNumber(std::string_view text) {
    const double value = leadingNumber(text);
    require(std::isfinite(value), "a leading number is finite");
    while (!text.empty() && isBlank(text.front())) {
        text.remove_prefix(1);
    }
    if (const auto plain = plainNumber(text)) {
        require(value == *plain, "a plain leading number is read as the C library reads it");
    }
    const double whole = static_cast<double>(wholeNumber(value, -100, 65535, 70000));
    const bool within = whole >= -100 && whole <= 65535;
    require(within ? std::fabs(whole - value) <= 0.5 : whole == 70000, "a whole number is the nearest one");
    require(std::fabs(whole - value) != 0.5 || std::fmod(whole, 2) == 0, "of two as near it is the even one");
}

void checkParameterValue(std::string_view text) {
    const double value = ParamValueText(text);
    require(std::isfinite(value), "a parameter's value is finite");
    const auto whole = wholeTextNumber(text);
    require(!whole || *whole == value, "a text that is a number is that number");
    if (const auto plain = plainNumber(withoutAnyBlanks(text))) {
        require(value == *plain, "a plain value is read as the C library reads it");
    }
    require(ParamValueText(withoutAnyBlanks(text)) == value, "blanks do not count");
}

}  // namespace
}  // namespace vek

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text = vek::Input(data, size).rest();
    vek::checkLeadingNumber(text);
    vek::checkParameterValue(text);
    return 0;
}
