#pragma once

#include <cstdint>

#include "program/program.h"

/// What the writing of a device's own bus settings needs over either protocol.
namespace vek {

/// Message for an address that no device can have.
inline constexpr const char* addressRefused =
    "Eingegebene Adresse ausserhalb des gültigen Bereiches (0, 3...90)";

/// Whether a device can have the address: 0, or one of its parameter's range.
bool isDeviceAddress(double value);

/// The Modbus rate in bit/s that register 3016 keeps as this code, 0 to 8; 0 for the KDL bus.
std::int32_t baudRateOfCode(std::uint16_t code);

/// Shows port, baud rate and frame in panel 1 of the status bar, as the writing of parameters does.
void showModbusPort(Program& program);

}  // namespace vek
