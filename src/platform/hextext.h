#pragma once

#include <string>
#include <string_view>

namespace vek {

/// Each byte as two upper-case hexadecimal digits, without separators.
std::string ToHexText(std::string_view bytes);

}  // namespace vek
