#pragma once

#include <string>
#include <string_view>

namespace vek {

/// Bytes written as hexadecimal digits, blanks between them ignored: fromHex("01 83 02").
inline std::string fromHex(std::string_view written) {
    std::string text(written);
    std::erase(text, ' ');
    std::string bytes;
    for (std::size_t index = 0; index < text.size(); index += 2) {
        bytes += static_cast<char>(std::stoi(text.substr(index, 2), nullptr, 16));
    }
    return bytes;
}

}  // namespace vek
