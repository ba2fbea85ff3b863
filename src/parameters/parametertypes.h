#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

#include "parameters/parametercontrols.h"
#include "parameters/parametertable.h"

/// What distinguishes the device types in the parameter editor and its files, in one row per type.
namespace vek {

/// What one bit of the alarm masks means.
struct AlarmMeaning {
    std::array<const char*, 2> captions;  ///< of the boxes of relay 1 and 2; "-" for a bit without meaning
    const char* fileKey;                  ///< "" = none
};

/// Of the bits 1 to 11, bit 1 first.
using AlarmAssignment = std::array<AlarmMeaning, AlarmBoxes::count>;

/// How a response delay box stands there.
struct BoxState {
    bool visible;
    bool enabled;
};

struct DelayBoxes {
    BoxState tan, tan1, tan2;
};

/// The frame that some types use for the mains frequency and one for the capacitance of the installation.
struct FrequencyCaptions {
    const char* frame;
    const char* first;
    const char* second;
};

struct ParameterType {
    /// How messages call it; "" for a type without parameter files, nothing for one that is not known.
    std::optional<std::string_view> model;
    const AlarmAssignment* alarms;
    const DelayBoxes* delays;
    const FrequencyCaptions* frequency;
    NumberRange resistanceWarning;
    NumberRange resistanceAlarm;
    NumberRange undervoltage{};
    NumberRange overvoltage{};
};

/// The row of this type; of every number that is no type, the one of an unknown type.
const ParameterType& parameterType(std::uint8_t deviceType);

}  // namespace vek
