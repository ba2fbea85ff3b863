#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <string>
#include <string_view>

#include "platform/property.h"

namespace vek {

enum class LogColor : std::uint8_t { Black, Red, Blue };

/// How the bytes of a log line are shown.
enum class LogForm : std::uint8_t {
    Hex,   ///< two upper-case hexadecimal digits a byte, without separators
    Text,  ///< as Windows-1252 text
};

struct LogLine {
    LogColor color = LogColor::Black;
    LogForm form = LogForm::Hex;
    std::string bytes;
};

/// The lines of a log that grows for days: append-only, about two bytes a line more than its content, and the
/// same cost for every line appended. Text is made when a line is looked at.
///
/// Layout: lines one after the other in chunks of equal size; a line is one byte of colour and form, the
/// length in groups of seven bits (lowest first, bit 7 = more follow), then the bytes. Every 32nd line's
/// offset is kept.
class LogStore {
  public:
    /// Adds a line at the end; nothing else can add or change one.
    void append(LogColor color, LogForm form, std::string_view bytes);

    std::uint64_t lineCount() const { return count_.get(); }

    /// Changes with every line appended.
    Property<std::uint64_t>& count() { return count_; }

    /// Line `index`, 0 to lineCount() - 1.
    LogLine line(std::uint64_t index) const;

    /// Text of line `index` as UTF-8 without a line end; control characters show as U+FFFD.
    std::string text(std::uint64_t index) const;

    /// Characters of the longest line so far (bytes for text, two a byte for hexadecimal).
    std::size_t widestLine() const { return widest_; }

  private:
    void put(char byte);
    void putBlock(std::string_view bytes);
    char byteAt(std::uint64_t offset) const;
    std::size_t lengthAt(std::uint64_t& offset) const;
    std::uint64_t offsetOf(std::uint64_t index) const;

    std::deque<std::unique_ptr<char[]>> chunks_;
    std::deque<std::uint64_t> marks_;
    std::uint64_t end_ = 0;
    std::size_t widest_ = 0;
    Property<std::uint64_t> count_{0};
};

}  // namespace vek
