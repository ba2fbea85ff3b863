#pragma once

#include <variant>

#include "campaign/witness.h"
#include "simulator/kdlframe.h"

namespace vek {

/// What a campaign on one bus has seen.
struct Figures {
    std::map<std::string, std::size_t> counts;
    std::map<std::string, std::size_t> strikes;  ///< by kind of fault
    /// Of these: the program has read something else than without it.
    std::map<std::string, std::size_t> altered;
    std::vector<std::string> mismatches;
};

/// Has anything go wrong at any request of a use, as faults.txt lists it, and keeps what the program was
/// given to read.
class FaultyLine {
  public:
    FaultyLine(Use& use, std::uint32_t seed, Figures& figures)
        : use_(use), figures_(figures), seed_(seed), random_(seed) {
        serial_.onWrite = [this](std::string_view frame) { begin(frame); };
        serial_.peer = [this, device = serial_.peer](std::string_view frame) {
            device(frame);
            busyUntil_ = std::max(busyUntil_, serial_.lastArrival().value_or(busyUntil_));
        };
        serial_.onRead = [this](std::string_view bytes) { read(bytes); };
        use.bench.peer.line.setObserver([this](auto direction, auto frame) {
            hear(direction, {frame.begin(), frame.end()});
        });
        use.bench.test.desktop.onMessageBox = [this] { clock_.advance(Milliseconds{300 + draw(2700)}); };
        logged_ = log_.count().observe([this](std::uint64_t lines) { endWait(log_.line(lines - 1)); });
        use.run();
        end();
        expect(!serial_.isOpen(), exchanges.size(), "the port stays open");
    }

    std::vector<Exchange> exchanges;

    void expect(bool good, std::size_t request, const std::string& what) {
        if (!good) {
            figures_.mismatches.push_back("seed " + std::to_string(seed_) + ", request " +
                                          std::to_string(request) + ": " + what);
        }
    }

  private:
    bool isKdl() const { return use_.bench.test.program.kdlActive(); }

    /// A number from 0 to `end` - 1.
    unsigned draw(unsigned end) { return static_cast<unsigned>(random_() % end); }

    void begin(std::string_view frame) {
        use_.look(frame);
        end();
        pinSomeChannel();
        exchanges.push_back({Bytes(frame)});
        use_.bench.peer.line.faults().clear();
        drawFaults();
        exchanges.back().pluggedIn = unpluggedFor_ == 0;
        deadline_ = clock_.now() + Milliseconds{isKdl() ? 200 : 1000};
        waiting_ = true;
    }

    /// What no simulated device comes to by itself.
    void pinSomeChannel() {
        constexpr std::array<float, 8> values = {0, -0.4F, 1.5F, 42.25F, -99.6F, 1.2e-6F, 123456.7F, 5e6F};
        constexpr std::array<std::uint16_t, 6> texts = {0, 70, 76, 84, 218, 219};
        if (draw(8) == 0) {
            use_.bench.peer.line.device().pin(draw(9),
                                              {values.at(draw(8)) * static_cast<float>(draw(100)),
                                               static_cast<std::uint16_t>(draw(0x10000)), texts.at(draw(6))});
        }
    }

    /// An adapter that was pulled out comes back right before a request.
    void drawFaults() {
        if (unpluggedFor_ > 0 && --unpluggedFor_ > 0) {
            return;
        }
        serial_.plugIn();
        if (draw(2) == 0) {
            exchanges.back().clean = serial_.isOpen() && clock_.now() >= busyUntil_;
            return;
        }
        for (const std::size_t count = draw(6) == 0 ? 2 : 1; faults_.size() < count;) {
            strike();
        }
    }

    void strike() {
        static const std::vector<TableRow> kinds = readTable(VEK_TEST_FOLDER "faults.txt");
        const Texts& kind = kinds.at(draw(static_cast<unsigned>(kinds.size()))).cells;
        if (kind.at(1) == (isKdl() ? "modbus" : "kdl")) {
            return;
        }
        faults_.push_back(kind[0]);
        if (kind[0] == "unplugged") {
            serial_.hangUp();
            unpluggedFor_ = 1 + draw(5);
            return;
        }
        std::string fault = kind[0];
        if (kind.size() == 4) {
            const auto lowest = static_cast<unsigned>(std::stoi(kind[2]));
            fault +=
                "=" + std::to_string(lowest + draw(static_cast<unsigned>(std::stoi(kind[3])) - lowest + 1));
        }
        use_.bench.peer.line.faults().add(std::get<sim::LineFault>(sim::parseFault(fault)));
    }

    void hear(sim::SimulatedLine::Direction direction, const sim::Bytes& frame) {
        if (direction == sim::SimulatedLine::Direction::ToDevice) {
            heard_ = frame;
            return;
        }
        sent_.assign(frame.begin(), frame.end());
        sim::Device& device = use_.bench.peer.line.device();
        if (const auto request = sim::parseKdlRequest(heard_);
            isKdl() && request->command.find('?') != Bytes::npos) {
            meant_ = sim::kdlReply(request->address, sim::KdlSlave(device).answer(request->command));
        } else if (!isKdl() && heard_[1] == 3) {
            const sim::Bytes reply = sim::ModbusSlave(device).answer(heard_);
            meant_.assign(reply.begin(), reply.end());
        }
    }

    void read(std::string_view bytes) {
        waiting_ = waiting_ && clock_.now() <= deadline_;
        if (waiting_) {
            exchanges.back().received += bytes;
            waiting_ = !(isKdl() && exchanges.back().received.ends_with("\r\n"));
        }
    }

    /// The program puts down in its log what it has read.
    void endWait(const LogLine& line) {
        if (waiting_ && line.color != LogColor::Black) {
            expect(clock_.now() <= deadline_, exchanges.size(), "waited beyond the time limit");
            expect(isKdl() || line.bytes == exchanges.back().received, exchanges.size(),
                   "the terminal shows other bytes than were read");
            waiting_ = isKdl();
        }
    }

    /// Looks back at the last exchange.
    void end() {
        if (exchanges.empty()) {
            return;
        }
        const Exchange& exchange = exchanges.back();
        const Answer answer = answerTo(exchange);
        for (const std::string& fault : faults_) {
            ++figures_.strikes[fault];
            // Of two faults nobody knows which of them it was.
            const bool altered = sent_.empty() || (!meant_.empty() && exchange.received != meant_);
            figures_.altered[fault] += altered && faults_.size() == 1 ? 1U : 0U;
        }
        ++figures_.counts["requests"];
        ++figures_.counts[answer.inTime ? "answered" : "not answered"];
        figures_.counts["on a clean line"] += exchange.clean ? 1U : 0U;
        expect(!exchange.clean || (answer.inTime && exchange.received == sent_), exchanges.size(),
               "no answer on a clean line");
        faults_.clear();
        sent_.clear();
        meant_.clear();
    }

    Use& use_;
    FakeSerial& serial_ = use_.bench.test.serial;
    FakeClock& clock_ = use_.bench.test.clock;
    LogStore& log_ = use_.bench.test.program.terminalLog;
    Figures& figures_;
    const std::uint32_t seed_;
    std::mt19937 random_;
    unsigned unpluggedFor_ = 0;  // requests
    TimePoint busyUntil_;        // the last byte of all replies so far, should it not be lost before
    Subscription logged_;
    // Of the last exchange:
    bool waiting_ = false;  // for the reply
    TimePoint deadline_;
    Texts faults_;
    sim::Bytes heard_;  // by the device
    Bytes sent_;        // by it, spoiled or not
    Bytes meant_;       // the same before it was spoiled; of reads only
};

}  // namespace vek
