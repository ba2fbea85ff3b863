#pragma once

#include <functional>

#include "parameters/parametercontrols.h"
#include "program/program.h"

namespace vek {

/// Reads all parameters that DeviceType has on the KDL bus into the editor. A reply without a value empties a
/// box and counts as 0 for a choice; a value that is none gets its message; the rest is read all the same.
/// Events are processed all the time; the reading ends early when `isOpen` says that the editor has been
/// closed. Opens and closes the port.
void KdlReadParameters(Program& program, ParameterControls& controls, const std::function<bool()>& isOpen);

}  // namespace vek
