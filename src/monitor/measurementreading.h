#pragma once

#include <cstdint>

#include "devicemodel/measurementchannel.h"
#include "program/program.h"

namespace vek {

/// Reads the channel at its start register (at most 32764): value, status, description. The user has been
/// told of each read that failed. The port must be open.
MeasurementChannel readChannel(Program& program, std::uint16_t startRegister);

}  // namespace vek
