#pragma once

#include <cstdint>
#include <string_view>

namespace vek {

/// The fields of a channel's status word. Their numbers are the word masked, not shifted, so that they can be
/// shown as they are; a device may also send numbers without a name here.
enum class TestState : std::uint16_t { idle = 0, internal = 0x4000, external = 0x8000 };
enum class AlarmState : std::uint16_t {
    none = 0,
    preAlarm = 0x0100,
    deviceFault = 0x0200,
    warning = 0x0400,
    alarm = 0x0500
};
enum class RangeState : std::uint16_t { valid = 0, below = 0x0040, above = 0x0080, invalid = 0x00C0 };
enum class UnitCode : std::uint16_t {};  ///< 0 to 31

/// One measured value as a device publishes it, in four consecutive holding registers.
struct MeasurementChannel {
    std::int16_t startRegister = 0;  ///< 1000 to 32764
    float Value = 0;                 ///< the first two registers, in the base unit (Ohm, V, F, %)
    std::uint16_t ChannelStatusWord = 0;
    std::uint16_t DescriptionCode = 0;

    /// Wider than a register number, so that a start register at the end of the range does not wrap.
    constexpr int statusRegister() const { return startRegister + 2; }
    constexpr int descriptionRegister() const { return startRegister + 3; }

    constexpr TestState testState() const { return TestState(ChannelStatusWord & 0xC000U); }
    constexpr AlarmState alarmState() const { return AlarmState(ChannelStatusWord & 0x0700U); }
    constexpr RangeState rangeState() const { return RangeState(ChannelStatusWord & 0x00C0U); }
    constexpr UnitCode unitCode() const { return UnitCode(ChannelStatusWord & 0x001FU); }
};

/// Where the channel of a slot (0 to 15) starts.
constexpr std::int16_t channelStartRegister(int slot) {
    return static_cast<std::int16_t>(1000 + 4 * slot);
}

/// The fields in words, as the register tool shows them.
std::string_view toolText(TestState state);
std::string_view toolText(AlarmState state);
std::string_view toolText(RangeState state);
std::string_view toolText(UnitCode code);

/// The unit beside a monitor value. It differs from the tool's where the monitors scale: "kOhm" instead of
/// "Ohm".
std::string_view monitorText(UnitCode code);

}  // namespace vek
