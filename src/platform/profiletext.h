#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "platform/seams/profilefiles.h"

namespace vek {

// What a profile file holds, without the file: Windows-1252 bytes in, Windows-1252 bytes out, in time linear
// to the text. Lines end with LF, and any CRs before it or before the end of the file belong to the line
// break; a line is a `[section]`, a comment (";" first), a key=value, or something else that is left alone.
// Blanks and tabs around section and key names do not count. A UTF-8 byte-order mark at the start is passed
// over.

/// Value of the first such key in the first such section, without blanks and tabs around it and without one
/// pair of quotes around the whole; a part of `file`. "" when there is none.
std::string_view profileValue(std::string_view file, std::string_view section, std::string_view key);

/// Sets that value to exactly `value`: behind the equals sign of the line that is there, else in a new line
/// behind the last line of the section that is not blank, else in a new section at the end. New lines end as
/// the file's lines do: with LF if all of them do, else with CRLF. CR, LF and NUL in any of the three texts
/// are written as blanks.
void setProfileValue(std::string& file, std::string_view section, std::string_view key,
                     std::string_view value);

/// Takes out every line of that key in the first such section.
void removeProfileValue(std::string& file, std::string_view section, std::string_view key);

/// profileValue() with UTF-8 outside the file; at most `maxBytes` bytes of the value in the file.
std::string readProfileText(std::string_view file, std::string_view section, std::string_view key,
                            std::size_t maxBytes);

/// setProfileValue(), or removeProfileValue(), of all entries in their order.
void writeProfileText(std::string& file, const std::vector<ProfileEntry>& entries);

}  // namespace vek
