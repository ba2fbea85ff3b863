#pragma once

#include <sys/types.h>

#include <string>

#include "platform/temporaryfolder.h"
#include "simulator/line.h"
#include "simulator/pty.h"

namespace vek::bench {

/// A simulated device on a pseudo-terminal, in a process of its own. To be made before anything starts
/// threads.
class DeviceProcess {
  public:
    explicit DeviceProcess(const sim::LineOptions& options);
    DeviceProcess(const DeviceProcess&) = delete;
    DeviceProcess& operator=(const DeviceProcess&) = delete;
    ~DeviceProcess();

    const std::string& path() const { return terminal_.path(); }

    /// Where COM1 is this device.
    std::string dataFolder() const { return folder_.path().string(); }

  private:
    TemporaryFolder folder_;
    sim::PseudoTerminal terminal_;
    pid_t process_;
};

}  // namespace vek::bench
