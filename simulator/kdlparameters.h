#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "simulator/device.h"

namespace vek::sim {

// The parameters of a device as the KDL bus has them: numbered from 1 in place of registers. Which numbers
// there are and what they stand for depends on the type.

inline constexpr std::uint16_t noParameter = 0;
inline constexpr std::uint16_t highestKdlParameter = 15;

bool hasKdlParameter(const DeviceType& type, std::uint16_t number);

// A key and the value, or "off" while the device does not work with it; nothing when the type has no such
// parameter.
std::optional<std::string> kdlParameter(const Device& device, std::uint16_t number);

// Writes a value in the unit of the bus; false and nothing written when the device refuses it. 0 switches off
// what can be switched off, any other value switches it on as well.
bool writeKdlParameter(Device& device, std::uint16_t number, std::uint16_t value);

}  // namespace vek::sim
