#pragma once

#include <algorithm>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/serialport.h"
#include "support/fakeclock.h"

namespace vek {

/// What is at the other end of a FakeLine.
struct FakePeer {
    // What the test prepares.

    /// Called with each frame that reaches the line, from within the write; mostly calls reply().
    std::function<void(std::string_view)> peer;
    /// What opening answers for a port number; ports not named here open.
    std::map<int, PortError> openErrors;
    /// How long each frame stays in the send queue.
    Milliseconds sendTime{0};

    // What the test looks at.

    std::vector<Bytes> written;  ///< frames that reached the line

    bool pluggedIn = true;
    bool lineOpen = false;
    std::multimap<TimePoint, char> arrivals;  ///< bytes under way, and come but not yet read
};

/// A line of no system: waits move the clock to the byte they wait for, or to their deadline, and return at
/// once.
class FakeLine final : public RawLine {
  public:
    FakeLine(FakePeer& other, FakeClock& clock) : other_(other), clock_(clock) {}

    PortError open(int number, const SerialSettings& /*settings*/) override {
        const auto prepared = other_.openErrors.find(number);
        const PortError wanted = prepared == other_.openErrors.end() ? PortError::None : prepared->second;
        const PortError refusal = other_.pluggedIn ? wanted : PortError::NotThere;
        other_.lineOpen = refusal == PortError::None;
        return refusal;
    }

    void close() override {
        other_.lineOpen = false;
        other_.arrivals.clear();
        sentAt_ = {};
    }

    bool isOpen() const override { return other_.lineOpen; }

    std::size_t read(std::span<char> room) override {
        std::size_t count = 0;
        while (count < room.size() && hasCome()) {
            room[count] = other_.arrivals.extract(other_.arrivals.begin()).mapped();
            ++count;
        }
        return count;
    }

    std::size_t write(std::string_view bytes) override {
        other_.written.emplace_back(bytes);
        sending_ = queued() + bytes.size();
        sentAt_ = std::max(sentAt_, clock_.now()) + other_.sendTime;
        if (other_.peer) {
            other_.peer(bytes);
        }
        return bytes.size();
    }

    std::size_t queued() override { return clock_.now() < sentAt_ ? sending_ : 0; }

    bool wait(Event /*event*/, TimePoint deadline) override {
        const auto& arrivals = other_.arrivals;
        const bool comes = !arrivals.empty() && arrivals.begin()->first <= deadline;
        clock_.advanceTo(comes ? arrivals.begin()->first : deadline);
        return comes;
    }

    const SystemInput* input() const override { return nullptr; }
    PortInfo info(int number) const override {
        return {"/dev/ttyFake" + std::to_string(number), "nur für Mitglieder der Gruppe dialout"};
    }

  private:
    bool hasCome() const {
        return !other_.arrivals.empty() && other_.arrivals.begin()->first <= clock_.now();
    }

    FakePeer& other_;
    FakeClock& clock_;
    TimePoint sentAt_;         // when the last frame has left the send queue
    std::size_t sending_ = 0;  // bytes, until then
};

/// The program's own port on a FakeLine.
class FakeSerial final : public FakePeer, public SerialPort {
  public:
    struct Opening {
        int number;
        std::string settings;
    };

    explicit FakeSerial(FakeClock& clock)
        : SerialPort(std::make_unique<FakeLine>(*this, clock), clock), clock_(clock) {}

    /// Called with each frame that is written, before it reaches the line or is lost.
    std::function<void(std::string_view)> onWrite;
    /// Called with what the program reads, whenever there is something.
    std::function<void(std::string_view)> onRead;

    std::vector<Opening> openings;  ///< successful ones

    /// Has bytes arrive `delay` from now, each following one `gap` later. They are lost when the port is then
    /// closed or the device away.
    void reply(std::string_view bytes, Milliseconds delay = Milliseconds{0},
               Milliseconds gap = Milliseconds{0}) {
        TimePoint time = clock_.now() + delay;
        for (const char byte : lineOpen ? bytes : "") {
            arrivals.emplace(time, byte);
            time += gap;
        }
    }

    /// Pulls the device out: the port stays open, and nothing goes in or out any more.
    void hangUp() {
        takeReceived();
        pluggedIn = lineOpen = false;
        arrivals.clear();
    }
    /// Puts it in again; the next write of an open port reaches it.
    void plugIn() { pluggedIn = true; }

    const std::string& settings() const { return settings_; }

    /// When the next byte that has not been read yet arrives.
    std::optional<TimePoint> nextArrival() const {
        return arrivals.empty() ? std::nullopt : std::optional(arrivals.begin()->first);
    }
    /// When the last of them will.
    std::optional<TimePoint> lastArrival() const {
        return arrivals.empty() ? std::nullopt : std::optional(arrivals.rbegin()->first);
    }

    bool setPortNumber(int number) override {
        const bool accepted = SerialPort::setPortNumber(number);
        number_ = accepted ? number : number_;
        return accepted;
    }

    bool setSettings(std::string_view settings) override {
        const bool accepted = SerialPort::setSettings(settings);
        settings_ = accepted ? settings : settings_;
        return accepted;
    }

    PortError open() override {
        const PortError error = SerialPort::open();
        if (error == PortError::None) {
            openings.push_back({number_, settings_});
        }
        return error;
    }

    Bytes readInput() override {
        Bytes bytes = SerialPort::readInput();
        if (onRead && !bytes.empty()) {
            onRead(bytes);
        }
        return bytes;
    }

    void writeOutput(std::string_view bytes) override {
        if (onWrite) {
            onWrite(bytes);
        }
        SerialPort::writeOutput(bytes);
    }

  private:
    FakeClock& clock_;
    int number_ = 1;
    std::string settings_ = "9600,n,8,1";
};

}  // namespace vek
