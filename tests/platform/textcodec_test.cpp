#include "platform/textcodec.h"

#include <gtest/gtest.h>

namespace vek {
namespace {

TEST(TextCodec, EveryByteIsOneCharacterAndComesBack) {
    for (int number = 0; number < 256; ++number) {
        const std::string byte(1, static_cast<char>(number));
        EXPECT_EQ(windows1252FromUtf8(utf8FromWindows1252(byte)), byte) << number;
    }
    EXPECT_EQ(utf8FromWindows1252("\xC4\xDF \x80 \x84x\x93 \x96 \xB5\x8A\x9F\x81"), "Äß € „x“ – µŠŸ\xC2\x81");
}

TEST(TextCodec, WhatIsNoTextIsShownAndBreaksNothing) {
    const std::pair<std::string_view, std::string_view> cases[] = {
        {"kΩ", "k?"},
        {"a😀b", "a?b"},
        {"\xC2\x80", "?"},             // U+0080: the byte 80 is the euro sign
        {"\x80\xBF", "??"},            // no first byte
        {"\xE2\x82x", "?x"},           // cut off, the rest is whole
        {"\xE0\x80\xAF", "???"},       // overlong
        {"\xED\xA0\x80", "???"},       // surrogate
        {"\xF4\x90\x80\x80", "????"},  // above 10FFFF
        {"\xC3\xC3\xA4", "?\xE4"},
    };
    for (const auto& [text, bytes] : cases) {
        EXPECT_EQ(windows1252FromUtf8(text), bytes) << text;
    }
    EXPECT_EQ(withoutControls({"U/V\t\r\n\0\x1B[\x7F", 9}), "U/V\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD[");
    EXPECT_EQ(withoutControls("\xC2\x80\xC2\xA0Ä€😀\xE4z\x7F"), "\uFFFD\xC2\xA0Ä€😀\uFFFDz\uFFFD");
}

}  // namespace
}  // namespace vek
