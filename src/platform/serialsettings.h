#pragma once

#include <array>
#include <chrono>
#include <optional>
#include <string_view>

namespace vek {

/// The baud rates of the line in bit/s, in the order in which devices number them from 1.
inline constexpr std::array<int, 8> baudRates = {1200, 2400, 4800, 9600, 19200, 38400, 57600, 115200};

/// The rate in place of one that is none of these.
inline constexpr int defaultBaudRate = 9600;

/// How bytes go over the line.
struct SerialSettings {
    int baudRate = defaultBaudRate;
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
