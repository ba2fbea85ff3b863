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

TEST(KdlFrames, TrailersOfAllChecksums) {
    const std::map<unsigned, std::string> borders = {{0, "dZB"},   {56, "dZz"}, {57, "zzE"},  {110, "zzz"},
                                                     {111, "(G"},  {160, "(x"}, {161, "00A"}, {214, "00v"},
                                                     {215, "KKA"}, {255, "KKi"}};
    for (unsigned checksum = 0; checksum < 256; ++checksum) {
        // A text of one byte whose sum with the "&" leaves that checksum.
        const Bytes frame = framed(Bytes(1, static_cast<char>((2 * 256 - '&' - checksum) % 256)));
        ASSERT_TRUE(frame.size() >= 6 && frame[1] == '&' && frame.ends_with("\r\n")) << checksum;
        const std::string trailer = frame.substr(2, frame.size() - 4);
        EXPECT_EQ(codeSum(trailer) % 256, checksum);
        for (const char c : trailer) {
            EXPECT_TRUE(c > ' ' && c <= 'z' && c != '&') << checksum << ' ' << trailer;
        }
        if (const auto border = borders.find(checksum); border != borders.end()) {
            EXPECT_EQ(trailer, border->second) << checksum;
        }
    }
}

TEST(KdlFrames, PrefixesOfAddressTexts) {
    const std::pair<const char*, std::optional<std::string>> cases[] = {
        {"1", ":;001"},         {"12", ":;012"},       {"247", ":;247"},   {"     90", ":;090"},
        {"12a", ":;12a"},       {"5 ", ":;05 "},       {"", std::nullopt}, {"    ", std::nullopt},
        {"0012", std::nullopt}, {"247 ", std::nullopt}};
    for (const auto& [text, prefix] : cases) {
        EXPECT_EQ(kdlPrefix(text), prefix) << '"' << text << '"';
    }
}

TEST(KdlFrames, ThePayloadStandsBetweenTheSixthCharacterAndTheFirstAmpersand) {
    const std::pair<const char*, const char*> cases[] = {{"", ""},
                                                         {"&", "&"},
                                                         {"abcdefgh", "abcdefgh"},
                                                         {"a&cdefgh", "a&cdefgh"},
                                                         {"abcde&gh", "abcde&gh"},
                                                         {"abcdef&h", ""},
                                                         {"abcdefg&", "g"},
                                                         {"abcdefgh&&d&", "gh"},
                                                         {"ab&defgh&dZB", "ab&defgh&dZB"},
                                                         {"abcdef\r\n\xFF&(G", "\r\n\xFF"}};
    for (const auto& [reply, payload] : cases) {
        EXPECT_EQ(kdlPayload(reply), payload) << reply;
    }
    EXPECT_EQ(kdlPayload(Bytes("abcdef\0x&", 9)), Bytes("\0x", 2));
}

}  // namespace
}  // namespace vek
