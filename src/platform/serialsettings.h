#pragma once

#include <chrono>
#include <optional>
#include <string_view>

namespace vek {

/// How bytes go over the line.
struct SerialSettings {
    int baudRate = 9600;
    char parity = 'n';  ///< n none, e even, o odd
    int dataBits = 8;
    int stopBits = 1;

    /// Time that one byte takes with its start, parity and stop bits, rounded up.
    std::chrono::microseconds byteTime() const;
};

/// Settings from a text such as "9600,e,8,1"; nothing unless it has exactly the form that
/// SerialControl::setSettings() takes.
std::optional<SerialSettings> parseSerialSettings(std::string_view text);

}  // namespace vek
