#pragma once

#include <string>
#include <vector>

namespace vek {

/// What the process asks of the system in the calls that no result shows: flushing a file to the disk, moving
/// it into place, and the low-latency switch of a serial driver, which pseudo-terminals lack.
struct SystemCalls {
    std::vector<std::string> log;  ///< "flush file", "flush folder", "rename", "low latency on", "... off"
    bool driverHasLowLatency = false;
};
extern SystemCalls systemCalls;

}  // namespace vek
