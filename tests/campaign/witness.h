#pragma once

#include <array>
#include <cmath>
#include <cstdlib>
#include <functional>

#include "campaign/use.h"
#include "simulator/kdlframe.h"
#include "simulator/modbusslave.h"

namespace vek {

/// One request of the program and what came of it.
struct Exchange {
    Bytes request;
    Bytes received{};       ///< what the program read while it waited for the reply
    bool pluggedIn = true;  ///< the adapter, when the request was written
    bool clean = false;     ///< nothing went wrong, and nothing of an earlier exchange was on its way
};

/// What a reply says, judged by its bytes alone.
struct Answer {
    Bytes data{};         ///< the registers or the text; empty for what was acknowledged
    std::string token{};  ///< what counts in place of data
    bool inTime = true;   ///< else the program takes it for silence
};

inline unsigned wordAt(const Bytes& bytes, std::size_t index) {
    return BytesToWord(bytes.substr(index, 2));
}

/// A frame with a right checksum is the answer when it names this device and this function, and for a write
/// these registers, and is not the program's own request, which may stand in front of it. One with a wrong
/// number of registers is no silence.
inline Answer modbusAnswer(const Bytes& request, const Bytes& received) {
    const Bytes reply = received.substr(received.starts_with(request) ? request.size() : 0);
    const bool write = request[1] == 16;
    const bool whole = reply.size() >= 3 && sim::hasValidCrc(sim::Bytes(reply.begin(), reply.end()));
    if (whole && reply[0] == request[0] &&
        (reply.size() < 5 || wordAt(reply, 0) % 256 == wordAt(request, 0) % 256 + 128)) {
        return {.token = "EXCEP_" + std::to_string(wordAt(reply, 1) % 256)};
    }
    const std::size_t head = write ? 6 : 2;
    if (!whole || reply.size() < 7 || reply == request || !reply.starts_with(request.substr(0, head))) {
        return {.token = "CRC_TIMEOUT", .inTime = false};
    }
    const std::size_t length = write ? 0 : 2 * std::size_t{wordAt(request, 4)};
    const bool fits = write || (wordAt(reply, 2) / 256 == length && reply.size() >= length + 5);
    return fits ? Answer{.data = reply.substr(3, length)} : Answer{.token = "---"};
}

/// On the KDL bus the line's end tells that a reply is one, and a trailer that it is right.
inline Answer answerTo(const Exchange& exchange) {
    const Bytes& reply = exchange.received;
    if (exchange.request[0] != ':') {
        return modbusAnswer(exchange.request, reply);
    }
    const std::size_t mark = std::min(reply.find('&', 6), reply.size() - 1);
    const std::size_t behind = reply.size() - mark - 1;
    const bool right = (behind != 4 && behind != 5) ||
                       reply.substr(mark + 1) == sim::kdlTrailer(reply.substr(0, mark + 1)) + "\r\n";
    const bool inTime = reply.ends_with("\r\n") && right && reply.find('\0') == Bytes::npos;
    return {.data = inTime ? reply : "", .token = "#TIMEOUT_ERROR#", .inTime = inTime};
}

/// Holds what a user saw against what the line has carried. The witness judges each reply by the bytes that
/// the program was given to read. A second use of the same seed then gets the replies that were good, and
/// silence for all others: it has to show the same before each request, in all controls and message boxes,
/// and to send the same. And without regard to what programs make of replies, a field that shows a number
/// must show one that the last reply to its own request has brought.
class Witness {
  public:
    using Report = std::function<void(std::size_t request, const std::string& what)>;

    Witness(const Use& use, const std::vector<Exchange>& exchanges, Report report)
        : use_(use), exchanges_(exchanges), report_(std::move(report)) {}

    void compareWith(Use& second) const {
        FakeSerial& serial = second.bench.test.serial;
        serial.onWrite = [&](std::string_view frame) {
            second.look(frame);
            exchangeAt(second.moments.size()).pluggedIn ? serial.plugIn() : serial.hangUp();
        };
        serial.peer = [&](std::string_view) {
            const Exchange& exchange = exchangeAt(second.moments.size());
            serial.reply(answerTo(exchange).inTime ? exchange.received : "", Milliseconds{5});
        };
        second.run();
        for (std::size_t at = 0; at < std::min(use_.moments.size(), second.moments.size()); ++at) {
            for (const auto& [name, due] : second.moments[at]) {
                const std::string& shown = use_.moments[at].at(name);
                if (shown != due) {
                    report_(at,
                            std::string(name).append(" shows ").append(shown).append(", not ").append(due));
                    return;  // all behind it would differ, too
                }
            }
        }
    }

    /// A number is shown by the time of the third request behind its own, which completes a channel.
    void judgeNumbers() const {
        const std::map<std::string, std::string> fields = fieldsByRequest();
        std::map<std::string, std::size_t> asked;  // the last request for a field
        for (std::size_t at = 0; at < exchanges_.size(); ++at) {
            at == use_.edited ? asked.clear() : void();
            for (const auto& [name, index] : asked) {
                const std::string& text = use_.moments[at].at(name);
                if (at >= index + 3 && !mayShow(text, exchanges_[index])) {
                    report_(at, std::string(name).append(" shows ").append(text));
                }
            }
            const Bytes& request = exchanges_[at].request;
            const auto field = fields.find(request[0] == ':' ? request.substr(5, request.find('&') - 5)
                                           : request[1] == 3 ? std::to_string(wordAt(request, 2))
                                                             : "");
            if (field != fields.end()) {
                asked[field->second] = at;
            }
        }
    }

