#pragma once

#include <string>
#include <string_view>

namespace vek {

/// Windows-1252 bytes as UTF-8. The five bytes without a character (81, 8D, 8F, 90, 9D hexadecimal) become
/// the C1 control characters of the same number, as Windows itself maps them, so that every byte comes back
/// unharmed.
std::string utf8FromWindows1252(std::string_view bytes);

/// UTF-8 as Windows-1252; a character that it lacks, and each broken sequence of UTF-8, becomes one "?".
std::string windows1252FromUtf8(std::string_view text);

/// The text with every control character (below 32, 127, and C1) and broken UTF-8 shown as U+FFFD, so that
/// what a device sends cannot break a line or hide text.
std::string withoutControls(std::string_view utf8);

}  // namespace vek
