#pragma once

#include <cstddef>
#include <filesystem>
#include <functional>
#include <memory>
#include <string_view>
#include <vector>

#include "platform/posix/posixserial.h"
#include "platform/pseudoterminal.h"
#include "platform/temporaryfolder.h"
#include "simulator/line.h"
#include "support/fakeclock.h"

namespace vek {

/// Where an adapter is pulled out.
struct Pull {
    std::size_t request = 0;   ///< from 1; 0: never
    bool beforeIt = false;     ///< before the request is written, else:
    std::size_t heard = 0;     ///< bytes of the request that are on the line by then
    std::size_t answered = 0;  ///< bytes of the reply, once the request has been heard whole
};

struct FrameLengths {
    std::size_t request;
    std::size_t reply;  ///< 0 without one
};

/// A real serial port at a real pseudo-terminal, COM1, with a simulated device behind it that answers before
/// the write returns. The adapter is pulled out as planned, for that request and the next, and is back for
/// the one after.
///
/// The program's time is the fake clock's: a line that is gone costs it the whole time limit, but the test
/// only a moment.
class PluggedLine final : public SerialControl {
  public:
    explicit PluggedLine(const sim::LineOptions& options);

    Pull pull;
    std::function<void()> duringReply;  ///< called when half of a reply is on the line
    FakeClock* clock = nullptr;         ///< to be set before the first use

    std::size_t requests() const { return lengths_.size(); }
    /// Of these: written while the adapter was out, or answered in part.
    std::size_t unanswered() const { return unanswered_; }
    const std::vector<FrameLengths>& lengths() const { return lengths_; }
    bool isPluggedIn() const { return terminal_ != nullptr; }
    /// Whether the device has said something that the program has not read.
    bool hasInput() { return isPluggedIn() && sent_ > 0; }
    sim::Device& device() { return line_.device(); }
    void plugIn();
    const std::filesystem::path& dataFolder() const { return data_.path(); }

    bool setPortNumber(int number) override { return serial_.setPortNumber(number); }
    int portNumber() const override { return serial_.portNumber(); }
    bool setSettings(std::string_view settings) override { return serial_.setSettings(settings); }
    bool isOpen() const override { return serial_.isOpen(); }
    bool isConnected() const override { return serial_.isConnected(); }
    /// What came before is thrown away.
    PortError open() override {
        sent_ = 0;
        return serial_.open();
    }
    void close() override { serial_.close(); }
    std::size_t receivedCount() override { return serial_.receivedCount(); }
    Bytes readInput() override;
    void writeOutput(std::string_view bytes) override;
    std::size_t sendQueueCount() override { return serial_.sendQueueCount(); }
    void waitSent() override { serial_.waitSent(); }
    bool waitReceived(std::size_t count, TimePoint deadline) override;
    int inputHandle() const override { return serial_.inputHandle(); }
    PortInfo portInfo(int number) const override { return serial_.portInfo(number); }

  private:
    void pullOut();
    void nameDevice(const std::string& path);
    void answer(bool pulled);
    void send(std::string_view reply);
    Bytes replyTo(std::string_view request);

    TemporaryFolder data_;
    sim::SimulatedLine line_;
    PosixSerial serial_{data_.path()};
    std::unique_ptr<PseudoTerminal> terminal_;
    std::vector<FrameLengths> lengths_;
    std::size_t unanswered_ = 0;
    std::size_t sent_ = 0;
};

}  // namespace vek
