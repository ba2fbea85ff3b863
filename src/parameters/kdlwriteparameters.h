#pragma once

#include "parameters/parameterpass.h"

namespace vek {

/// Checks the editor's values against the limits of DeviceType and writes them to the device over the KDL
/// bus; each value out of range and each write that the device does not acknowledge gets its own message, and
/// the rest is written all the same. Numbers go out as they are typed. A changed address is followed; after
/// the switch of the device to Modbus RTU the program ends (ProgramEnd). Opens and closes the port.
PassResult KdlWriteParameters(Program& program, ParameterControls& controls);

}  // namespace vek
