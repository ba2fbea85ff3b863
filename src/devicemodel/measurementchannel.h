#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
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

/// A channel's status word, taken apart.
struct ChannelStatus {
    explicit constexpr ChannelStatus(std::uint16_t word)
        : test(TestState(word & 0xC000U)),
          alarm(AlarmState(word & 0x0700U)),
          range(RangeState(word & 0x00C0U)),
          unit(UnitCode(word & 0x001FU)) {}

    TestState test;
    AlarmState alarm;
    RangeState range;
    UnitCode unit;
};

/// One measured value as a device publishes it, in four consecutive holding registers. Nothing stands for
/// what could not be read.
struct MeasurementChannel {
    std::optional<float> Value;  ///< the first two registers, in the base unit (Ohm, V, F, %)
    std::optional<ChannelStatus> status;
    std::optional<std::uint16_t> DescriptionCode;
};

/// Where the channel of a slot (0 to 15) starts.
constexpr std::uint16_t channelStartRegister(std::size_t slot) {
    return static_cast<std::uint16_t>(1000 + 4 * slot);
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
