#include "platform/profiletext.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>

#include "platform/textcodec.h"
#include "platform/trimmed.h"

namespace vek {

namespace {

constexpr std::string_view blanks = " \t";
constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

/// Capital letter of each Windows-1252 byte; the byte itself where there is none.
constexpr std::array<std::uint8_t, 256> makeCapitals() {
    std::array<std::uint8_t, 256> capitals{};
    for (unsigned byte = 0; byte < capitals.size(); ++byte) {
        const bool letter = (byte >= 'a' && byte <= 'z') || (byte >= 0xE0 && byte <= 0xFE && byte != 0xF7);
        capitals[byte] = static_cast<std::uint8_t>(letter ? byte - 0x20 : byte);
    }
    for (const unsigned scattered : {0x9AU, 0x9CU, 0x9EU}) {
        capitals[scattered] = static_cast<std::uint8_t>(scattered - 0x10);
    }
    capitals[0xFF] = 0x9F;
    return capitals;
}
constexpr auto capitals = makeCapitals();

bool sameLetter(char left, char right) {
    return capitals[static_cast<std::uint8_t>(left)] == capitals[static_cast<std::uint8_t>(right)];
}

bool sameName(std::string_view left, std::string_view right) {
    return left.size() == right.size() && std::equal(left.begin(), left.end(), right.begin(), sameLetter);
}

std::string_view unquoted(std::string_view text) {
    const bool quoted =
        text.size() >= 2 && (text.front() == '"' || text.front() == '\'') && text.front() == text.back();
    return quoted ? text.substr(1, text.size() - 2) : text;
}

std::string onOneLine(std::string_view text) {
    std::string line(text);
    std::replace_if(
        line.begin(), line.end(), [](char c) { return c == '\r' || c == '\n' || c == '\0'; }, ' ');
    return line;
}

std::size_t textBegin(std::string_view file) {
    return file.substr(0, byteOrderMark.size()) == byteOrderMark ? byteOrderMark.size() : 0;
}

struct Line {
    std::size_t begin, end,
        next;  ///< end: without the line break; next: begin of the
               ///< line behind
};

Line lineAt(std::string_view file, std::size_t begin) {
    const std::size_t feed = std::min(file.find('\n', begin), file.size());
    std::size_t end = feed;
    while (end > begin && file[end - 1] == '\r') {
        --end;
    }
    return {begin, end, std::min(feed + 1, file.size())};
}

/// Name in a `[section]` line; anything behind the bracket does not
/// count.
std::optional<std::string_view> sectionName(std::string_view line) {
    const std::size_t bracket = line.find(']');
    if (line.front() != '[' || bracket == std::string_view::npos) {
        return std::nullopt;
    }
    return trimmed(line.substr(1, bracket - 1), blanks);
}

bool holdsKey(std::string_view line, std::string_view key) {
    const std::size_t equals = line.find('=');
    return equals != std::string_view::npos && line.front() != ';' &&
           sameName(trimmed(line.substr(0, equals), blanks), key);
}

struct Range {
    std::size_t begin, end;
};

/// Where a key stands, or where it would go.
struct Place {
    bool hasSection = false;
    std::size_t newLine = 0;     ///< begin of a new line for the key
    std::optional<Range> value;  ///< all behind the equals sign,
                                 ///< when the key is there
};

Place locate(std::string_view file, std::string_view section, std::string_view key) {
    section = trimmed(section, blanks);
    key = trimmed(key, blanks);
    Place place;
    Line line{};
    for (std::size_t begin = textBegin(file); begin < file.size(); begin = line.next) {
        line = lineAt(file, begin);
        const std::string_view content = trimmed(file.substr(line.begin, line.end - line.begin), blanks);
        if (content.empty()) {
            continue;
        }
        if (const auto name = sectionName(content)) {
            if (place.hasSection) {
                return place;
            }
            place.hasSection = sameName(*name, section);
        } else if (place.hasSection && holdsKey(content, key)) {
            place.value = Range{file.find('=', line.begin) + 1, line.end};
            return place;
        }
        if (place.hasSection) {
            place.newLine = line.next;
        }
    }
    if (!place.hasSection) {
        place.newLine = file.size();
    }
    return place;
}

std::string_view lineBreak(std::string_view file) {
    const bool linefeedsOnly =
        file.find('\n') != std::string_view::npos && file.find("\r\n") == std::string_view::npos;
    return linefeedsOnly ? "\n" : "\r\n";
}

}  // namespace

std::string_view profileValue(std::string_view file, std::string_view section, std::string_view key) {
    const Place place = locate(file, section, key);
    if (!place.value) {
        return {};
    }
    return unquoted(trimmed(file.substr(place.value->begin, place.value->end - place.value->begin), blanks));
}

void setProfileValue(std::string& file, std::string_view section, std::string_view key,
                     std::string_view value) {
    const std::string sectionText = onOneLine(section);
    const std::string keyText = onOneLine(key);
    const std::string valueText = onOneLine(value);
    const Place place = locate(file, sectionText, keyText);
    if (place.value) {
        file.replace(place.value->begin, place.value->end - place.value->begin, valueText);
        return;
    }
    const std::string newline(lineBreak(file));
    std::string added;
    if (place.newLine > textBegin(file) && file[place.newLine - 1] != '\n') {
        added += newline;
    }
    if (!place.hasSection) {
        added += '[' + sectionText + ']' + newline;
    }
    added += keyText + '=' + valueText + newline;
    file.insert(place.newLine, added);
}

void removeProfileValue(std::string& file, std::string_view section, std::string_view key) {
    for (Place place = locate(file, section, key); place.value; place = locate(file, section, key)) {
        const std::size_t feed = file.rfind('\n', place.value->begin);
        const std::size_t begin = feed == std::string::npos ? textBegin(file) : feed + 1;
        file.erase(begin, lineAt(file, begin).next - begin);
    }
}

std::string readProfileText(std::string_view file, std::string_view section, std::string_view key,
                            std::size_t maxBytes) {
    const std::string_view value = profileValue(file, windows1252FromUtf8(section), windows1252FromUtf8(key));
    return utf8FromWindows1252(value.substr(0, maxBytes));
}

void writeProfileText(std::string& file, const std::vector<ProfileEntry>& entries) {
    for (const ProfileEntry& entry : entries) {
        const std::string section = windows1252FromUtf8(entry.section);
        const std::string key = windows1252FromUtf8(entry.key);
        if (entry.removed) {
            removeProfileValue(file, section, key);
        } else {
            setProfileValue(file, section, key, windows1252FromUtf8(entry.value));
        }
    }
}

}  // namespace vek
