#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

namespace vek {

/// Bytes written as hexadecimal digits, blanks between them ignored: fromHex("01 83 02").
inline std::string fromHex(std::string_view text) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string bytes;
    bool complete = true;
    for (const char character : text) {
        if (character == ' ') {
            continue;
        }
        const std::size_t value = digits.find(character);
        if (value == std::string_view::npos) {
            throw std::invalid_argument("not hexadecimal: " + std::string(text));
        }
        if (complete) {
            bytes += '\0';
        }
        const auto begun = static_cast<unsigned char>(bytes.back());
        bytes.back() = static_cast<char>(std::size_t{begun} << 4U | value);
        complete = !complete;
    }
    return bytes;
}

}  // namespace vek
