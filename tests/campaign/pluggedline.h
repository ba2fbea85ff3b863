#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "platform/posix/posixserial.h"
#include "platform/pseudoterminal.h"
#include "platform/temporaryfolder.h"
#include "simulator/line.h"
#include "support/fakeclock.h"

namespace vek {

/// A real serial port at a real pseudo-terminal, COM3, with a simulated device behind it that answers before
/// the write returns. The adapter is pulled out at one request, before it or when half of the reply is on the
/// line, and is back as a new device for the one after the next.
///
/// The program's time is the fake clock's: a line that is gone costs it the whole time limit, but the test
/// only a moment.
class PluggedLine final : public SerialControl {
  public:
    PluggedLine() {
        std::filesystem::create_directory(data_.path() / "ports");
        plugIn();
    }

    /// To be set before the first use.
    FakeClock* clock = nullptr;
    sim::SimulatedLine* device = nullptr;

    std::size_t pulledAt = 0;  ///< the number of the request, from 1
    bool beforeIt = false;
    std::function<void(std::string_view frame)> onWrite;

    std::size_t requests = 0;
    std::size_t unanswered = 0;  ///< of these: written while the adapter was out, or answered in part

    /// The user sees to it before the next operation.
    void plugBack() {
        if (terminal_ == nullptr) {
            plugIn();
        }
    }

    /// Whether the device has said something that the program has not read.
    bool hasInput() const { return terminal_ != nullptr && sent_ > 0; }

    bool setPortNumber(int number) override { return serial_.setPortNumber(number); }
    bool setSettings(std::string_view settings) override { return serial_.setSettings(settings); }
    bool isOpen() const override { return serial_.isOpen(); }
    bool isConnected() const override { return serial_.isConnected(); }
    PortError open() override {
        sent_ = 0;
        return serial_.open();
    }
    void close() override { serial_.close(); }
    std::size_t receivedCount() override { return serial_.receivedCount(); }
    Bytes readInput() override {
        Bytes input = serial_.readInput();
        sent_ -= std::min(sent_, input.size());
        return input;
    }
    void writeOutput(std::string_view bytes) override {
        onWrite(bytes);
        ++requests;
        const bool pulled = requests == pulledAt;
        if (pulled && beforeIt) {
            pullOut();
        } else if (terminal_ == nullptr && requests > pulledAt + 1) {
            plugIn();
        }
        serial_.writeOutput(bytes);
        sent_ = 0;
        if (terminal_ != nullptr && serial_.isConnected()) {
            const Bytes reply = replyTo(terminal_->take(bytes.size()));
            sent_ = pulled ? reply.size() / 2 : reply.size();
            terminal_->send(reply.substr(0, sent_));
        }
        unanswered += pulled || !serial_.isConnected() ? 1U : 0U;
        if (pulled) {
            pullOut();
        }
    }
    std::size_t sendQueueCount() override { return serial_.sendQueueCount(); }
    void waitSent() override { serial_.waitSent(); }
    bool waitReceived(std::size_t count, TimePoint deadline) override {
        // More than any reply takes: a line that is whole never lets it pass.
        constexpr std::chrono::seconds patience{5};
        constexpr Milliseconds moment{1};
        const bool whole = terminal_ != nullptr && serial_.isConnected();
        if (serial_.waitReceived(count, Clock::now() + (whole ? Clock::duration{patience} : moment))) {
            return true;
        }
        clock->advanceTo(deadline);
        return false;
    }
    int inputHandle() const override { return serial_.inputHandle(); }
    PortInfo portInfo(int number) const override { return serial_.portInfo(number); }

  private:
    void plugIn() {
        terminal_ = std::make_unique<PseudoTerminal>();
        nameDevice(terminal_->path());
    }

    /// The name goes with the device: the system may give its number to the next pseudo-terminal of another
    /// process.
    void pullOut() {
        nameDevice(data_.file("no device"));
        terminal_.reset();
    }

    void nameDevice(const std::string& path) const {
        const std::string link = data_.file("ports/com3");
        std::filesystem::remove(link);
        std::filesystem::create_symlink(path, link);
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

    TemporaryFolder data_;
    PosixSerial serial_{data_.path()};
    std::unique_ptr<PseudoTerminal> terminal_;
    std::size_t sent_ = 0;  // of the last reply, not yet read
};

}  // namespace vek
