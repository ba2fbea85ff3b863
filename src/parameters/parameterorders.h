#pragma once

#include <cstdint>
#include <vector>

#include "parameters/parametertable.h"

namespace vek {

/// The operations, each of which visits the parameters in an order of its own.
enum class ParameterOrder : std::uint8_t {
    Read,   ///< over Modbus
    Write,  ///< over Modbus: the bus settings last, each reached at the setting before it
    File,
    KdlRead,   ///< a threshold that tells whether it is on is asked for its switch first and for its value
               ///< again
    KdlWrite,  ///< a switched threshold is written as one; the bus settings last
};
inline constexpr std::size_t parameterOrderCount = 5;

using ParameterRows = std::vector<const ParameterRow*>;

/// The parameters that the operation visits at a device of this type, in its order: those that the type has,
/// on the bus in question.
ParameterRows rowsInOrder(ParameterOrder order, std::uint8_t deviceType);

/// Whether the KDL bus knows the parameter at a device of this type.
bool isOnKdlBus(const ParameterRow& row, std::uint8_t deviceType);

}  // namespace vek
