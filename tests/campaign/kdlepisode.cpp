#include <array>
#include <string>

#include "campaign/episodes.h"
#include "campaign/faultyline.h"
#include "kdl/kdldevice.h"
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

class Episode {
  public:
    Episode(std::uint32_t seed, Figures& figures)
        : figures_(figures), seed_(seed), line_(test_, options(seed), figures) {
        configureKdl(test_.program);
        test_.program.DeviceType = static_cast<std::uint8_t>(line_.device().type().number);
        test_.open<LastWindow>();
    }

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

    static sim::LineOptions options(std::uint32_t seed) {
        sim::LineOptions options;
        options.device.seed = seed;
        options.device.type = static_cast<int>(seed % 10) + 1;
        options.device.kdl = true;
        options.device.speed = 20;
        options.pace = seed % 3 == 0;
        return options;
    }

    void expect(bool good, const std::string& what) {
        if (!good) {
            figures_.expect(false, "seed " + std::to_string(seed_) + ", request " +
                                       std::to_string(line_.requests()) + ": " + what);
        }
    }

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
            ++(isComplete(exchanges.front()) ? figures_.values : figures_.missing);
            expectText(window.lblSwRegNr, withoutControls(utf8FromWindows1252(payloadOf(exchanges.front()))));
            return;
        }
        if (reply == "stop 0") {
            next_ = 0;
            return;
        }
        ++(isComplete(last) ? figures_.values : figures_.missing);
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

    void expectText(const Label& label, const std::string& expected) {
        expect(label.caption.get() == expected,
               label.name + " shows \"" + label.caption.get() + "\", not \"" + expected + "\"");
    }

    void checkCommand() {
        const std::vector<Exchange> exchanges = takeExchanges();
        const bool success = exchanges.size() == 1 && payloadOf(exchanges[0]).empty();
        expect(test_.desktop.boxes.size() == 1 &&
                   test_.desktop.boxes[0].starts_with(success ? "Hinweis|" : "Fehler|"),
               "the command's result is not the device's");
    }

    Figures& figures_;
    std::uint32_t seed_;
    TestProgram test_;
    FaultyLine line_;
    std::array<Row, rows> rows_;
    std::size_t next_ = 0;
};

}  // namespace

void runKdlEpisode(std::uint32_t seed, Figures& figures) {
    Episode(seed, figures).run();
}

}  // namespace vek
