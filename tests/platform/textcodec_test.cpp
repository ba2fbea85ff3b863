#include "platform/textcodec.h"

#include <gtest/gtest.h>

#include <set>

namespace vek {
namespace {

TEST(TextCodec, EveryByteIsOneCharacterAndComesBack) {
    std::set<std::string> characters;
    for (int number = 0; number < 256; ++number) {
        const std::string byte(1, static_cast<char>(number));
        const std::string text = utf8FromWindows1252(byte);
        EXPECT_EQ(windows1252FromUtf8(text), byte) << number;
        characters.insert(text);
    }
    EXPECT_EQ(characters.size(), 256U);
    EXPECT_EQ(utf8FromWindows1252("\xC4\xD6\xDC\xE4\xF6\xFC\xDF \x80 \x84x\x93 \x96 \xB5\x8A\x9F"),
              "ÄÖÜäöüß € „x“ – µŠŸ");
    EXPECT_EQ(utf8FromWindows1252("\x81\x8D\x8F\x90\x9D"), "\xC2\x81\xC2\x8D\xC2\x8F\xC2\x90\xC2\x9D");
}

TEST(TextCodec, WhatWindows1252LacksBecomesAQuestionMark) {
    const std::pair<std::string_view, std::string_view> cases[] = {
        {"kΩ", "k?"},
        {"a😀b", "a?b"},
        {"\xC2\x80", "?"},             // U+0080: the byte 80 is the euro sign
        {"\x80\xBF", "??"},            // no first byte
        {"\xC3", "?"},                 // cut off
        {"\xE2\x82x", "?x"},           // cut off, the rest is whole
        {"\xE0\x80\xAF", "???"},       // overlong
        {"\xED\xA0\x80", "???"},       // surrogate
        {"\xF4\x90\x80\x80", "????"},  // above 10FFFF
        {"\xC3\xC3\xA4", "?\xE4"},
    };
    for (const auto& [text, bytes] : cases) {
        EXPECT_EQ(windows1252FromUtf8(text), bytes) << text;
    }
}

TEST(TextCodec, ControlsAreShownAndBreakNothing) {
    using std::string_view_literals::operator""sv;
    EXPECT_EQ(withoutControls("U/V\t 80\r\n\0\x1B[2J\x7F"sv),
              "U/V\uFFFD 80\uFFFD\uFFFD\uFFFD\uFFFD[2J\uFFFD");
    EXPECT_EQ(withoutControls("\xC2\x80\xC2\x9F\xC2\xA0Ä€😀"), "\uFFFD\uFFFD\xC2\xA0Ä€😀");
    EXPECT_EQ(withoutControls("a\xE4z"), "a\uFFFDz");
}

}  // namespace
}  // namespace vek
