#include "platform/textcodec.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace vek {

namespace {

constexpr unsigned firstSpecial = 0x80;  // of the bytes whose character has another number
constexpr std::array<char16_t, 32> specials = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178,
};

constexpr char32_t replacement = 0xFFFD;
constexpr char32_t broken = 0xFFFFFFFF;  // no character: the bytes are no UTF-8

struct Decoded {
    char32_t character;
    std::size_t length;  ///< bytes taken, at least 1
};

/// What the first byte of a character says about the rest. The bounds of the second byte keep out overlong
/// forms, surrogates and numbers above 10FFFF.
struct Lead {
    unsigned first, last;
    std::size_t length;
    unsigned secondMin, secondMax;
};
constexpr Lead leads[] = {
    {0xC2, 0xDF, 2, 0x80, 0xBF}, {0xE0, 0xE0, 3, 0xA0, 0xBF}, {0xE1, 0xEC, 3, 0x80, 0xBF},
    {0xED, 0xED, 3, 0x80, 0x9F}, {0xEE, 0xEF, 3, 0x80, 0xBF}, {0xF0, 0xF0, 4, 0x90, 0xBF},
    {0xF1, 0xF3, 4, 0x80, 0xBF}, {0xF4, 0xF4, 4, 0x80, 0x8F},
};

unsigned byteAt(std::string_view text, std::size_t index) {
    return static_cast<std::uint8_t>(text[index]);
}

Decoded decodeSequence(std::string_view text, const Lead& lead) {
    char32_t character = byteAt(text, 0) & (0x7FU >> lead.length);
    unsigned low = lead.secondMin;
    unsigned high = lead.secondMax;
    for (std::size_t i = 1; i < lead.length; ++i) {
        if (i >= text.size() || byteAt(text, i) < low || byteAt(text, i) > high) {
            return {broken, i};
        }
        character = character << 6 | (byteAt(text, i) & 0x3F);
        low = 0x80;
        high = 0xBF;
    }
    return {character, lead.length};
}

/// First character of a text that is not empty.
Decoded decodeFirst(std::string_view text) {
    const unsigned first = byteAt(text, 0);
    if (first < 0x80) {
        return {first, 1};
    }
    for (const Lead& lead : leads) {
        if (first >= lead.first && first <= lead.last) {
            return decodeSequence(text, lead);
        }
    }
    return {broken, 1};
}

/// Appends a character of the basic plane.
void appendUtf8(std::string& text, char32_t character) {
    if (character < 0x80) {
        text += static_cast<char>(character);
    } else if (character < 0x800) {
        text += static_cast<char>(0xC0 | character >> 6);
        text += static_cast<char>(0x80 | (character & 0x3F));
    } else {
        text += static_cast<char>(0xE0 | character >> 12);
        text += static_cast<char>(0x80 | (character >> 6 & 0x3F));
        text += static_cast<char>(0x80 | (character & 0x3F));
    }
}

char windows1252Byte(char32_t character) {
    if (character < firstSpecial) {
        return static_cast<char>(character);
    }
    for (std::size_t i = 0; i < specials.size(); ++i) {
        if (specials[i] == character) {
            return static_cast<char>(firstSpecial + i);
        }
    }
    const bool sameNumber = character >= 0xA0 && character <= 0xFF;
    return sameNumber ? static_cast<char>(character) : '?';
}

bool isControl(char32_t character) {
    return character < 0x20 || (character >= 0x7F && character < 0xA0);
}

}  // namespace

std::string utf8FromWindows1252(std::string_view bytes) {
    std::string text;
    text.reserve(bytes.size());
    for (const char byte : bytes) {
        const unsigned number = static_cast<std::uint8_t>(byte);
        const bool special = number >= firstSpecial && number < firstSpecial + specials.size();
        appendUtf8(text, special ? char32_t{specials[number - firstSpecial]} : char32_t{number});
    }
    return text;
}

std::string windows1252FromUtf8(std::string_view text) {
    std::string bytes;
    bytes.reserve(text.size());
    while (!text.empty()) {
        const Decoded next = decodeFirst(text);
        bytes += windows1252Byte(next.character);
        text.remove_prefix(next.length);
    }
    return bytes;
}

std::string withoutControls(std::string_view utf8) {
    std::string text;
    text.reserve(utf8.size());
    while (!utf8.empty()) {
        const Decoded next = decodeFirst(utf8);
        if (next.character == broken || isControl(next.character)) {
            appendUtf8(text, replacement);
        } else {
            text += utf8.substr(0, next.length);
        }
        utf8.remove_prefix(next.length);
    }
    return text;
}

}  // namespace vek
