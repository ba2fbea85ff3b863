#pragma once

#include "platform/controls.h"

namespace vek {

/// The controls of one row of a monitor's channel table.
struct ChannelRow {
    Label& lblMesswert;
    Label& lblRange;
    Label& lblEinheit;
    Label& lblMessName;
    Shape& LED;
};

/// The labels of a monitor that say which device it shows.
struct DeviceLabels {
    Label& lblDevName;
    Label& lblSwRegNr;
    Label& lblSwVer;
    Label& lblSwDate;
    Label& lblSwMb;
};

/// A monitor window as the polls of both protocols see it.
class MonitorView {
  public:
    virtual ~MonitorView() = default;

    virtual DeviceLabels deviceLabels() = 0;

    /// Row `slot`, 0 to 15.
    virtual ChannelRow channelRow(int slot) = 0;

    virtual Shape& internalTest() = 0;
    virtual Shape& externalTest() = 0;

    /// Whether the window still stands on the screen.
    virtual bool isShown() const = 0;
};

}  // namespace vek
