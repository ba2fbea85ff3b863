#pragma once

#include <string>

#include "platform/posix/filedescriptor.h"
#include "platform/seams/serialcontrol.h"
#include "platform/serialsettings.h"

namespace vek {

/// A serial port of the system. Exclusive among all programs (the terminal's own switch and a file lock
/// together: some programs know only one of them); set up as a plain byte line.
///
/// At most 64 KiB wait to be read; what a flood brings beyond them is lost.
class PosixSerial : public SerialControl {
  public:
    /// `dataFolder` holds the links from COM numbers to devices, see comDevicePath().
    explicit PosixSerial(std::string dataFolder);
    ~PosixSerial() override;
    PosixSerial(const PosixSerial&) = delete;
    PosixSerial& operator=(const PosixSerial&) = delete;

    bool setPortNumber(int number) override;
    bool setSettings(std::string_view settings) override;
    bool isOpen() const override { return open_; }
    bool isConnected() const override { return open_ && static_cast<bool>(device_); }
    PortError open() override;
    void close() override;
    std::size_t receivedCount() override;
    Bytes readInput() override;
    void writeOutput(std::string_view bytes) override;
    std::size_t sendQueueCount() override;
    void waitSent() override;
    bool waitReceived(std::size_t count, TimePoint deadline) override;
    int inputHandle() const override { return device_.get(); }
    PortInfo portInfo(int number) const override;

  private:
    PortError connect();
    void disconnect();
    void receiveWaiting();
    void receive();
    std::size_t receiveChunk();
    bool send(std::string_view bytes);
    bool waitFor(short events, TimePoint deadline);
    void sleepWithinFrame(std::size_t missing, TimePoint deadline) const;

    std::string dataFolder_;
    int number_ = 1;
    SerialSettings settings_;      ///< for the next open()
    SerialSettings lineSettings_;  ///< of the open port, for a device that comes back
    bool open_ = false;
    FileDescriptor device_;  ///< none while the open port's device is away
    bool lowLatencyRaised_ = false;
    Bytes received_;
    TimePoint lastArrival_;  ///< when the last of them was taken from the system
};

}  // namespace vek
