#include "platform/logstore.h"

#include <gtest/gtest.h>

#include <functional>

namespace vek {
namespace {

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
    EXPECT_EQ(log.line(2).color, LogColor::Blue);
    EXPECT_EQ(log.line(2).bytes, "Ger\xE4t \x80\r\n\x01");
    EXPECT_EQ(log.widestLine(), 10U);
}

/// Has lines of these lengths appended; any mix-up of them shows.
void expectKept(std::size_t lines, const std::function<std::size_t(std::size_t)>& lengthOf,
                std::size_t step) {
    LogStore log;
    const auto bytesOf = [&](std::size_t line) {
        return std::string(lengthOf(line), static_cast<char>('A' + line % 26)) + std::to_string(line);
    };
    for (std::size_t line = 0; line < lines; ++line) {
        log.append(line % 2 == 0 ? LogColor::Black : LogColor::Red, LogForm::Text, bytesOf(line));
    }
    ASSERT_EQ(log.lineCount(), lines);
    for (std::size_t line = 0; line < lines; line += step) {
        const LogLine kept = log.line(line);
        ASSERT_EQ(kept.bytes, bytesOf(line)) << line;
        ASSERT_EQ(kept.color, line % 2 == 0 ? LogColor::Black : LogColor::Red) << line;
    }
}

TEST(LogStore, KeepsEveryLine) {
    // Around one, two and three groups of seven bits, and lines that fill a chunk of 64 KiB but for a few
    // bytes, so that heads and lengths come to lie on both sides of its end.
    std::vector<std::size_t> lengths;
    for (const std::size_t edge :
         {std::size_t{128}, std::size_t{16384}, std::size_t{65536}, std::size_t{65600}}) {
        for (std::size_t less = 0; less < 12; ++less) {
            lengths.insert(lengths.end(), {edge - less, 0, 200, 1});
        }
    }
    expectKept(
        lengths.size(), [&](std::size_t line) { return lengths[line]; }, 1);
    expectKept(
        1'000'000, [](std::size_t line) { return line % 13; }, 31);
}

}  // namespace
}  // namespace vek
