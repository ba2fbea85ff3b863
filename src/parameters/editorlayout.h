#pragma once

#include <cstdint>

#include "parameters/parametercontrols.h"

/// Which of the editor's controls a device type can use, and what they are called.
namespace vek {

/// Captions and enabling of the alarm boxes, and which of the response delay boxes the type uses.
void applyModbusLayout(ParameterControls& controls, std::uint8_t deviceType);

/// The response delay boxes; what cannot be reached over the KDL bus is disabled: alarm assignment, start
/// with test, parity, the delay of K2 alone.
void applyKdlLayout(ParameterControls& controls, std::uint8_t deviceType);

/// Frames and inputs that the type has; the thresholds start with "---". What depends on the impedance
/// measurement of types 1 and 2 follows its check box.
void applyTypeLayout(ParameterControls& controls, std::uint8_t deviceType);

/// The accepted ranges in the captions of the thresholds.
void applyRangeCaptions(ParameterControls& controls, std::uint8_t deviceType);

}  // namespace vek
