#pragma once

#include "program/program.h"

namespace vek {

enum class DeviceCommand { Calibrate, SelfTest, ClearFaults, FactorySettings, FactorySettingsAll };

/// Sends the command to the device and tells the user whether the device took it. Calibration asks first.
/// Opens and closes the port; the caller holds the LineUse.
void runDeviceCommand(Program& program, DeviceCommand command);

}  // namespace vek
