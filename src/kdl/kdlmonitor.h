#pragma once

#include "devicemodel/faultposition.h"
#include "devicemodel/monitorview.h"
#include "program/program.h"

namespace vek {

/// A monitor window as the KDL poll sees it.
class KdlMonitorView : public virtual MonitorView {
  public:
    virtual void showFaultPosition(const FaultPosition& position) = 0;
};

/// Number of rows that a pass fills at most.
inline constexpr int kdlRowCount = 15;

/// Reads the device's alarm and operating-value lists into the rows, pass after pass, until MonitorRunning is
/// false at the end of a pass or the window closes. Opens and closes the port.
void KdlRunMonitor(Program& program, KdlMonitorView& view);

/// Fills row `index` (0 to 14) from the device; true when the list ended before it.
bool KdlReadMonitorRow(Program& program, KdlMonitorView& view, int index);

}  // namespace vek
