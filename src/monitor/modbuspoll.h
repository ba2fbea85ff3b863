#pragma once

#include <cstdint>
#include <string>

#include "devicemodel/measurementchannel.h"
#include "devicemodel/monitorview.h"
#include "program/program.h"

namespace vek {

/// A monitor window as the Modbus poll sees it.
class ModbusMonitorView : public virtual MonitorView {
  public:
    /// Text for a channel's value; called once per channel and cycle, before the row's other fields are
    /// known.
    virtual std::string valueText(int slot, float value) = 0;

    /// The slot shows "---" in place of a value: it could not be read, or is not valid.
    virtual void valueMissing(int slot) = 0;

    /// The slot's status has been shown: what this window makes of it beyond that.
    virtual void statusShown(int slot, RangeState range) = 0;

    /// All channels have been read once more.
    virtual void cycleDone() = 0;
};

/// Number of channels that a poll reads, slots 0 to 8.
inline constexpr int polledChannels = 9;

/// Reads one channel at its start register and shows it in its row: value, then status, then description. A
/// field that could not be read shows "---", a grey indicator or nothing: never what an earlier poll has
/// read.
bool ReadMeasurementChannel(Program& program, ModbusMonitorView& view, std::uint16_t startRegister, int slot);

/// Reads the identification, then channel after channel and cycle after cycle until MonitorRunning is false
/// at the end of a cycle or the window closes, on a silent device also before. Opens and closes the port.
/// Events are processed after each channel.
void runModbusPoll(Program& program, ModbusMonitorView& view);

}  // namespace vek
