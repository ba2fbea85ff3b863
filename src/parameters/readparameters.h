#pragma once

#include <functional>

#include "parameters/parameterpass.h"

namespace vek {

/// Reads all parameters of the device over Modbus RTU, register by register, into the editor, which first
/// takes the layout of DeviceType. Events are processed before each parameter; the reading ends early when
/// `isOpen` then says that the editor has been closed. Opens and closes the port.
PassResult ReadParameters(Program& program, ParameterControls& controls, const std::function<bool()>& isOpen);

}  // namespace vek
