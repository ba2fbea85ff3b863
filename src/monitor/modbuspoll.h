#pragma once

#include <cstddef>

#include "program/program.h"

namespace vek {

class MonitorForm;

/// Number of channels that a poll reads, slots 0 to 8.
inline constexpr std::size_t polledChannels = 9;

/// Reads one channel and shows it in its row. A field that could not be read shows "---", a grey indicator or
/// nothing: never what an earlier poll has read. Whether any of them could be read.
bool ReadMeasurementChannel(Program& program, MonitorForm& monitor, std::size_t slot);

/// Reads the identification, then channel after channel and cycle after cycle until MonitorRunning is false
/// at the end of a cycle or the window closes, on a silent device also before. Opens and closes the port.
/// Events are processed after each channel.
void runModbusPoll(Program& program, MonitorForm& monitor);

}  // namespace vek
