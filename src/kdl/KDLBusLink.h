#pragma once

#include <string_view>

#include "kdl/kdlframe.h"
#include "program/program.h"

/// The link layer of the KDL bus: the maker's own ASCII requests and replies on the same serial port. It
/// knows neither commands nor what replies mean, and is not the counterpart of the dialog ModBusLink but of
/// ModBusLink1.
///
/// All waits process events, so that the user can press Stop, and throw ProgramEnd when the user ends the
/// program.
namespace vek {

/// Opens the port ComPort with BaudRate and FrameFormat. A message when it is open already, and when there is
/// no such number; a port that cannot be opened stays closed without one, its requests then find no reply.
void KdlOpenPort(Program& program);

/// The same, but with a message whenever the port is not open afterwards; whether it is.
bool KdlPortOpened(Program& program);

/// Closes the port; does nothing on a closed one.
void KdlClosePort(Program& program);

/// Sets KdlAddressPrefix and DeviceAddress from an address text of one to three characters (leading blanks do
/// not count). Any other length ends the program.
void KdlSetAddress(Program& program, std::string_view addressText);

/// One request: the payload of the reply, or "#TIMEOUT_ERROR#" when no complete reply came within 200 ms
/// after the last byte of the request was sent. A request right behind one without a reply waits up to 200 ms
/// more, in which a late reply is thrown away.
Bytes KdlTransact(Program& program, std::string_view command);

/// Processes events for that many milliseconds.
void DelayMs(Program& program, int milliseconds);

/// Starts the time-out clock; TimeOutElapsed becomes true when it runs out.
void StartTimeOut(Program& program, int milliseconds);

/// Stops the time-out clock and clears TimeOutElapsed.
void StopTimeOut(Program& program);

}  // namespace vek
