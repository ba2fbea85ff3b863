#pragma once

#include <functional>
#include <map>
#include <random>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "campaign/tables.h"
#include "simulator/kdlframe.h"
#include "support/simulatedpeer.h"
#include "support/testprogram.h"

namespace vek {

/// What a campaign on one bus has seen.
struct Figures {
    std::map<std::string, std::size_t> counts;
    std::map<std::string, std::size_t> strikes;  ///< by kind of fault
    std::map<std::string, std::size_t>
        altered;  ///< of these: the program has read something else than without it
    std::vector<std::string> mismatches;
};

/// One request of the program and what came of it.
struct Exchange {
    Bytes request;
    Bytes received{};                   ///< what the program read while it waited for the reply
    Bytes sent{};                       ///< the device's reply as it was put on the line, spoiled or not
    Bytes genuine{};                    ///< the same before it was spoiled; of reads only
    std::vector<std::string> faults{};  ///< that have struck
    bool clean = false;                 ///< none, and nothing of an earlier exchange still on its way
};

/// A simulated device on a line where anything may go wrong at any request, and a record of what the program
/// was given to read.
class FaultyLine {
  public:
    FaultyLine(TestProgram& test, const sim::LineOptions& options, Figures& figures)
        : test_(test),
          peer_(test.serial, test.clock, options),
          figures_(figures),
          seed_(options.device.seed),
          random_(seed_) {
        test.serial.onWrite = [this](std::string_view frame) { begin(frame); };
        test.serial.peer = [this, device = test.serial.peer](std::string_view frame) {
            device(frame);
            busyUntil_ = std::max(busyUntil_, test_.serial.lastArrival().value_or(busyUntil_));
        };
        test.serial.onRead = [this](std::string_view bytes) { read(bytes); };
        peer_.line.setObserver([this](auto direction, auto frame) {
            hear(direction, {frame.begin(), frame.end()});
        });
        test.desktop.onMessageBox = [this] { test_.clock.advance(Milliseconds{300 + draw(2700)}); };
        logged_ = test.program.terminalLog.count().observe([this](std::uint64_t lines) { endWait(lines); });
    }

    /// Called before each request.
    std::function<void(const Bytes& frame)> beforeRequest;

    std::size_t requests() const { return requests_; }
    sim::Device& device() { return peer_.line.device(); }

    /// A number from 0 to `end` - 1.
    unsigned draw(unsigned end) { return static_cast<unsigned>(random_() % end); }

    void count(const char* what) { ++figures_.counts[what]; }

    void expect(bool good, const std::string& what) {
        if (!good) {
            figures_.mismatches.push_back("seed " + std::to_string(seed_) + ", request " +
                                          std::to_string(requests_) + ": " + what);
        }
    }

    /// The exchanges since the last call.
    std::vector<Exchange> take() {
        for (const Exchange& exchange : exchanges_) {
            const bool altered =
                exchange.sent.empty() || (!exchange.genuine.empty() && exchange.received != exchange.genuine);
            for (const std::string& fault : exchange.faults) {
                ++figures_.strikes[fault];
                // Of two faults nobody knows which of them it was.
                figures_.altered[fault] += altered && exchange.faults.size() == 1 ? 1U : 0U;
            }
            expect(!exchange.clean || (!exchange.sent.empty() && exchange.received == exchange.sent),
                   "no answer on a clean line");
        }
        return std::exchange(exchanges_, {});
    }

  private:
    bool isKdl() const { return test_.program.kdlActive(); }

    void begin(std::string_view frame) {
        if (beforeRequest) {
            beforeRequest(Bytes(frame));
        }
        ++requests_;
        count("requests");
        peer_.line.faults().clear();
        drawFaults(exchanges_.emplace_back(Exchange{Bytes(frame)}));
        deadline_ = test_.clock.now() + Milliseconds{isKdl() ? 200 : 1000};
        waiting_ = true;
    }

    /// An adapter that was pulled out comes back right before a request.
    void drawFaults(Exchange& exchange) {
        if (unpluggedFor_ > 0 && --unpluggedFor_ > 0) {
            return;
        }
        test_.serial.plugIn();
        if (draw(2) == 0) {
            exchange.clean = test_.serial.isOpen() && test_.clock.now() >= busyUntil_;
            count(exchange.clean ? "on a clean line" : "right behind another's reply");
            return;
        }
        for (const std::size_t count = draw(6) == 0 ? 2 : 1; exchange.faults.size() < count;) {
            strike(exchange);
        }
    }

    void strike(Exchange& exchange) {
        static const Table kinds = readTable("faults.txt");
        const auto& kind = kinds.at(draw(static_cast<unsigned>(kinds.size())));
        if (kind.at(1) == (isKdl() ? "modbus" : "kdl")) {
            return;
        }
        exchange.faults.push_back(kind[0]);
        if (kind[0] == "unplugged") {
            test_.serial.hangUp();
            unpluggedFor_ = 1 + draw(5);
            return;
        }
        std::string fault = kind[0];
        if (kind.size() == 4) {
            const int lowest = std::stoi(kind[2]);
            const auto width = static_cast<unsigned>(std::stoi(kind[3]) - lowest);
            fault += "=" + std::to_string(lowest + static_cast<int>(draw(width + 1)));
        }
        peer_.line.faults().add(std::get<sim::LineFault>(sim::parseFault(fault)));
    }

    void hear(sim::SimulatedLine::Direction direction, const sim::Bytes& frame) {
        if (direction == sim::SimulatedLine::Direction::ToDevice) {
            heard_ = frame;
            return;
        }
        Exchange& exchange = exchanges_.back();
        exchange.sent.assign(frame.begin(), frame.end());
        if (const auto request = sim::parseKdlRequest(heard_);
            isKdl() && request->command.find('?') != Bytes::npos) {
            exchange.genuine =
                sim::kdlReply(request->address, sim::KdlSlave(device()).answer(request->command));
        } else if (!isKdl() && heard_[1] == 3) {
            const sim::Bytes reply = sim::ModbusSlave(device()).answer(heard_);
            exchange.genuine.assign(reply.begin(), reply.end());
        }
    }

    void read(std::string_view bytes) {
        waiting_ = waiting_ && test_.clock.now() <= deadline_;
        if (waiting_) {
            exchanges_.back().received += bytes;
            waiting_ = !(isKdl() && exchanges_.back().received.ends_with("\r\n"));
        }
    }

    /// The program puts down in its log what it has read.
    void endWait(std::uint64_t logLines) {
        const LogLine line = waiting_ ? test_.program.terminalLog.line(logLines - 1) : LogLine{};
        if (line.color == LogColor::Black) {
            return;
        }
        expect(test_.clock.now() <= deadline_, "waited beyond the time limit");
        expect(isKdl() || line.bytes == exchanges_.back().received,
               "the terminal shows other bytes than were read");
        waiting_ = isKdl();
    }

    TestProgram& test_;
    SimulatedPeer peer_;
    Figures& figures_;
    const std::uint32_t seed_;
    std::mt19937 random_;
    std::vector<Exchange> exchanges_;
    std::size_t requests_ = 0;
    bool waiting_ = false;  // for the reply to the last exchange
    TimePoint deadline_;
    unsigned unpluggedFor_ = 0;  // requests
    TimePoint busyUntil_;        // the last byte of all replies so far, should it not be lost before
    sim::Bytes heard_;
    Subscription logged_;
};

}  // namespace vek
