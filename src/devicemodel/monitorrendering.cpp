#include "devicemodel/monitorrendering.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "devicemodel/devicetypes.h"

namespace vek {
namespace {

struct AlarmColor {
    AlarmState state;
    Color color;
};

constexpr auto alarmColors = std::to_array<AlarmColor>({
    {AlarmState::none, colors::green},
    {AlarmState::preAlarm, colors::yellow},
    {AlarmState::deviceFault, colors::magenta},
    {AlarmState::warning, colors::cyan},
    {AlarmState::alarm, colors::red},
});

struct RangeCaption {
    RangeState state;
    std::string_view caption;
};

constexpr auto rangeCaptions = std::to_array<RangeCaption>({
    {RangeState::valid, " "},
    {RangeState::below, "<"},
    {RangeState::above, ">"},
    {RangeState::invalid, "-"},
});

/// How a slot turns a channel's value into the number it shows.
struct ValueFormat {
    double (*scale)(double);
    std::optional<int> decimals;  ///< nothing: as many as the number has, without grouping
    bool zeroIsNoValue = false;
};

constexpr double unscaled(double value) {
    return value;
}

// Divided, not multiplied by 0.001, which would move some exact halves off the middle.
constexpr ValueFormat kiloOhms{[](double ohms) { return ohms / 1000; }, 0, true};
constexpr ValueFormat microFarads{[](double farads) { return farads * 1e6; }, 3};
constexpr ValueFormat wholeVolts{unscaled, 0};
constexpr ValueFormat tenthVolts{unscaled, 1};
// Half a percent is taken off before rounding, in the direction of zero: that drops the fraction.
constexpr ValueFormat wholePercent{[](double percent) { return std::trunc(percent); }, 0};
constexpr ValueFormat plainNumber{unscaled, std::nullopt};

/// For each slot its format, by SlotFormats: whole volts, tenths of the mains, tenths of a string.
constexpr std::array<std::array<ValueFormat, static_cast<std::size_t>(SlotFormats::count)>, 8> slotFormats = {
    {
        /* 0 */ {{kiloOhms, kiloOhms, kiloOhms}},
        /* 1 */ {{kiloOhms, tenthVolts, kiloOhms}},
        /* 2 */ {{wholeVolts, tenthVolts, tenthVolts}},
        /* 3 */ {{microFarads, microFarads, microFarads}},
        /* 4 */ {{wholeVolts, tenthVolts, tenthVolts}},
        /* 5 */ {{wholeVolts, tenthVolts, tenthVolts}},
        /* 6 */ {{wholePercent, wholePercent, wholePercent}},
        /* 7 */ {{kiloOhms, tenthVolts, kiloOhms}},
    }};

static_assert(std::ranges::all_of(slotFormats,
                                  [](const auto& slot) {
                                      return std::ranges::all_of(slot, [](const ValueFormat& format) {
                                          return format.scale != nullptr;
                                      });
                                  }),
              "a column lacks its format");

const ValueFormat& formatOf(std::size_t slot, std::uint8_t deviceType) {
    const auto column = static_cast<std::size_t>(deviceTypeFacts(deviceType).slotFormats);
    return slot < slotFormats.size() ? slotFormats.at(slot).at(column) : plainNumber;
}

/// Halves away from zero.
double roundedTo(int decimals, double value) {
    const double unit = std::pow(10.0, decimals);
    return std::round(value * unit) / unit;
}

std::optional<double> numberIn(const ValueFormat& format, float value) {
    if (!std::isfinite(value) || (format.zeroIsNoValue && value == 0.0F)) {
        return std::nullopt;
    }
    const double number = format.scale(static_cast<double>(value));
    return format.decimals ? roundedTo(*format.decimals, number) : number;
}

}  // namespace

std::optional<Color> alarmColor(AlarmState state) {
    const auto* row = std::ranges::find(alarmColors, state, &AlarmColor::state);
    return row == alarmColors.end() ? std::nullopt : std::optional(row->color);
}

TestColors testColors(TestState state) {
    return {.internal = state == TestState::internal ? colors::red : colors::green,
            .external = state == TestState::external ? colors::red : colors::green};
}

std::string_view rangeCaption(RangeState state) {
    const auto* row = std::ranges::find(rangeCaptions, state, &RangeCaption::state);
    return row == rangeCaptions.end() ? " " : row->caption;
}

std::optional<double> channelNumber(std::size_t slot, std::uint8_t deviceType, float value) {
    return numberIn(formatOf(slot, deviceType), value);
}

std::string channelValueText(std::size_t slot, std::uint8_t deviceType, float value,
                             const NumberLocale& locale) {
    const ValueFormat& format = formatOf(slot, deviceType);
    const std::optional<double> number = numberIn(format, value);
    if (!number) {
        return noValueText;
    }
    return format.decimals ? locale.fixed(*number, *format.decimals) : locale.plain(value);
}

}  // namespace vek
