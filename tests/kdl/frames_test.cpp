#include <gtest/gtest.h>

#include <map>
#include <numeric>

#include "kdl/kdlframe.h"

namespace vek {
namespace {

Bytes framed(Bytes text) {
    KdlAppendChecksum(text);
    return text;
}

unsigned codeSum(std::string_view text) {
    return std::accumulate(text.begin(), text.end(), 0U,
                           [](unsigned sum, char c) { return sum + static_cast<unsigned char>(c); });
}

TEST(KdlFrames, RequestsAreTheseBytes) {
    for (const char* frame :
         {":;001:IDNM?&dZu", ":;001:MEM?&(T", ":;005:CAN 8&zzx", ":;090:TRSH? 8&00Z", ":;003:IDNV?&dZj",
          ":;003:IDND?&zzF", ":;003:IDNF?&dZz", ":;003:ALM? 15&KKc", ":;003:BTR? 1&dZb", ":;003:KAL&00`",
          ":;003:DEFLT 51&00C", ":;247:REL? 1&dZ]", "     :IDNM?&(q"}) {
        const std::string text = frame;
        EXPECT_EQ(framed(text.substr(0, text.find('&'))), text + "\r\n");
    }
}

/// A text of one byte whose sum with the "&" leaves that checksum.
Bytes textWithChecksum(unsigned checksum) {
    return Bytes(1, static_cast<char>((2 * 256 - '&' - checksum) % 256));
}

TEST(KdlFrames, TrailersOfAllChecksums) {
    const std::map<unsigned, std::string> borders = {
        {0, "dZB"},  {56, "dZz"},  {57, "zzE"},  {110, "zzz"}, {111, "(G"},
        {160, "(x"}, {161, "00A"}, {214, "00v"}, {215, "KKA"}, {255, "KKi"},
    };
    std::size_t bordersSeen = 0;
    for (unsigned checksum = 0; checksum < 256; ++checksum) {
        const Bytes frame = framed(textWithChecksum(checksum));
        ASSERT_GE(frame.size(), 6U);
        ASSERT_EQ(frame.substr(frame.size() - 2), "\r\n");
        const std::string summed = frame.substr(0, frame.size() - 2);
        EXPECT_EQ(codeSum(summed) % 256, 0U) << checksum;
        ASSERT_EQ(summed[1], '&');
        const std::string trailer = summed.substr(2);
        EXPECT_EQ(codeSum(trailer) % 256, checksum);
        for (const char c : trailer) {
            EXPECT_TRUE(c > ' ' && c <= 'z' && c != '&') << checksum << ' ' << trailer;
        }
        if (const auto border = borders.find(checksum); border != borders.end()) {
            EXPECT_EQ(trailer, border->second) << checksum;
            ++bordersSeen;
        }
    }
    EXPECT_EQ(bordersSeen, borders.size());
}

TEST(KdlFrames, PrefixesOfAddressTexts) {
    const std::pair<const char*, std::optional<std::string>> cases[] = {
        {"1", ":;001"},         {"12", ":;012"},        {"123", ":;123"},       {"0", ":;000"},
        {" 7", ":;007"},        {"     90", ":;090"},   {"12a", ":;12a"},       {"5 ", ":;05 "},
        {"", std::nullopt},     {"    ", std::nullopt}, {"1234", std::nullopt}, {"0012", std::nullopt},
        {"247 ", std::nullopt},
    };
    for (const auto& [text, prefix] : cases) {
        EXPECT_EQ(kdlPrefix(text), prefix) << '"' << text << '"';
    }
}

TEST(KdlFrames, ThePayloadStandsBetweenTheSixthCharacterAndTheFirstAmpersand) {
    const std::pair<const char*, const char*> cases[] = {
        {"", ""},
        {"&", "&"},
        {"abc", "abc"},
        {"abcdefgh", "abcdefgh"},
        {"&bcdefgh", "&bcdefgh"},
        {"a&cdefgh", "a&cdefgh"},
        {"ab&defgh", "ab&defgh"},
        {"abc&efgh", "abc&efgh"},
        {"abcd&fgh", "abcd&fgh"},
        {"abcde&gh", "abcde&gh"},
        {"abcdef&h", ""},
        {"abcdefg&", "g"},
        {"abcdefgh&dZB", "gh"},
        {"abcdefgh&&d&", "gh"},
        {"ab&defgh&dZB", "ab&defgh&dZB"},
        {"abcdef\r\n\xFF&(G", "\r\n\xFF"},
    };
    for (const auto& [reply, payload] : cases) {
        EXPECT_EQ(kdlPayload(reply), payload) << reply;
    }
    EXPECT_EQ(kdlPayload(Bytes("abcdef\0x&", 9)), Bytes("\0x", 2));
}

}  // namespace
}  // namespace vek
