#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "parameters/parametercontrols.h"

namespace vek {

/// What one bit of the alarm masks means.
struct AlarmMeaning {
    std::array<const char*, 2> captions;  ///< of the boxes of relay 1 and 2; "-" for a bit without meaning
    const char* fileKey;
};

/// Meaning of bit `number` (1 to 11) for this type. Bits of a type whose assignment is not known are named by
/// their number and have no file key.
const AlarmMeaning& alarmMeaning(std::uint8_t deviceType, std::size_t number);

}  // namespace vek
