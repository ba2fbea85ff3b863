#pragma once

#include <fstream>
#include <iterator>
#include <map>
#include <random>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "simulator/kdlframe.h"
#include "support/bench.h"

namespace vek {

/// What a campaign on one bus has seen.
struct Figures {
    std::map<std::string, std::size_t> counts;
    std::map<std::string, std::size_t> strikes;  ///< by kind of fault
    /// Of these: the program has read something else than the device meant.
    std::map<std::string, std::size_t> altered;
    std::vector<std::string> mismatches;
};

/// Has anything go wrong at any request of a program, as faults.txt lists it, and puts down what a request
/// has come to: "" = answered, else the plain fault that has to look the same to the user.
class FaultyLine {
  public:
    FaultyLine(Bench& bench, std::uint32_t seed, Figures& figures)
        : bench_(bench), figures_(figures), random_(seed), undetectable_(draw(4) == 0) {
        bench.test.serial.onRead = [this](std::string_view bytes) { read(bytes); };
        bench.peer.line.setObserver([this](auto direction, auto frame) {
            hear(direction, {frame.begin(), frame.end()});
        });
        bench.test.desktop.onMessageBox = [this] {
            bench_.test.clock.advance(Milliseconds{300 + draw(2700)});
            boxShown_ = true;
        };
    }

    unsigned faultsInTwelve = 0;  ///< how many of twelve requests meet a fault

    /// To be called before each request.
    void begin() {
        end();
        under_way_ = true;
        quiet_ = calm_ && bench_.test.clock.now() >= quietFrom_;
        deadline_ = bench_.test.clock.now() + Milliseconds{isKdl() ? 200 : 1000};
        ++figures_.counts["requests"];
        bench_.peer.line.faults().clear();
        if (unpluggedFor_ == 0 || --unpluggedFor_ == 0) {
            bench_.test.serial.plugIn();
            if (draw(12) < faultsInTwelve) {
                strike();
            }
        }
    }

    /// A number from 0 to `end` - 1.
    unsigned draw(unsigned end) { return static_cast<unsigned>(random_() % end); }

    /// Whether also what the program cannot tell from a good reply goes wrong.
    bool undetectable() const { return undetectable_; }

    /// Of all requests so far.
    const Texts& outcomes() {
        end();
        return outcomes_;
    }

    /// Nothing goes wrong any more; as soon as nothing is on its way, each request is answered.
    void calmDown() {
        calm_ = true;
        faultsInTwelve = 0;
        unpluggedFor_ = 0;
        bench_.test.serial.plugIn();
        quietFrom_ = bench_.test.serial.lastArrival().value_or(quietFrom_);
    }

  private:
    bool isKdl() const { return bench_.test.program.kdlActive(); }

    void strike() {
        static const std::vector<Texts> kinds = readKinds();
        const Texts& kind = kinds.at(draw(static_cast<unsigned>(kinds.size())));
        const std::string& bus = kind.at(isKdl() ? 2 : 1);
        if (bus == "-" || (bus.ends_with('?') && !undetectable_)) {
            return;
        }
        fault_ = kind[0];
        if (kind[0] == "unplugged") {
            bench_.test.serial.hangUp();
            unpluggedFor_ = 1 + draw(5);
            return;
        }
        std::string fault = kind[0];
        if (kind.size() == 5) {
            const auto lowest = static_cast<unsigned>(std::stoi(kind[3]));
            fault +=
                "=" + std::to_string(lowest + draw(static_cast<unsigned>(std::stoi(kind[4])) - lowest + 1));
        }
        bench_.peer.line.faults().add(std::get<sim::LineFault>(sim::parseFault(fault)));
    }

    static std::vector<Texts> readKinds() {
        std::ifstream file(CAMPAIGN_FOLDER "/faults.txt");
        std::vector<Texts> kinds;
        for (std::string line; std::getline(file, line);) {
            std::istringstream words(line);
            Texts row{std::istream_iterator<std::string>(words), {}};
            if (row.at(0) != "#") {
                kinds.push_back(row);
            }
        }
        return kinds;
    }

    void hear(sim::SimulatedLine::Direction direction, const sim::Bytes& frame) {
        if (direction == sim::SimulatedLine::Direction::ToDevice) {
            heard_ = frame;
            return;
        }
        sim::Device& device = bench_.peer.line.device();
        meant_.assign(frame.begin(), frame.end());
        if (const auto request = sim::parseKdlRequest(heard_);
            isKdl() && request->command.find('?') != Bytes::npos) {
            meant_ = sim::kdlReply(request->address, sim::KdlSlave(device).answer(request->command));
        } else if (!isKdl() && heard_[1] == functionWriteMultipleRegisters) {
            meant_.assign(heard_.begin(), heard_.begin() + 6);
            meant_ += ComputeCrc(meant_);
        } else if (!isKdl()) {
            const sim::Bytes reply = sim::ModbusSlave(device).answer(heard_);
            meant_.assign(reply.begin(), reply.end());
        }
    }

    /// What comes too late, or behind the line end, is read only to be thrown away.
    void read(std::string_view bytes) {
        if (bench_.test.clock.now() <= deadline_ && !(isKdl() && received_.ends_with("\r\n"))) {
            received_ += bytes;
        }
    }

    /// Looks back at the request before.
    void end() {
        if (!std::exchange(under_way_, false)) {
            return;
        }
        outcomes_.push_back(outcome());
        if (quiet_ && !outcomes_.back().empty()) {
            figures_.mismatches.push_back("no answer on a quiet line: " + received_ + " for " + meant_);
        }
        if (!fault_.empty()) {
            ++figures_.strikes[fault_];
            figures_.altered[fault_] += meant_.empty() || received_ != meant_ ? 1U : 0U;
        }
        fault_.clear();
        received_.clear();
        meant_.clear();
        boxShown_ = false;
    }

    /// Where the good reply stands among other bytes, the program may take it or not, but it must then say
    /// so.
    std::string outcome() const {
        // What stands behind the "&" of a KDL reply is not looked at.
        const std::size_t checked = isKdl() ? meant_.find('&') : Bytes::npos;
        const bool whole = !meant_.empty() && (!isKdl() || received_.ends_with("\r\n"));
        if (whole && received_.substr(0, checked) == meant_.substr(0, checked)) {
            return "";
        }
        const sim::Bytes frame(received_.begin(), received_.end());
        if (!isKdl() && frame.size() == 5 && sim::hasValidCrc(frame) && frame[0] == heard_[0] &&
            frame[1] == (heard_[1] | 0x80U)) {
            return "exception=" + std::to_string(frame[2]);
        }
        const bool within = !meant_.empty() && received_.find(meant_) != Bytes::npos;
        if (within && !isKdl() && !boxShown_) {
            return "";
        }
        const bool carriedOut = !meant_.empty() && fault_ != "exception";
        return !carriedOut ? "silence" : isKdl() ? "unended" : "crc";
    }

    Bench& bench_;
    Figures& figures_;
    std::mt19937 random_;
    const bool undetectable_;
    Texts outcomes_;
    bool calm_ = false;
    bool quiet_ = false;  // at the last request
    TimePoint quietFrom_;
    bool under_way_ = false;  // a request, of which the following tell
    std::string fault_;
    Bytes received_;    // what the program has read since
    Bytes meant_;       // what the device has to say to it
    sim::Bytes heard_;  // by the device
    bool boxShown_ = false;
    TimePoint deadline_;
    unsigned unpluggedFor_ = 0;  // requests
};

}  // namespace vek
