#pragma once

#include <cstddef>
#include <cstdint>

#include "program/program.h"

namespace vek {

class frmMbMonitor;

/// Number of rows that a pass fills at most.
inline constexpr std::size_t kdlRowCount = 15;

/// Reads the device's alarm and operating-value lists into the rows, pass after pass, until MonitorRunning is
/// false at the end of a pass, or at a row that got no reply, or the window closes. Opens and closes the
/// port.
void KdlRunMonitor(Program& program, frmMbMonitor& monitor);

/// What came of the requests for a row.
enum class RowEnd : std::uint8_t {
    Filled,
    Unanswered,  ///< shown as not read: one of the requests has got no reply
    EndOfList,   ///< the list ended before it: cleared, or not read where nobody knows of an alarm there
};

/// Fills row `index` (0 to 14) from the device.
RowEnd KdlReadMonitorRow(Program& program, frmMbMonitor& monitor, std::size_t index);

}  // namespace vek
