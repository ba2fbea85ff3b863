#pragma once

#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/serialcontrol.h"
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
               Milliseconds gap = Milliseconds{0});
    /// Pulls the device out: the port stays open, and nothing goes in or out any more.
    void hangUp();
    /// Puts it in again; the next write of an open port reaches it.
    void plugIn() { pluggedIn_ = true; }

    // What the test looks at.

    std::vector<Opening> openings;  ///< successful ones
    int closeCount = 0;             ///< closings of an open port
    std::vector<Bytes> written;     ///< frames that reached the line
    std::vector<Bytes> lost;        ///< frames written to a closed port or without a device
    const std::string& settings() const { return settings_; }
    /// When the next byte that has not arrived yet will.
    std::optional<TimePoint> nextArrival() const;
    /// When the last of them will.
    std::optional<TimePoint> lastArrival() const;

    bool setPortNumber(int number) override;
    int portNumber() const override { return number_; }
    bool setSettings(std::string_view settings) override;
    bool isOpen() const override { return open_; }
    bool isConnected() const override { return open_ && connected_; }
    PortError open() override;
    void close() override;
    std::size_t receivedCount() override;
    Bytes readInput() override;
    void writeOutput(std::string_view bytes) override;
    std::size_t sendQueueCount() override;
    void waitSent() override;
    bool waitReceived(std::size_t count, TimePoint deadline) override;
    int inputHandle() const override { return -1; }
    PortInfo portInfo(int number) const override;

  private:
    struct Arrival {
        TimePoint time;
        char byte;
    };

    void receive();

    FakeClock& clock_;
    int number_ = 1;
    std::string settings_ = "9600,n,8,1";
    bool open_ = false;
    bool pluggedIn_ = true;
    bool connected_ = false;        // false while open: the device went away and was not written to since
    std::deque<Arrival> arrivals_;  // by time
    TimePoint sentAt_;              // when the last frame has left the send queue
    std::size_t sending_ = 0;       // bytes, until then
    Bytes received_;
};

}  // namespace vek
