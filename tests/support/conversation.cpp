#include "support/conversation.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <regex>
#include <sstream>

#include "support/hexbytes.h"
#include "support/table.h"

namespace vek {

namespace {

struct Row {
    std::size_t line;
    std::string operation, request, reply, result, boxes, time;
};

std::vector<Row> rowsOf(const std::string& file) {
    std::vector<Row> rows;
    for (auto& [line, text, cells] : readTable(file)) {
        cells.resize(6);
        rows.push_back({line, cells[0], cells[1], cells[2], cells[3], cells[4], cells[5]});
    }
    return rows;
}

/// CRC-16 as the serial line protocol draws it: a shift register preset to ones that takes the bits of each
/// byte lowest first, with x^15 and x^2 fed back; its low byte is sent first.
Bytes crcOf(std::string_view frame) {
    unsigned shifted = 0xFFFF;
    for (std::size_t bit = 0; bit < 8 * frame.size(); ++bit) {
        const unsigned out = (static_cast<unsigned char>(frame[bit / 8]) >> bit % 8 ^ shifted) & 1U;
        shifted = shifted >> 1U ^ (out << 15U | out << 13U | out);
    }
    return {static_cast<char>(shifted & 0xFFU), static_cast<char>(shifted >> 8U)};
}

/// End of a KDL frame: of five forms the one whose last character, which makes the sum of all codes a
/// multiple of 256, lies between its bounds.
Bytes kdlEnd(const Bytes& frame) {
    constexpr std::pair<const char*, const char*> forms[] = {
        {"&dZ", "Bz"}, {"&zz", "Ez"}, {"&(", "Gx"}, {"&00", "Av"}, {"&KK", "Ai"}};
    for (const auto& [begin, bounds] : forms) {
        int sum = 0;
        for (const char character : frame + begin) {
            sum += static_cast<unsigned char>(character);
        }
        const int last = 256 - sum % 256;
        if (last >= bounds[0] && last <= bounds[1]) {
            return begin + Bytes(1, static_cast<char>(last)) + "\r\n";
        }
    }
    throw std::logic_error("no form fits");
}

/// Calls `take` with the time and the bytes of each piece of a cell.
template <class Take>
void eachPiece(const std::string& cell, bool kdl, Take take) {
    const std::regex pieces("(?:@(\\d+) )?(.+?)(?: (?=@)|$)");
    Bytes frame;
    for (std::sregex_iterator piece(cell.begin(), cell.end(), pieces), end; piece != end; ++piece) {
        const std::size_t before = frame.size();
        const std::string text = (*piece)[2];
        for (std::size_t at = 0; at < text.size(); ++at) {
            if (text[at] == '*') {
                frame += kdl ? kdlEnd(frame) : crcOf(frame);
            } else if (kdl && text[at] != '\\') {
                frame += text[at];
            } else if (text[at] != ' ') {
                at += kdl ? 1 : 0;
                frame += fromHex(text.substr(at++, 2));
            }
        }
        take(Milliseconds{(*piece)[1].matched ? std::stoi((*piece)[1]) : 20}, frame.substr(before));
    }
}

Texts boxesOf(const std::string& cell) {
    Texts boxes = split(cell, " // ");
    std::replace(boxes.begin(), boxes.end(), std::string("CRC"), crcDialog);
    std::replace(boxes.begin(), boxes.end(), std::string("BYE"), farewell);
    return boxes;
}

/// Answers the requests of one operation, and compares what goes over the line with rows and log.
class Exchange {
  public:
    Exchange(TestProgram& test, const Row* begin, const Row* end) : test_(test), next_(begin), end_(end) {
        test_.serial.onWrite = [this](std::string_view frame) {
            wire_.push_back({Bytes(frame), {}});
            lines_ = test_.program.terminalLog.lineCount();
            rounds_ = test_.desktop.eventRounds;
        };
        test_.serial.peer = [this](std::string_view) {
            reply(test_.serial, next_ == end_ ? "" : (next_++)->reply, kdl_);
        };
        test_.serial.onRead = [this](std::string_view bytes) { read(bytes); };
    }
    Exchange(const Exchange&) = delete;
    Exchange& operator=(const Exchange&) = delete;
    ~Exchange() { test_.serial.onWrite = test_.serial.onRead = test_.serial.peer = nullptr; }

