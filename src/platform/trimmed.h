#pragma once

#include <string_view>

namespace vek {

/// The text without these characters at both ends.
inline std::string_view trimmed(std::string_view text, std::string_view outer = " ") {
    const std::size_t begin = text.find_first_not_of(outer);
    return begin == std::string_view::npos ? std::string_view{}
                                           : text.substr(begin, text.find_last_not_of(outer) + 1 - begin);
}

}  // namespace vek
