#pragma once

#include <functional>

#include "parameters/parameterpass.h"

namespace vek {

/// Reads all parameters that DeviceType has on the KDL bus into the editor. What brings no value stays
/// unknown; a value that is none gets its message; the rest is read all the same.
/// Events are processed all the time; the reading ends early when `isOpen` says that the editor has been
/// closed. Opens and closes the port.
PassResult KdlReadParameters(Program& program, ParameterControls& controls,
                             const std::function<bool()>& isOpen);

}  // namespace vek