    void compare(const Row* row) const {
        Texts expected, sent, onLine, logged;
        for (; row != end_; ++row) {
            if (!row->request.empty()) {
                expected.push_back(readable(frameBytes(row->request, kdl_)));
            }
        }
        for (const auto& [frame, received] : wire_) {
            sent.push_back(readable(frame));
            onLine.push_back(
                std::regex_replace(sent.back() + " > " + readable(received), std::regex("\r\n"), ""));
        }
        const LogStore& log = test_.program.terminalLog;
        for (std::uint64_t index = firstLine_; index < log.lineCount(); ++index) {
            const auto [color, form, bytes] = log.line(index);
            EXPECT_EQ(form, kdl_ ? LogForm::Text : LogForm::Hex);
            if (color == LogColor::Black) {
                logged.push_back(readable(bytes) + " > ");
            } else {
                EXPECT_EQ(color, kdl_ ? LogColor::Blue : LogColor::Red);
                logged.back() += readable(bytes);
            }
        }
        EXPECT_EQ(sent, expected);
        EXPECT_EQ(logged, onLine);
    }

  private:
    void read(std::string_view bytes) {
        const Program& program = test_.program;
        const bool late = kdl_ ? !program.TimeOut.enabled && !program.TimeOutElapsed
                               : lines_ != program.terminalLog.lineCount();
        if (!wire_.empty() && !late) {
            Bytes& received = wire_.back().second += bytes;
            const auto beside = 20 + std::ssize(received) / 2 + test_.serial.sendTime.count();
            EXPECT_LE(test_.desktop.eventRounds - rounds_, kdl_ ? beside : 0);
        }
    }

    std::string readable(const Bytes& frame) const { return kdl_ ? frame : spacedHex(frame); }

    TestProgram& test_;
    const bool kdl_ = test_.program.kdlActive();
    const Row* next_;
    const Row* end_;
    const std::uint64_t firstLine_ = test_.program.terminalLog.lineCount();
    std::vector<std::pair<Bytes, Bytes>> wire_;  // requests, and what was read for them
    std::uint64_t lines_ = 0;                    // of the log, when the last request was sent
    int rounds_ = 0;                             // of events, then
};

}  // namespace

void converse(TestProgram& test, const std::string& file, const Operations& operations) {
    const std::vector<Row> rows = rowsOf(file);
    for (auto row = rows.begin(), next = row; row != rows.end(); row = next) {
        next = std::find_if(row + 1, rows.end(), [](const Row& each) { return !each.operation.empty(); });
        std::istringstream words(row->operation);
        std::string name;
        Operand operand;
        std::getline(words, name, ' ');
        std::getline(words, operand.text);
        words = std::istringstream(operand.text);
        operand.numbers.assign(std::istream_iterator<std::uint16_t>(words), {});
        SCOPED_TRACE(file + ":" + std::to_string(row->line) + ": " + row->operation);
        if (name == "wait") {
            test.clock.advance(Milliseconds{operand.numbers.at(0)});
        } else if (name == "sending") {
            test.serial.sendTime = Milliseconds{operand.numbers.at(0)};
        } else if (name == "cancel") {
            test.desktop.answers = {MessageAnswer::Cancel};
        } else {
            const Exchange exchange(test, &*row, &*row + (next - row));
            const bool open = test.serial.isOpen();
            const TimePoint begin = test.clock.now();
            std::string result = "END";
            test.endsProgram([&] { result = operations.at(name)(operand); });
            EXPECT_EQ(result, row->result);
            EXPECT_EQ(test.desktop.takeBoxes(), boxesOf(row->boxes));
            const auto took = std::chrono::duration_cast<Milliseconds>(test.clock.now() - begin);
            EXPECT_EQ(row->time.empty() ? "" : std::to_string(took.count()), row->time);
            EXPECT_EQ(test.serial.isOpen(), name == "open" || (open && name != "close" && result != "END"));
            exchange.compare(&*row);
        }
    }
}

void reply(FakeSerial& serial, const std::string& cell, bool kdl) {
    eachPiece(cell, kdl, [&](Milliseconds time, const Bytes& bytes) { serial.reply(bytes, time); });
}

Bytes frameBytes(const std::string& cell, bool kdl) {
    Bytes frame;
    eachPiece(cell, kdl, [&](Milliseconds, const Bytes& bytes) { frame += bytes; });
    return frame;
}

std::string spacedHex(std::string_view bytes) {
    constexpr const char* digits = "0123456789ABCDEF";
    std::string text;
    for (const char byte : bytes) {
        const auto code = static_cast<unsigned char>(byte);
        text += {' ', digits[code / 16], digits[code % 16]};
    }
    return text.empty() ? text : text.substr(1);
}

}  // namespace vek
