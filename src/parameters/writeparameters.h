#pragma once

#include "parameters/parameterpass.h"

namespace vek {

/// Checks the editor's values against the ranges of DeviceType and writes them to the device over Modbus RTU,
/// one register at a time; each value out of range and each failed write gets its own message, and the rest
/// is written all the same. A changed address, parity or baud rate takes the program's own settings along;
/// after the switch to the KDL bus the program ends (ProgramEnd). No events are processed, except by
/// messages. Opens and closes the port.
PassResult WriteParameters(Program& program, ParameterControls& controls);

}  // namespace vek
