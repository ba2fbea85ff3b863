// One value written to a profile file of any content, and texts between the character sets. Input: lengths of
// section, key and value, these three, the file.
#include <algorithm>
#include <map>
#include <optional>
#include <utility>

#include "fuzz.h"
#include "platform/profiletext.h"
#include "platform/textcodec.h"

namespace vek {
namespace {

constexpr std::size_t unlimited = std::string::npos;

std::string trimmed(std::string text) {
    const auto isBlank = [](char c) { return c == ' ' || c == '\t'; };
    while (!text.empty() && isBlank(text.back())) {
        text.pop_back();
    }
    text.erase(text.begin(), std::find_if_not(text.begin(), text.end(), isBlank));
    return text;
}

std::string unquoted(const std::string& text) {
    const bool quoted =
        text.size() >= 2 && text.front() == text.back() && (text.front() == '"' || text.front() == '\'');
    return quoted ? text.substr(1, text.size() - 2) : text;
}

/// Windows-1252 text in small letters.
std::string folded(std::string text) {
    for (char& c : text) {
        const auto code = static_cast<unsigned char>(c);
        unsigned small = code;
        if ((code >= 'A' && code <= 'Z') || (code >= 0xC0 && code <= 0xDE && code != 0xD7)) {
            small = code + 0x20U;
        } else if (code == 0x8A || code == 0x8C || code == 0x8E) {
            small = code + 0x10U;
        } else if (code == 0x9F) {
            small = 0xFF;
        }
        c = static_cast<char>(small);
    }
    return text;
}

using Name = std::pair<std::string, std::string>;  // section and key
using Values = std::map<Name, std::string>;

/// All that a file holds, line by line.
Values valuesIn(std::string file) {
    if (file.starts_with("\xEF\xBB\xBF")) {
        file.erase(0, 3);
    }
    Values values;
    std::map<std::string, bool> sections;
    std::optional<std::string> section;
    for (std::size_t begin = 0; begin < file.size();) {
        const std::size_t feed = std::min(file.find('\n', begin), file.size());
        std::string line = file.substr(begin, feed - begin);
        begin = feed + 1;
        while (line.ends_with('\r')) {
            line.pop_back();
        }
        line = trimmed(line);
        const std::size_t bracket = line.find(']');
        const std::size_t equals = line.find('=');
        if (line.starts_with('[') && bracket != std::string::npos) {
            const std::string name = folded(trimmed(line.substr(1, bracket - 1)));
            section = std::exchange(sections[name], true) ? std::nullopt : std::optional(name);
        } else if (section && equals != std::string::npos && !line.starts_with(';')) {
            values.try_emplace({*section, folded(trimmed(line.substr(0, equals)))},
                               unquoted(trimmed(line.substr(equals + 1))));
        }
    }
    return values;
}

/// As a line of a profile file can hold it.
std::string onDisk(const std::string& text) {
    std::string line = windows1252FromUtf8(text);
    std::replace_if(
        line.begin(), line.end(), [](char c) { return c == '\r' || c == '\n' || c == '\0'; }, ' ');
    return line;
}

/// Names that would make another kind of line are the program's own fault; it has none.
bool isName(const Name& name) {
    const auto& [section, key] = name;
    const std::string_view breaks("\r\n\0", 3);
    return !key.empty() && key.find('=') == std::string::npos && !key.starts_with(';') &&
           !key.starts_with('[') && section.find(']') == std::string::npos &&
           (section + key).find_first_of(breaks) == std::string::npos;
}

void checkWriting(const std::string& before, const ProfileEntry& entry) {
    const Name name(folded(trimmed(windows1252FromUtf8(entry.section))),
                    folded(trimmed(windows1252FromUtf8(entry.key))));
    if (!isName(name)) {
        return;
    }
    std::string after = before;
    writeProfileText(after, {entry});
    const std::string value = unquoted(trimmed(onDisk(entry.value)));
    require(readProfileText(after, entry.section, entry.key, unlimited) == utf8FromWindows1252(value),
            "the value written is the value read");

    Values expected = valuesIn(before);
    const bool isNew = !expected.contains(name);
    expected[name] = value;
    require(valuesIn(after) == expected, "no other value changes");

    std::string again = after;
    writeProfileText(again, {entry});
    require(again == after, "writing once more changes nothing");

    const auto front = std::mismatch(before.begin(), before.end(), after.begin(), after.end());
    const std::string_view rest(before.data() + (front.first - before.begin()),
                                before.data() + before.size());
    require(!isNew || after.ends_with(rest), "a new value leaves every byte that was there");
}

void checkReading(const std::string& file) {
    for (const auto& [name, value] : valuesIn(file)) {
        const std::string read = readProfileText(file, utf8FromWindows1252(name.first),
                                                 utf8FromWindows1252(name.second), unlimited);
        require(read == utf8FromWindows1252(value), "each value is found");
    }
}

void checkTexts(const std::string& bytes) {
    const std::string text = utf8FromWindows1252(bytes);
    require(windows1252FromUtf8(text) == bytes, "every byte comes back from UTF-8");
    const std::string shown = withoutControls(text);
    require(std::none_of(shown.begin(), shown.end(),
                         [](char c) { return static_cast<unsigned char>(c) < ' ' || c == '\x7F'; }),
            "no control character is shown");
    require(withoutControls(shown) == shown, "what is shown is UTF-8");
    require(withoutControls(withoutControls(bytes)) == withoutControls(bytes), "broken UTF-8 is mended");
}

void run(Input input) {
    const std::size_t sectionLength = input.byte();
    const std::size_t keyLength = input.byte();
    const std::size_t valueLength = input.byte();
    const ProfileEntry entry{input.bytes(sectionLength), input.bytes(keyLength), input.bytes(valueLength)};
    const std::string file = input.rest();
    checkWriting(file, entry);
    checkReading(file);
    checkTexts(entry.value);
}

}  // namespace
}  // namespace vek

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    vek::run(vek::Input(data, size));
    return 0;
}
