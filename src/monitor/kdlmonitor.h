#pragma once

#include <cstddef>

#include "program/program.h"

namespace vek {

class frmMbMonitor;

/// Number of rows that a pass fills at most.
inline constexpr std::size_t kdlRowCount = 15;

/// Reads the device's alarm and operating-value lists into the rows, pass after pass, until MonitorRunning is
/// false at the end of a pass or the window closes. Opens and closes the port.
void KdlRunMonitor(Program& program, frmMbMonitor& monitor);

/// Fills row `index` (0 to 14) from the device; true when the list ended before it.
bool KdlReadMonitorRow(Program& program, frmMbMonitor& monitor, std::size_t index);

}  // namespace vek
