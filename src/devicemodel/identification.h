#pragma once

#include <cstdint>
#include <string_view>

#include "program/program.h"

namespace vek {

/// Sets DeviceType from the name that a device reports and returns it; see deviceTypeFromName().
std::uint8_t SetDeviceTypeFromName(Program& program, std::string_view name);

}  // namespace vek
