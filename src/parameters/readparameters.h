#pragma once

#include <functional>

#include "parameters/parameterpass.h"

namespace vek {

/// Reads all parameters of the device over Modbus RTU, register by register, into the editor, which first
/// takes the layout of DeviceType. Events are processed before each parameter; the reading ends early when
/// `isOpen` then says that the editor has been closed. Opens and closes the port.
PassResult ReadParameters(Program& program, ParameterControls& controls, const std::function<bool()>& isOpen);

/// Shows the result of a read of one register, and whether it is known: what the user has been told of in
/// place of a number is shown, but is none; a reply of another length says nothing.
bool showReadNumber(TextBox& box, const Bytes& reply);

}  // namespace vek
