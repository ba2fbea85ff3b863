#include "campaign/faultyline.h"

#include <algorithm>
#include <array>
#include <span>
#include <string>
#include <variant>

namespace vek {

namespace {

constexpr Milliseconds modbusLimit{1000};
constexpr Milliseconds kdlLimit{200};

constexpr unsigned onModbus = 1;
constexpr unsigned onKdl = 2;
constexpr unsigned onBoth = onModbus | onKdl;

/// A fault of the line with the range of its amount.
struct Kind {
    const char* name;
    unsigned lowest;
    unsigned highest;  ///< 0: takes no amount
    unsigned buses;
};

constexpr std::array<Kind, 17> kinds = {{
    {"silence", 0, 0, onBoth},
    {"late", 1, 3000, onModbus},
    {"late", 1, 600, onKdl},
    {"slow", 1, 300, onModbus},
    {"slow", 1, 30, onKdl},
    {"crc", 0, 0, onBoth},
    {"cut", 0, 30, onBoth},
    {"unended", 0, 0, onKdl},
    {"noise", 1, 40, onBoth},
    {"early", 1, 40, onBoth},
    {"trail", 1, 40, onBoth},
    {"flip", 1, 6, onBoth},
    {"double", 0, 0, onBoth},
    {"foreign", 0, 0, onBoth},
    {"echo", 0, 0, onBoth},
    {"exception", 1, 12, onBoth},
    {"pulled out", 0, 0, onBoth},  // not the device's doing: the adapter's
}};
constexpr std::size_t pulledOut = kinds.size() - 1;

sim::Bytes simBytes(std::string_view bytes) {
    return {bytes.begin(), bytes.end()};
}

Bytes bytesOf(std::span<const std::uint8_t> bytes) {
    return {bytes.begin(), bytes.end()};
}

sim::LineOptions optionsOf(std::uint32_t seed, bool kdl) {
    sim::LineOptions options;
    options.device.seed = seed;
    options.device.type = static_cast<int>(seed % 10) + 1;
    options.device.kdl = kdl;
    options.device.speed = 20;
    options.pace = seed % 3 == 0;
    return options;
}

}  // namespace

FaultyLine::FaultyLine(TestProgram& test, const sim::LineOptions& options, Figures& figures)
    : test_(test), peer_(test.serial, test.clock, options), figures_(figures), random_(options.device.seed) {
    test.serial.onWrite = [this](std::string_view frame) { begin(frame); };
    test.serial.peer = [this, device = test.serial.peer](std::string_view frame) {
        device(frame);
        busyUntil_ = std::max(busyUntil_, test_.serial.lastArrival().value_or(busyUntil_));
    };
    test.serial.onRead = [this](std::string_view bytes) { read(bytes); };
    peer_.line.setObserver([this](auto direction, auto frame) { observe(direction, frame); });
    test.desktop.onMessageBox = [this] { test_.clock.advance(Milliseconds{300 + draw(2700)}); };
    logged_ = test.program.terminalLog.count().bind([this](std::uint64_t lines) {
        if (lines == 0 || !waiting_) {
            return;
        }
        const LogLine line = test_.program.terminalLog.line(lines - 1);
        if (line.color == LogColor::Black) {
            return;
        }
        figures_.expect(test_.clock.now() <= deadline_, "waited beyond the time limit");
        figures_.expect(isKdl() || line.bytes == exchanges_.back().received,
                        "the terminal shows other bytes than were read");
        waiting_ = isKdl();
    });
}

FaultyLine::~FaultyLine() {
    test_.serial.onWrite = nullptr;
    test_.serial.onRead = nullptr;
    test_.desktop.onMessageBox = nullptr;
}

void FaultyLine::begin(std::string_view frame) {
    if (beforeRequest) {
        beforeRequest(frame);
    }
    ++requests_;
    ++figures_.exchanges;
    Exchange& exchange = exchanges_.emplace_back();
    exchange.request = frame;
    drawFaults(exchange);
    deadline_ = test_.clock.now() + (isKdl() ? kdlLimit : modbusLimit);
    waiting_ = true;
}

void FaultyLine::drawFaults(Exchange& exchange) {
    peer_.line.faults().clear();
    if (stayPulledOut()) {
        return;
    }
    const bool quiet = test_.serial.isOpen() && test_.clock.now() >= busyUntil_;
    if (draw(2) == 0) {
        exchange.clean = quiet;
        figures_.clean += quiet ? 1 : 0;
        return;
    }
    for (unsigned count = draw(6) == 0 ? 2 : 1; count > 0;) {
        count -= strike(draw(kinds.size())) ? 1U : 0U;
    }
}

/// False when the bus does not know the fault.
bool FaultyLine::strike(std::size_t index) {
    const Kind& kind = kinds.at(index);
    if ((kind.buses & (isKdl() ? onKdl : onModbus)) == 0) {
        return false;
    }
    ++figures_.faults[kind.name];
    if (index == pulledOut) {
        test_.serial.hangUp();
        pulledOutFor_ = 1 + draw(5);
        return true;
    }
    std::string text = kind.name;
    if (kind.highest > 0) {
        text += "=" + std::to_string(kind.lowest + draw(kind.highest - kind.lowest + 1));
    }
    peer_.line.faults().add(std::get<sim::LineFault>(sim::parseFault(text)));
    return true;
}

/// The adapter comes back right before a request.
bool FaultyLine::stayPulledOut() {
    if (pulledOutFor_ == 0) {
        return false;
    }
    if (--pulledOutFor_ == 0) {
        test_.serial.plugIn();
    }
    return pulledOutFor_ > 0;
}

void FaultyLine::read(std::string_view bytes) {
    if (!waiting_) {
        return;
    }
    if (test_.clock.now() > deadline_) {
        waiting_ = false;
        return;
    }
    exchanges_.back().received += bytes;
    waiting_ = !(isKdl() && exchanges_.back().received.ends_with("\r\n"));
}

void FaultyLine::observe(sim::SimulatedLine::Direction direction, std::span<const std::uint8_t> frame) {
    if (direction == sim::SimulatedLine::Direction::ToDevice) {
        heard_ = bytesOf(frame);
        return;
    }
    Exchange& exchange = exchanges_.back();
    exchange.sent = bytesOf(frame);
    if (!isKdl() && heard_[1] == 3) {
        exchange.genuine = bytesOf(sim::ModbusSlave(device()).answer(simBytes(heard_)));
    }
}

Episode::Episode(std::uint32_t seed, bool kdl, Figures& figures)
    : figures_(figures), seed_(seed), line_(test_, optionsOf(seed, kdl), figures) {
    kdl ? test_.configureKdl() : test_.configure();
    test_.program.DeviceType = static_cast<std::uint8_t>(line_.device().type().number);
    test_.program.DeviceName = line_.device().name();
    test_.open<LastWindow>();
}

void Episode::expect(bool good, const std::string& what) {
    if (!good) {
        figures_.expect(false, "seed " + std::to_string(seed_) + ", request " +
                                   std::to_string(line_.requests()) + ": " + what);
    }
}

void Episode::expectText(const Label& label, const std::string& expected) {
    expect(label.caption.get() == expected,
           label.name + " shows \"" + label.caption.get() + "\", not \"" + expected + "\"");
}

}  // namespace vek
