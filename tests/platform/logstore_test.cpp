#include "platform/logstore.h"

#include <gtest/gtest.h>

namespace vek {
namespace {

TEST(LogStore, KeepsEveryLine) {
    // Lengths around one, two and three groups of seven bits, and lines that fill a chunk of 64 KiB but for a
    // few bytes, so that heads and lengths come to lie on both sides of its end; then many short ones.
    std::vector<std::size_t> lengths;
    for (const std::size_t edge : {128U, 16384U, 65536U, 65600U}) {
        for (std::size_t less = 0; less < 12; ++less) {
            lengths.insert(lengths.end(), {edge - less, 0, 200, 1});
        }
    }
    const auto bytesOf = [&](std::size_t line) {
        const std::size_t length = line < lengths.size() ? lengths[line] : line % 13;
        return std::string(length, static_cast<char>('A' + line % 26)) + std::to_string(line);
    };
    constexpr LogColor colors[] = {LogColor::Black, LogColor::Red, LogColor::Blue};
    LogStore log;
    constexpr std::size_t lines = 100'000;
    for (std::size_t line = 0; line < lines; ++line) {
        log.append(colors[line % 3], LogForm::Text, bytesOf(line));
    }
    ASSERT_EQ(log.lineCount(), lines);
    for (std::size_t line = 0; line < lines; ++line) {
        const LogLine kept = log.line(line);
        ASSERT_EQ(kept.bytes, bytesOf(line)) << line;
        ASSERT_EQ(kept.color, colors[line % 3]) << line;
    }
}

}  // namespace
}  // namespace vek
