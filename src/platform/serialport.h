#pragma once

#include <memory>

#include "platform/seams/rawline.h"
#include "platform/seams/serialcontrol.h"
#include "platform/serialsettings.h"

namespace vek {

/// The machine's own time.
PassingTime& machineTime();

/// The serial port of the program over a line of the system: what all systems do alike.
///
/// At most 64 KiB wait to be read; what a flood brings beyond them is lost.
class SerialPort : public SerialControl {
  public:
    /// Takes its waits from `time`, and has `line` do so.
    explicit SerialPort(std::unique_ptr<RawLine> line, PassingTime& time = machineTime());

    bool setPortNumber(int number) override;
    bool setSettings(std::string_view settings) override;
    bool isOpen() const override { return open_; }
    bool isConnected() const override { return line_->isOpen(); }
    PortError open() override;
    void close() override;
    std::size_t receivedCount() override;
    Bytes readInput() override;
    void writeOutput(std::string_view bytes) override;
    std::size_t sendQueueCount() override;
    void waitSent() override;
    bool waitReceived(std::size_t count, TimePoint deadline) override;
    bool takeReceived() override;
    const SystemInput* systemInput() const override { return line_->input(); }
    PortInfo portInfo(int number) const override { return line_->info(number); }

  private:
    bool send(std::string_view bytes);
    bool waitFor(RawLine::Event event, TimePoint deadline);
    void sleepWithinFrame(std::size_t missing, TimePoint deadline) const;

    std::unique_ptr<RawLine> line_;  ///< closed while the open port's device is away
    PassingTime& time_;
    int number_ = 1;
    SerialSettings settings_;      ///< for the next open()
    SerialSettings lineSettings_;  ///< of the open port, for a device that comes back
    bool open_ = false;
    Bytes received_;
    TimePoint lastArrival_;  ///< when the last of them was taken from the system
};

}  // namespace vek
