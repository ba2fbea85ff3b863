#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "modbus/modbusframe.h"
#include "program/program.h"

/// The serial port as Modbus uses it, and single Modbus RTU transactions. Nothing here tells the user of a
/// failed transaction, which ModBus does; and it is no second ModBusLink, which is the interface dialog.
namespace vek {

/// Opens the port ComPort with BaudRate and FrameFormat. When that fails, or the port is open already, a
/// message; the caller is not told, its transactions then find no reply.
void OpenPort(Program& program);

/// Closes the port; does nothing on a closed one.
void ClosePort(Program& program);

/// One read transaction (function 03). The whole reply frame, "CRC_TIMEOUT", or "EXCEP_" with the exception
/// code.
Bytes SendReadRequest(Program& program, std::uint8_t slave, std::uint16_t startRegister, std::uint16_t count);

/// One write transaction (function 16), with the same results.
Bytes SendWriteRequest(Program& program, std::uint8_t slave, std::uint16_t startRegister, std::uint8_t count,
                       std::uint8_t byteCount, std::string_view data);

/// DeviceAddress = the leading number of the text; 0 when that is no byte.
void SetDeviceAddress(Program& program, std::string_view text);

}  // namespace vek
