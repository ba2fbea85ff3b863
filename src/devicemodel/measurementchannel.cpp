#include "devicemodel/measurementchannel.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace vek {
namespace {

template <typename State>
struct StateText {
    State state;
    std::string_view text;
};

constexpr std::string_view unnamedState = "x";

constexpr auto testTexts = std::to_array<StateText<TestState>>({
    {TestState::idle, "-"},
    {TestState::internal, "Test intern"},
    {TestState::external, "Test extern"},
});

constexpr auto alarmTexts = std::to_array<StateText<AlarmState>>({
    {AlarmState::none, "-"},
    {AlarmState::preAlarm, "Vorwarnung"},
    {AlarmState::deviceFault, "Gerätefehler"},
    {AlarmState::warning, "Warnung"},
    {AlarmState::alarm, "Alarm"},
});

constexpr auto rangeTexts = std::to_array<StateText<RangeState>>({
    {RangeState::valid, "gültig"},
    {RangeState::below, "kleiner"},
    {RangeState::above, "größer"},
    {RangeState::invalid, "ungültig"},
});

template <typename Table, typename State>
std::string_view textOf(const Table& table, State state) {
    const auto* row = std::ranges::find(table, state, &StateText<State>::state);
    return row == table.end() ? unnamedState : row->text;
}

struct UnitTexts {
    std::string_view tool;
    std::string_view monitor;
};

constexpr UnitTexts noUnit{" ", " "};

constexpr auto unitTexts = std::to_array<UnitTexts>({
    /*  0 */ noUnit,
    /*  1 */ {"-", "-"},
    /*  2 */ {"Ohm", "kOhm"},
    /*  3 */ {"A", "A"},
    /*  4 */ {"V", "V"},
    /*  5 */ {"%", "%"},
    /*  6 */ {"Hz", "Hz"},
    /*  7 */ {"Baud", "Baud"},
    /*  8 */ {"µF", "µF"},
    /*  9 */ {"H", "H"},
    /* 10 */ {"°C", "°C"},
    /* 11 */ {"°F", "°F"},
    /* 12 */ {"s", "s"},
    /* 13 */ {"m", "m"},
    /* 14 */ {"h", "h"},
    /* 15 */ {"dd", "dd"},
    /* 16 */ {"mm", "mm"},
});

const UnitTexts& textsOf(UnitCode code) {
    const auto index = static_cast<std::size_t>(code);
    return index < unitTexts.size() ? unitTexts[index] : noUnit;
}

}  // namespace

std::string_view toolText(TestState state) {
    return textOf(testTexts, state);
}

std::string_view toolText(AlarmState state) {
    return textOf(alarmTexts, state);
}

std::string_view toolText(RangeState state) {
    return textOf(rangeTexts, state);
}

std::string_view toolText(UnitCode code) {
    return textsOf(code).tool;
}

std::string_view monitorText(UnitCode code) {
    return textsOf(code).monitor;
}

}  // namespace vek
