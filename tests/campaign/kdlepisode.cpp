#include <array>
#include <string>

#include "campaign/episodes.h"
#include "campaign/faultyline.h"
#include "kdl/kdlrow.h"
#include "monitor/frmMbMonitor.h"
#include "platform/textcodec.h"

namespace vek {

namespace {

constexpr std::size_t prefixLength = 5;
constexpr std::size_t headerLength = 6;
constexpr std::size_t rows = 15;

std::string commandOf(const Bytes& request) {
    return request.substr(prefixLength, request.find('&') - prefixLength);
}

bool isComplete(const Exchange& exchange) {
    return exchange.received.ends_with("\r\n");
}

/// What the reply carries, and "#TIMEOUT_ERROR#" for what did not end in time.
Bytes payloadOf(const Exchange& exchange) {
    if (!isComplete(exchange)) {
        return "#TIMEOUT_ERROR#";
    }
    const Bytes reply = exchange.received.substr(0, exchange.received.size() - 2);
    const std::size_t end = reply.find('&');
    return end == Bytes::npos || end < headerLength ? reply : reply.substr(headerLength, end - headerLength);
}

class KdlEpisode : Episode {
  public:
    KdlEpisode(std::uint32_t seed, Figures& figures) : Episode(seed, true, figures) {}

    void run() {
        auto& window = test_.open<frmMbMonitor>();
        const std::size_t requests = 20 + line_.draw(300);
        line_.beforeRequest = [&](std::string_view frame) {
            if (commandOf(Bytes(frame)) == ":ALMN?") {
                checkRow(window);
            }
        };
        test_.desktop.onEvents = [&] {
            if (line_.requests() >= requests) {
                window.cmdStop.click();
            }
        };
        window.cmdRunMonitor.click();
        checkRow(window);
        line_.beforeRequest = nullptr;
        window.cmdCLR.click();
        checkCommand();
        expect(!test_.serial.isOpen(), "the port stays open");
    }

  private:
    /// What a row of the window is to show.
    struct Row {
        std::string value;
        std::string range;
        std::string unit;
        std::string description;
    };

    std::vector<Exchange> takeExchanges() {
        std::vector<Exchange> exchanges = line_.take();
        for (const Exchange& exchange : exchanges) {
            if (exchange.clean) {
                expect(exchange.received == exchange.sent && isComplete(exchange),
                       "no answer on a clean line");
            }
        }
        return exchanges;
    }

    /// The row that the last exchanges were for. Its text is the last one's reply.
    void checkRow(frmMbMonitor& window) {
        const std::vector<Exchange> exchanges = takeExchanges();
        if (exchanges.empty()) {
            return;
        }
        const Exchange& last = exchanges.back();
        const Bytes reply = payloadOf(last);
        if (commandOf(exchanges.front().request) == ":IDND?") {
            count(isComplete(exchanges.front()));
            expectText(window.lblSwRegNr, withoutControls(utf8FromWindows1252(payloadOf(exchanges.front()))));
            return;
        }
        if (reply == "stop 0") {
            next_ = 0;
            return;
        }
        count(isComplete(last));
        Row& row = rows_.at(next_);
        follow(row, reply);
        expectText(window.lblMesswert[next_], row.value);
        expectText(window.lblRange[next_], row.range);
        expectText(window.lblEinheit[next_], row.unit);
        expectText(window.lblMessName[next_], row.description);
        const bool alarm = commandOf(last.request).starts_with(":ALM? ") || reply == kdlPeak;
        expect(window.LED[next_].fillColor.get() == (alarm ? colors::red : colors::green),
               "the indicator has another colour");
        next_ = (next_ + 1) % rows;
    }

    void follow(Row& row, const Bytes& reply) const {
        const KdlRowValue value = kdlRowValue(reply, test_.program.locale);
        row.value = value.value.value_or(row.value);
        row.range = value.range;
        row.unit = kdlRowUnit(reply).value_or(row.unit);
        row.description = kdlRowName(reply).value_or(row.description);
    }

    void checkCommand() {
        const std::vector<Exchange> exchanges = takeExchanges();
        const bool success = exchanges.size() == 1 && payloadOf(exchanges[0]).empty();
        expect(test_.desktop.boxes.size() == 1 &&
                   test_.desktop.boxes[0].starts_with(success ? "Hinweis|" : "Fehler|"),
               "the command's result is not the device's");
    }

    std::array<Row, rows> rows_;
    std::size_t next_ = 0;
};

}  // namespace

void runKdlEpisode(std::uint32_t seed, Figures& figures) {
    KdlEpisode(seed, figures).run();
}

}  // namespace vek
