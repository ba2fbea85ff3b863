#pragma once

#include <algorithm>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/seams/serialcontrol.h"
#include "platform/serialsettings.h"
#include "support/fakeclock.h"

namespace vek {

/// A serial port whose time is a FakeClock and whose other end is the test: waits move the clock to the byte
/// they wait for, or to their deadline, and return at once.
class FakeSerial final : public SerialControl {
  public:
    struct Opening {
        int number;
        std::string settings;
    };

    explicit FakeSerial(FakeClock& clock) : clock_(clock) {}

    // What the test prepares.

    /// Called with each frame that reaches the line, from within writeOutput(); mostly calls reply().
    std::function<void(std::string_view)> peer;
    /// Called with each frame that is written, before it reaches the line or is lost.
    std::function<void(std::string_view)> onWrite;
    /// Called with what the program reads, whenever there is something.
    std::function<void(std::string_view)> onRead;
    /// What open() answers for a port number; ports not named here open.
    std::map<int, PortError> openErrors;
    /// How long each frame stays in the send queue.
    Milliseconds sendTime{0};

    /// Has bytes arrive `delay` from now, each following one `gap` later. They are lost when the port is then
    /// closed or the device away.
    void reply(std::string_view bytes, Milliseconds delay = Milliseconds{0},
               Milliseconds gap = Milliseconds{0}) {
        TimePoint time = clock_.now() + delay;
        for (const char byte : isConnected() ? bytes : "") {
            arrivals_.emplace(time, byte);
            time += gap;
        }
    }

    /// Pulls the device out: the port stays open, and nothing goes in or out any more.
    void hangUp() {
        receive();
        pluggedIn_ = false;
        disconnect();
    }
    /// Puts it in again; the next write of an open port reaches it.
    void plugIn() { pluggedIn_ = true; }

    // What the test looks at.

    std::vector<Opening> openings;  ///< successful ones
    std::vector<Bytes> written;     ///< frames that reached the line
    const std::string& settings() const { return settings_; }
    /// When the next byte that has not arrived yet will.
    std::optional<TimePoint> nextArrival() const {
        return arrivals_.empty() ? std::nullopt : std::optional(arrivals_.begin()->first);
    }
    /// When the last of them will.
    std::optional<TimePoint> lastArrival() const {
        return arrivals_.empty() ? std::nullopt : std::optional(arrivals_.rbegin()->first);
    }

    bool setPortNumber(int number) override {
        const bool accepted = !open_ && number >= 1 && number <= 16;
        number_ = accepted ? number : number_;
        return accepted;
    }
    bool setSettings(std::string_view settings) override {
        const bool accepted = parseSerialSettings(settings).has_value();
        settings_ = accepted ? settings : settings_;
        return accepted;
    }
    bool isOpen() const override { return open_; }
    bool isConnected() const override { return open_ && connected_; }
    int inputHandle() const override { return -1; }
    PortInfo portInfo(int number) const override {
        return {"/dev/ttyFake" + std::to_string(number), "dialout"};
    }

    PortError open() override {
        const auto prepared = openErrors.find(number_);
        const PortError wanted = prepared == openErrors.end() ? PortError::None : prepared->second;
        const PortError refusal = open_ ? PortError::InUse : pluggedIn_ ? wanted : PortError::NotThere;
        if (refusal == PortError::None) {
            openings.push_back({number_, settings_});
            open_ = true;
            connected_ = true;
        }
        return refusal;
    }

    void close() override {
        open_ = false;
        disconnect();
        received_.clear();
    }

    std::size_t receivedCount() override {
        receive();
        return received_.size();
    }

    Bytes readInput() override {
        receive();
        if (onRead && !received_.empty()) {
            onRead(received_);
        }
        return std::exchange(received_, {});
    }

    void writeOutput(std::string_view bytes) override {
        if (onWrite) {
            onWrite(bytes);
        }
        connected_ = open_ && pluggedIn_;
        if (!connected_) {
            return;
        }
        written.emplace_back(bytes);
        sending_ = sendQueueCount() + bytes.size();
        sentAt_ = std::max(sentAt_, clock_.now()) + sendTime;
        if (peer) {
            peer(bytes);
        }
    }

    std::size_t sendQueueCount() override { return clock_.now() < sentAt_ ? sending_ : 0; }

    void waitSent() override {
        // A frame that takes longer than this is one on a line that stands still.
        constexpr Milliseconds standstill{1000};
        clock_.advanceTo(std::min(sentAt_, clock_.now() + standstill));
    }

    bool waitReceived(std::size_t count, TimePoint deadline) override {
        while (receivedCount() < count && nextArrival().value_or(TimePoint::max()) <= deadline) {
            clock_.advanceTo(*nextArrival());
        }
        if (received_.size() < count) {
            clock_.advanceTo(deadline);
        }
        return received_.size() >= count;
    }

  private:
    void disconnect() {
        connected_ = false;
        arrivals_.clear();
        sentAt_ = {};
    }

    void receive() {
        while (!arrivals_.empty() && arrivals_.begin()->first <= clock_.now()) {
            received_ += arrivals_.extract(arrivals_.begin()).mapped();
        }
    }

    FakeClock& clock_;
    int number_ = 1;
    std::string settings_ = "9600,n,8,1";
    bool open_ = false;
    bool pluggedIn_ = true;
    bool connected_ = false;  // false while open: the device went away and was not written to since
    std::multimap<TimePoint, char> arrivals_;
    TimePoint sentAt_;         // when the last frame has left the send queue
    std::size_t sending_ = 0;  // bytes, until then
    Bytes received_;
};

}  // namespace vek
