#pragma once

#include <string>

#include "platform/posix/filedescriptor.h"
#include "platform/posix/systeminput.h"
#include "platform/seams/rawline.h"

namespace vek {

/// A terminal device. Exclusive among all programs (the terminal's own switch and a file lock together: some
/// programs know only one of them).
class PosixLine final : public RawLine {
  public:
    /// `dataFolder` holds the links from COM numbers to devices, see comDevicePath().
    explicit PosixLine(std::string dataFolder);
    ~PosixLine() override;
    PosixLine(const PosixLine&) = delete;
    PosixLine& operator=(const PosixLine&) = delete;

    PortError open(int number, const SerialSettings& settings) override;
    void close() override;
    bool isOpen() const override { return static_cast<bool>(device_); }
    std::size_t read(std::span<char> room) override;
    std::size_t write(std::string_view bytes) override;
    std::size_t queued() override;
    bool wait(Event event, TimePoint deadline) override;
    const SystemInput* input() const override { return device_ ? &input_ : nullptr; }
    PortInfo info(int number) const override;

  private:
    std::string dataFolder_;
    FileDescriptor device_;
    SystemInput input_{-1};
    bool hungUp_ = false;  ///< the wait has seen it; bytes from before may still be there to read
    bool lowLatencyRaised_ = false;
};

}  // namespace vek
