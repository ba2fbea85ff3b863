#pragma once

#include <cstdint>
#include <optional>

#include "parameters/parametertable.h"

/// Flags, choices and alarm masks are kept as a code by the device: the only way from their controls to the
/// code and back, for both buses.
namespace vek {

enum class Bus : std::uint8_t { Modbus, Kdl };

/// The code that the controls of a flag, choice or mask stand for; nothing where no option is set.
std::optional<std::uint16_t> shownCode(const ParameterControls& controls, const ParameterRow& row, Bus bus);

/// Sets the controls of a flag, choice or mask as the user would. False, and nothing is set, when the
/// parameter has no such code.
bool showCode(ParameterControls& controls, const ParameterRow& row, double code, Bus bus);

/// The text box of a number; nullptr for the other kinds.
TextBox* numberBox(ParameterControls& controls, const ParameterRow& row);

/// The option whose button is set; nullptr when none is, or the parameter is no choice.
const ChoiceParameter::Option* selectedOption(const ParameterControls& controls, const ParameterRow& row);

/// Message when the device has not acknowledged what the controls of this parameter say.
const char* writeFailureOf(const ParameterControls& controls, const ParameterRow& row);

}  // namespace vek
