#pragma once

#include <string>
#include <string_view>

namespace vek {

/// The text for a threshold that is off, in replies and in the boxes of the parameter editor.
inline constexpr const char* kdlOffText = "off";

/// The value in the reply to ":TRSH?", ":MEM?" or ":REL?": what stands behind the first key found, without
/// blanks around it. Keys are units and state words; they are looked for in a fixed order, in exact letter
/// case and also inside other words, and only the first one found counts. A reply of less than four
/// characters with "off" is the value itself. Empty when there is no key.
std::string KdlParameterValueText(std::string_view reply);

}  // namespace vek
