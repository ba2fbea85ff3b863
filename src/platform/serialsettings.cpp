#include "platform/serialsettings.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <string>

namespace vek {

namespace {

constexpr std::string_view parities[] = {"n", "e", "o"};
constexpr std::string_view dataBits[] = {"7", "8"};
constexpr std::string_view stopBits[] = {"1", "2"};

template <typename Values, typename Value>
bool isOneOf(const Values& values, const Value& value) {
    return std::find(std::begin(values), std::end(values), value) != std::end(values);
}

/// The four fields between the commas, or nothing when there are more or fewer.
std::optional<std::array<std::string_view, 4>> splitFields(std::string_view text) {
    std::array<std::string_view, 4> fields;
    for (std::size_t i = 0; i + 1 < fields.size(); ++i) {
        const std::size_t comma = text.find(',');
        if (comma == std::string_view::npos) {
            return std::nullopt;
        }
        fields[i] = text.substr(0, comma);
        text.remove_prefix(comma + 1);
    }
    fields.back() = text;
    return fields;
}

int numberIn(std::string_view digits) {
    int number = 0;
    std::from_chars(digits.data(), digits.data() + digits.size(), number);
    return number;
}

}  // namespace

std::chrono::microseconds SerialSettings::byteTime() const {
    constexpr int second = 1'000'000;
    const int bits = 1 + dataBits + (parity == 'n' ? 0 : 1) + stopBits;
    return std::chrono::microseconds{(bits * second + baudRate - 1) / baudRate};
}

std::optional<SerialSettings> parseSerialSettings(std::string_view text) {
    const auto fields = splitFields(text);
    if (!fields) {
        return std::nullopt;
    }
    const auto& [rate, parity, data, stop] = *fields;
    const int baudRate = numberIn(rate);
    if (!isOneOf(baudRates, baudRate) || std::to_string(baudRate) != rate || !isOneOf(parities, parity) ||
        !isOneOf(dataBits, data) || !isOneOf(stopBits, stop)) {
        return std::nullopt;
    }
    return SerialSettings{baudRate, parity.front(), numberIn(data), numberIn(stop)};
}

}  // namespace vek
