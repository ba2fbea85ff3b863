#include "platform/logstore.h"

#include <gtest/gtest.h>

namespace vek {
namespace {

/// A line that tells its number by length and content, so that any mix-up shows.
std::string lineOf(std::uint64_t index) {
    std::string bytes(index % 13, static_cast<char>(index % 251));
    return bytes + std::to_string(index);
}

TEST(LogStore, ShowsLinesAsTheyWereAppended) {
    LogStore log;
    std::vector<std::uint64_t> counts;
    const Subscription watch = log.count().observe([&](std::uint64_t count) { counts.push_back(count); });
    log.append(LogColor::Black, LogForm::Hex, std::string_view("\x01\x03\x00\xFF", 4));
    log.append(LogColor::Red, LogForm::Hex, "");
    log.append(LogColor::Blue, LogForm::Text, "Ger\xE4t \x80\r\n\x01");
    EXPECT_EQ(counts, (std::vector<std::uint64_t>{1, 2, 3}));
    EXPECT_EQ(log.text(0), "010300FF");
    EXPECT_EQ(log.text(1), "");
    EXPECT_EQ(log.text(2), "Gerät €\uFFFD\uFFFD\uFFFD");
    EXPECT_EQ(log.line(0).color, LogColor::Black);
    EXPECT_EQ(log.line(1).color, LogColor::Red);
    EXPECT_EQ(log.line(2).color, LogColor::Blue);
    EXPECT_EQ(log.line(2).form, LogForm::Text);
    EXPECT_EQ(log.line(2).bytes, "Ger\xE4t \x80\r\n\x01");
    EXPECT_EQ(log.widestLine(), 10U);
}

TEST(LogStore, LengthsAtTheEdgesOfTheirEncodingAndOfChunks) {
    // Lengths around one, two and three groups of seven bits, and lines that fill a chunk of 64 KiB but for a
    // few bytes, so that heads and lengths come to lie on both sides of its end.
    std::vector<std::size_t> lengths = {0, 1, 127, 128, 129, 16383, 16384, 16385, 300000};
    for (std::size_t rest = 0; rest < 8; ++rest) {
        lengths.insert(lengths.end(), {65536 - rest, 0, 200, 1});
    }
    LogStore log;
    for (std::size_t index = 0; index < lengths.size(); ++index) {
        log.append(LogColor::Red, LogForm::Text,
                   std::string(lengths[index], static_cast<char>('A' + index % 26)));
    }
    for (std::size_t index = lengths.size(); index-- > 0;) {
        EXPECT_EQ(log.line(index).bytes, std::string(lengths[index], static_cast<char>('A' + index % 26)))
            << index;
    }
    EXPECT_EQ(log.widestLine(), 300000U);
}

TEST(LogStore, AMillionLinesStayReadableEverywhere) {
    constexpr std::uint64_t lines = 1'000'000;
    LogStore log;
    for (std::uint64_t index = 0; index < lines; ++index) {
        log.append(index % 2 == 0 ? LogColor::Black : LogColor::Red, LogForm::Text, lineOf(index));
    }
    ASSERT_EQ(log.lineCount(), lines);
    const auto check = [&](std::uint64_t index) {
        const LogLine line = log.line(index);
        EXPECT_EQ(line.bytes, lineOf(index)) << index;
        EXPECT_EQ(line.color, index % 2 == 0 ? LogColor::Black : LogColor::Red) << index;
    };
    for (std::uint64_t index = 0; index < lines; index += 997) {
        check(index);
    }
    for (const std::uint64_t index : {std::uint64_t{31}, std::uint64_t{32}, std::uint64_t{33}, lines - 1}) {
        check(index);
    }
}

}  // namespace
}  // namespace vek