    /// A row of a monitor of which the device has not told in this pass shows neither a number nor a lamp: it
    /// has left the status out on Modbus, or any request of the row unanswered on KDL, or the pass ended
    /// before it.
    void judgeRows() const {
        std::vector<bool> told;  // by row, of the pass so far
        bool ended = false;
        for (std::size_t at = 0; at < exchanges_.size(); ++at) {
            const Bytes& request = exchanges_[at].request;
            const bool kdl = request[0] == ':';
            const RowPart part = partOfRow(request);
            if (part == RowPart::First || part == RowPart::None) {
                ended = ended || part == RowPart::None || told.size() == (kdl ? 15U : 9U);
                judgeTable(at, told, ended, kdl);
                ended ? told.clear() : void();
                ended = false;
            }
            if (part == RowPart::First) {
                told.push_back(kdl);
            }
            const Answer answer = answerTo(exchanges_[at]);
            if (kdl && part != RowPart::None) {
                ended = part == RowPart::Other && answer.data.find("stop 0&") == 6;
                told.back() = told.back() && answer.inTime && !ended;
            } else if (part == RowPart::Status) {
                told.back() = answer.data.size() == 2;
            }
        }
    }

  private:
    enum class RowPart { None, First, Status, Other };

    static RowPart partOfRow(const Bytes& request) {
        const auto asks = [&](const char* command) { return request.find(command) != Bytes::npos; };
        if (request[0] == ':') {
            return asks(":ALMN?")                   ? RowPart::First
                   : asks(":ALM? ") || asks(":BTR") ? RowPart::Other
                                                    : RowPart::None;
        }
        const unsigned number = request[1] == 3 ? wordAt(request, 2) : 0;
        const std::array parts{RowPart::First, RowPart::Other, RowPart::Status, RowPart::Other};
        return number >= 1000 && number < 1036 ? parts.at(number % 4) : RowPart::None;
    }

    void judgeTable(std::size_t at, const std::vector<bool>& told, bool ended, bool kdl) const {
        const Moment& moment = use_.moments[at];
        Texts blank;
        for (std::size_t row = 0; row < (ended ? 16 : told.size()); ++row) {
            if (row >= told.size() || !told[row]) {
                blank.insert(blank.end(),
                             {"LED_" + std::to_string(row), "lblMesswert_" + std::to_string(row)});
            }
        }
        if (!kdl && !told.empty() && !told.back()) {
            blank.insert(blank.end(), {"LED_TEST_INTERN", "LED_TEST_EXTERN"});
        }
        if (ended && moment.contains("lblMesswert_0") && moment.at("lblMesswert_0") == "---") {
            blank.insert(blank.end(), {"lblRePos", "lblReNeg"});
        }
        for (const std::string& name : blank) {
            const auto shown = moment.find(name);
            if (shown != moment.end() && shown->second.find_first_of("0123456789RGYMCW") != Bytes::npos) {
                report_(at, name + " shows what nobody said: " + shown->second);
            }
        }
    }

    /// The request that follows so many moments; none there: nothing went wrong.
    const Exchange& exchangeAt(std::size_t moments) const {
        static const Exchange none{":"};
        return moments <= exchanges_.size() ? exchanges_[moments - 1] : none;
    }

    std::map<std::string, std::string> fieldsByRequest() const {
        static const std::vector<TableRow> rows = readTable(VEK_TEST_FOLDER "fields.txt");
        std::map<std::string, std::string> fields;
        for (const auto& [line, text, cells] : rows) {
            const bool named =
                cells.at(0).find("0123456789X"[use_.bench.test.program.DeviceType]) != std::string::npos;
            for (std::size_t cell = 2; cell < cells.size() && named != cells[0].starts_with('!'); ++cell) {
                fields[cells[cell]] = cells[1];
            }
        }
        return fields;
    }

    static bool mayShow(std::string text, const Exchange& source) {
        const auto [data, token, inTime] = answerTo(source);
        if (text.find_first_of("0123456789") == std::string::npos || text == token || text == "1,600") {
            return true;
        }
        if (source.request[0] == ':') {
            return digitsOf(data).find(digitsOf(text)) != std::string::npos;
        }
        std::erase(text, '.');
        const std::size_t point = std::min(text.find(','), text.size() - 1);
        const double unit = std::pow(10, -static_cast<double>(text.size() - 1 - point));
        std::ranges::replace(text, ',', '.');
        const double number = std::strtod(text.c_str(), nullptr);
        if (data.size() < 4) {
            return data.size() == 2 && number == wordAt(data, 0);
        }
        const auto value = static_cast<double>(BytesToSingle(data));
        return std::ranges::any_of(std::array{1.0, 1e-3, 1e6}, [&](double scale) {
            return std::abs(value * scale - number) <= unit + std::abs(value * scale) * 1e-6;
        });
    }

    static std::string digitsOf(std::string text) {
        std::erase_if(text, [](char character) { return character < '0' || character > '9'; });
        return text.substr(std::min(text.find_first_not_of('0'), text.size()));
    }

    const Use& use_;
    const std::vector<Exchange>& exchanges_;
    const Report report_;
};

}  // namespace vek
