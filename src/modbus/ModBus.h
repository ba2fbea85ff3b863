#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "modbus/ModBusLink1.h"

/// Modbus transactions with the device at DeviceAddress that tell the user what went wrong; no frames and no
/// port, which ModBusLink1 knows, and no window, in spite of frmModBus. The port must be open, except for
/// ReadDeviceText. All of them may end the program (ProgramEnd): the user is asked after a time-out.
namespace vek {

/// Reads `count` registers. The data bytes of the reply (registers high byte first); for a reply with less
/// than three data bytes, as of one register, its value as unsigned decimal text; "EXCEP_" with the exception
/// code after an exception reply (code 2 without a message: not every device has every register);
/// "CRC_TIMEOUT" after a failed transaction.
Bytes MbReadRegisters(Program& program, std::uint16_t startRegister, std::uint16_t count);

/// Writes registers; whether the device acknowledged. Registers 3016 and 3017 (baud rate and parity) always
/// count as acknowledged: the device may answer with the new setting already.
bool MbWriteRegisters(Program& program, std::uint16_t startRegister, std::uint8_t count,
                      std::uint8_t byteCount, std::string_view data);

/// Reads ten registers as text, with the port opened and closed around it: the text up to the first NUL, or a
/// token as of MbReadRegisters. The bytes are those of the device.
Bytes ReadDeviceText(Program& program, std::uint16_t startRegister);

/// Reads `count` registers: exactly 2 * count bytes, high byte first. Nothing after any failure, of which the
/// user has been told as by MbReadRegisters, and when the reply carries another number of bytes.
std::optional<Bytes> readData(Program& program, std::uint16_t startRegister, std::uint16_t count);

/// The value of one register; nothing as with readData.
std::optional<std::uint16_t> readRegister(Program& program, std::uint16_t number);

/// What the user is told of the exceptions 2 and 3, which are worded in several ways; "" = nothing.
struct ExceptionTexts {
    const char* access = "Unzulässige Datenzugriff";
    const char* value = "Unzulässige Datenwert";
};

/// Whether the result of a transaction is a reply. If it is none, the user has been told why, or wants to go
/// on after a time-out.
bool isGoodReply(Program& program, const Bytes& result, const ExceptionTexts& texts = {});

/// Closes all windows, which ends the program.
void UnloadAllWindows(Program& program);

}  // namespace vek
