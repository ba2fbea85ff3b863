#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "devicemodel/measurementchannel.h"
#include "platform/color.h"
#include "platform/numberlocale.h"

namespace vek {

/// The channel's indicator colour; nothing for the unnamed states, with which an indicator keeps its colour.
std::optional<Color> alarmColor(AlarmState state);

/// The window's two test indicators: red while their test runs, else green.
struct TestColors {
    Color internal;
    Color external;

    friend constexpr bool operator==(const TestColors&, const TestColors&) = default;
};
TestColors testColors(TestState state);

/// The symbol beside the value. With RangeState::invalid the value itself gives way to noValueText.
std::string_view rangeCaption(RangeState state);

/// The number that a slot shows for a channel's value: scaled and rounded to the slot's
/// decimals, so for instance whole kOhm in slot 0 and whole percent in slot 6. Nothing where the slot shows
/// noValueText: values that are not finite, and 0 in a slot that shows a resistance.
std::optional<double> channelNumber(std::size_t slot, std::uint8_t deviceType, float value);

/// channelNumber as text, with the locale's decimal point and grouping; from slot 8 on plain, without
/// grouping.
std::string channelValueText(std::size_t slot, std::uint8_t deviceType, float value,
                             const NumberLocale& locale);

}  // namespace vek
