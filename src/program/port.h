#pragma once

#include <cstdint>
#include <string>

#include "program/program.h"

/// What both protocols do with the serial port before they open it.
namespace vek {

/// Baud rate as it goes into the settings string: one of the eight rates, "9600" for any other number.
std::string baudText(std::int32_t baudRate);

/// Selects port ComPort (a number other than 1 to 16 leaves the port selected that was) and the settings of
/// BaudRate and FrameFormat on the closed port. False when the port refuses one of them.
bool selectConfiguredPort(Program& program);

/// The message for a port that could not be opened. Its answer does not matter.
void showPortMissing(Program& program);

}  // namespace vek
