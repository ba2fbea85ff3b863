#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <thread>

#include "platform/posix/posixline.h"
#include "platform/pseudoterminal.h"
#include "platform/serialport.h"
#include "platform/temporaryfolder.h"
#include "simulator/line.h"
#include "support/fakeclock.h"

namespace vek {

/// A real serial port at a real pseudo-terminal, COM3, with a simulated device behind it that answers before
/// the write returns. The program's time is the fake clock's: a line that is gone costs it the whole time
/// limit, but the test only a moment.
class PluggedLine final : public SerialPort {
  public:
    explicit PluggedLine(const TemporaryFolder& data)
        : SerialPort(std::make_unique<PosixLine>(data.path())), link_(data.file("ports/com3")) {
        std::filesystem::create_directory(data.path() / "ports");
        plugIn();
    }

    /// To be set before the first use.
    FakeClock* clock = nullptr;
    sim::SimulatedLine* device = nullptr;
    std::function<void(std::string_view request)> onWrite;  ///< called before it is written
    std::function<void()> duringReply;                      ///< called when half of it is on the line
    std::function<void(std::string_view received)> onRead;

    /// A pulled adapter comes back as a new device.
    void plugIn() {
        terminal_ = std::make_unique<PseudoTerminal>();
        nameDevice(terminal_->path());
    }

    /// The name goes with the device: the system may give its number to the next pseudo-terminal of another
    /// process.
    void pullOut() {
        nameDevice("no device");
        terminal_.reset();
    }

    bool isPluggedIn() const { return terminal_ != nullptr; }

    void writeOutput(std::string_view bytes) override {
        onWrite(bytes);
        SerialPort::writeOutput(bytes);
        if (isPluggedIn() && isOpen()) {
            const Bytes reply = replyTo(terminal_->take(bytes.size()));
            send(reply.substr(0, reply.size() / 2));
            duringReply();
            send(reply.substr(reply.size() / 2));
        }
    }

    Bytes readInput() override {
        const Bytes bytes = SerialPort::readInput();
        bytes.empty() ? void() : onRead(bytes);
        return bytes;
    }

    bool waitReceived(std::size_t count, TimePoint deadline) override {
        constexpr Milliseconds moment{1};
        const bool received = SerialPort::waitReceived(count, Clock::now() + moment);
        received ? void() : clock->advanceTo(deadline);
        return received;
    }

  private:
    void nameDevice(const std::string& path) const {
        std::filesystem::remove(link_);
        std::filesystem::create_symlink(path, link_);
    }

    Bytes replyTo(std::string_view request) const {
        Bytes reply;
        device->receive(sim::Bytes(request.begin(), request.end()), clock->now().time_since_epoch());
        while (const auto next = device->nextEvent()) {
            const sim::Bytes due = device->transmit(*next);
            reply.append(due.begin(), due.end());
        }
        return reply;
    }

    /// Returns when the port has it, without the pauses of a port that waits for a slow line.
    void send(std::string_view bytes) {
        const std::size_t expected = receivedCount() + bytes.size();
        const TimePoint patience = Clock::now() + std::chrono::seconds{5};
        if (isPluggedIn() && terminal_->send(bytes)) {
            while (receivedCount() < expected && Clock::now() < patience) {
                std::this_thread::yield();
            }
        }
    }

    const std::string link_;
    std::unique_ptr<PseudoTerminal> terminal_;
};

}  // namespace vek
