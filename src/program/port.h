#pragma once

#include "program/program.h"

/// What both protocols do with the serial port before they open it.
namespace vek {

/// Whether there is a port of this number, 1 to 16.
bool isPortNumber(int number);

/// Selects port ComPort and the settings of BaudRate (9600 in place of a rate that is none) and FrameFormat
/// on the closed port. False when there is no such port, and when the port refuses one of them.
bool selectConfiguredPort(Program& program);

/// Whether port n (1 to 16) can be opened, which is tried; `error` says why not.
bool PortExists(Program& program, int n, PortError& error);

/// The message for a port that could not be opened. Its answer does not matter.
void showPortMissing(Program& program);

}  // namespace vek
