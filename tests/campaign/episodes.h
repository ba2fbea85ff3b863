#pragma once

#include <cstdint>

#include "campaign/figures.h"

namespace vek {

/// One use of the program on a faulty line, from the first window to the last: a monitor over some channels
/// with a device command after it, or the parameter editor reading, writing and reading again. What the
/// windows show is held against what the line has carried. The seed decides everything.
void runModbusEpisode(std::uint32_t seed, Figures& figures);

/// The same for the monitor and a device command on the KDL bus.
void runKdlEpisode(std::uint32_t seed, Figures& figures);

}  // namespace vek
