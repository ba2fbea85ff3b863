#include "platform/logstore.h"

#include <algorithm>

#include "platform/hextext.h"
#include "platform/textcodec.h"

namespace vek {

namespace {

constexpr std::uint64_t chunkSize = std::uint64_t{1} << 16;
constexpr std::uint64_t linesPerMark = 32;
constexpr unsigned formShift = 4;

char headByte(LogColor color, LogForm form) {
    return static_cast<char>(static_cast<unsigned>(color) | static_cast<unsigned>(form) << formShift);
}

}  // namespace

void LogStore::append(LogColor color, LogForm form, std::string_view bytes) {
    if (count_.get() % linesPerMark == 0) {
        marks_.push_back(end_);
    }
    put(headByte(color, form));
    std::size_t rest = bytes.size();
    while (rest >= 0x80) {
        put(static_cast<char>((rest & 0x7F) | 0x80));
        rest >>= 7;
    }
    put(static_cast<char>(rest));
    putBlock(bytes);
    widest_ = std::max(widest_, form == LogForm::Hex ? 2 * bytes.size() : bytes.size());
    count_ = count_.get() + 1;
}

void LogStore::put(char byte) {
    if (end_ % chunkSize == 0) {
        chunks_.push_back(std::make_unique_for_overwrite<char[]>(chunkSize));
    }
    chunks_.back()[end_ % chunkSize] = byte;
    ++end_;
}

void LogStore::putBlock(std::string_view bytes) {
    while (!bytes.empty()) {
        put(bytes.front());
        bytes.remove_prefix(1);
        const std::uint64_t used = end_ % chunkSize;
        const std::string_view part = bytes.substr(0, used == 0 ? 0 : chunkSize - used);
        part.copy(chunks_.back().get() + used, part.size());
        end_ += part.size();
        bytes.remove_prefix(part.size());
    }
}

char LogStore::byteAt(std::uint64_t offset) const {
    return chunks_[offset / chunkSize][offset % chunkSize];
}

std::size_t LogStore::lengthAt(std::uint64_t& offset) const {
    std::size_t length = 0;
    for (unsigned shift = 0;; shift += 7) {
        const auto group = static_cast<unsigned char>(byteAt(offset++));
        length |= std::size_t{group & 0x7FU} << shift;
        if ((group & 0x80U) == 0) {
            return length;
        }
    }
}

std::uint64_t LogStore::offsetOf(std::uint64_t index) const {
    std::uint64_t offset = marks_[index / linesPerMark];
    for (std::uint64_t skip = index % linesPerMark; skip > 0; --skip) {
        ++offset;
        const std::size_t length = lengthAt(offset);
        offset += length;
    }
    return offset;
}

LogLine LogStore::line(std::uint64_t index) const {
    std::uint64_t offset = offsetOf(index);
    const auto head = static_cast<unsigned char>(byteAt(offset++));
    LogLine line;
    line.color = static_cast<LogColor>(head & 0x0FU);
    line.form = static_cast<LogForm>(head >> formShift);
    line.bytes.resize(lengthAt(offset));
    for (char& byte : line.bytes) {
        byte = byteAt(offset++);
    }
    return line;
}

std::string LogStore::text(std::uint64_t index) const {
    const LogLine entry = line(index);
    return entry.form == LogForm::Hex ? ToHexText(entry.bytes)
                                      : withoutControls(utf8FromWindows1252(entry.bytes));
}

}  // namespace vek
