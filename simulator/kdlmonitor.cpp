#include "simulator/kdlmonitor.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <span>
#include <string_view>

namespace vek::sim {
namespace {

using enum Quantity;

constexpr std::string_view nothing = "no 0";
constexpr std::string_view endOfList = "stop 0";

struct Row {
    Quantity quantity = None;  // the operating value
    bool (*alarmed)(const Device&) = nullptr;
    std::string_view alarmText{};  // stands before the value, or alone in a row without a value
};

template <AlarmId... ids>
bool active(const Device& device) {
    return (device.isAlarmActive(ids) || ...);
}

template <bool Conditions::*flag>
bool reported(const Device& device) {
    return device.conditions().*flag;
}

constexpr Row insulationWarning{Insulation, active<AlarmId::InsulationWarning>, "Re/kO"};
constexpr Row insulationAlarm{Insulation, active<AlarmId::InsulationAlarm>, "Re/kO"};
constexpr Row impedanceWarning{Impedance, active<AlarmId::ImpedanceWarning>, "Ze/kO"};
constexpr Row impedanceAlarm{Impedance, active<AlarmId::ImpedanceAlarm>, "Ze/kO"};
constexpr Row undervoltage{Voltage, active<AlarmId::Undervoltage, AlarmId::BatteryLow>, "Uu/dV"};
constexpr Row overvoltage{Voltage, active<AlarmId::Overvoltage, AlarmId::BatteryHigh>, "Uo/dV"};
constexpr Row rmsOvervoltage{RmsVoltage, active<AlarmId::RmsOvervoltage>, "Uo/dV"};
constexpr Row earthConnection{None, reported<&Conditions::earthWarning>, "31AER 102"};
constexpr Row mainsConnection{None, reported<&Conditions::warning>, "31ANZ 101"};
constexpr Row faultyDevice{None, reported<&Conditions::deviceFault>, "35FDE 129"};
constexpr Row faultPosition{FaultPosition};
constexpr Row capacitance{Capacitance};
constexpr Row updateCounter{UpdateCounter};
constexpr Row voltagePlus{VoltagePlus};
constexpr Row voltageMinus{VoltageMinus};
constexpr Row displacement{DisplacementInsulation};
constexpr Row unused{};

// The last rows differ from type to type, and so does the third.
constexpr std::array impedanceRows{insulationWarning, insulationAlarm, impedanceAlarm,   undervoltage,
                                   overvoltage,       earthConnection, mainsConnection,  faultyDevice,
                                   faultPosition,     capacitance,     impedanceWarning, updateCounter,
                                   voltagePlus,       voltageMinus,    displacement};
constexpr std::array ordinaryRows{insulationWarning, insulationAlarm, capacitance,     undervoltage,
                                  overvoltage,       earthConnection, mainsConnection, faultyDevice,
                                  faultPosition,     voltagePlus,     voltageMinus,    updateCounter,
                                  displacement};
constexpr std::array rmsRows{insulationWarning, insulationAlarm, rmsOvervoltage,  undervoltage,
                             overvoltage,       earthConnection, mainsConnection, faultyDevice,
                             faultPosition,     voltagePlus,     voltageMinus,    updateCounter};
constexpr std::array batteryRows{insulationWarning, insulationAlarm, capacitance,     undervoltage,
                                 overvoltage,       earthConnection, mainsConnection, faultyDevice,
                                 faultPosition,     voltagePlus,     voltageMinus,    updateCounter};
constexpr std::array generatorRows{insulationWarning, insulationAlarm, unused,          undervoltage,
                                   overvoltage,       earthConnection, mainsConnection, faultyDevice,
                                   faultPosition,     capacitance,     unused,          updateCounter,
                                   voltagePlus,       voltageMinus};

struct Layout {
    TypeSet types;
    std::span<const Row> rows;
};
constexpr std::array<Layout, 5> layouts{{{typeSet(1, 2), impedanceRows},
                                         {typeSet(3, 4, 5, 6, 7), ordinaryRows},
                                         {typeSet(8), rmsRows},
                                         {typeSet(9), batteryRows},
                                         {typeSet(10), generatorRows}}};

constexpr TypeSet coveredTypes() {
    unsigned covered = 0;
    for (const Layout& layout : layouts) {
        covered |= layout.types;
    }
    return static_cast<TypeSet>(covered);
}
static_assert(coveredTypes() == allTypes, "a type lacks its layout");

std::span<const Row> rowsOf(const Device& device) {
    const TypeSet type = typeSet(device.type().number);
    return std::ranges::find_if(layouts, [type](const Layout& l) { return (l.types & type) != 0; })->rows;
}

struct ValueForm {
    Quantity quantity;
    std::string_view key;
    double perUnit;  // what is sent for one ohm, volt or count
};
constexpr std::array<ValueForm, 8> valueForms{{{Insulation, "Re/kO", 1e-3},
                                               {Impedance, "Ze/kO", 1e-3},
                                               {Voltage, "U/dV", 10},
                                               {RmsVoltage, "U/dV", 10},
                                               {VoltagePlus, "U/dV", 10},
                                               {VoltageMinus, "U/dV", 10},
                                               {DisplacementInsulation, "Re/kO", 1e-3},
                                               {UpdateCounter, "dig", 1}}};

std::string join(std::string_view key, std::string_view value) {
    return std::string(key).append(" ").append(value);
}

std::string numberText(const Channel& channel, double perUnit) {
    const std::uint16_t range = channel.status & rangeMask;
    const std::string_view mark = range == rangeGreater ? ">" : range == rangeSmaller ? "<" : "";
    return std::string(mark) + std::to_string(std::lround(static_cast<double>(channel.value) * perUnit));
}

// A side, which is part of the key, and whole percent.
std::string positionText(const Channel& channel) {
    const long percent = std::lround(std::trunc(channel.value));
    return (percent < 0 ? "FL" : "FL ") + std::to_string(percent) + " %";
}

std::string capacitanceText(const Channel& channel) {
    if ((channel.status & rangeMask) == rangeGreater) {
        return "peak 0";
    }
    const bool small = channel.value < 1e-6F;
    return join(small ? "Ce/nF" : "Ce/uF", numberText(channel, small ? 1e9 : 1e6));
}

std::string valueText(const Device& device, Quantity quantity) {
    const std::optional<Channel> channel = device.channelOf(quantity);
    if (!channel.has_value() || (channel->status & rangeMask) == rangeInvalid) {
        return std::string(nothing);
    }
    if (quantity == FaultPosition) {
        return positionText(*channel);
    }
    if (quantity == Capacitance) {
        return capacitanceText(*channel);
    }
    const ValueForm& form = *std::ranges::find(valueForms, quantity, &ValueForm::quantity);
    return join(form.key, numberText(*channel, form.perUnit));
}

std::string alarmText(const Device& device, const Row& row) {
    const std::optional<Channel> channel = device.channelOf(row.quantity);
    if (!channel.has_value()) {
        return std::string(row.alarmText);
    }
    const ValueForm& form = *std::ranges::find(valueForms, row.quantity, &ValueForm::quantity);
    const bool known = (channel->status & rangeMask) != rangeInvalid;
    return join(row.alarmText, known ? numberText(*channel, form.perUnit) : "---");
}

bool isAlarmed(const Device& device, const Row& row) {
    return row.alarmed != nullptr && row.alarmed(device);
}

std::string countText(std::size_t count) {
    return "n= " + std::to_string(count);
}

}  // namespace

std::string kdlAlarmCount(const Device& device) {
    if (const std::uint16_t test = device.testState(); test != 0) {
        return test == internalTest ? "n=/TI" : "n=/TE";
    }
    const auto count =
        std::ranges::count_if(rowsOf(device), [&](const Row& row) { return isAlarmed(device, row); });
    return countText(static_cast<std::size_t>(count));
}

std::string kdlAlarm(const Device& device, std::size_t row) {
    const std::span<const Row> rows = rowsOf(device);
    const bool alarmed = row >= 1 && row <= rows.size() && isAlarmed(device, rows[row - 1]);
    return alarmed ? alarmText(device, rows[row - 1]) : std::string(nothing);
}

std::string kdlValueCount(const Device& device) {
    return countText(rowsOf(device).size());
}

std::string kdlValue(const Device& device, std::size_t row) {
    const std::span<const Row> rows = rowsOf(device);
    return row >= 1 && row <= rows.size() ? valueText(device, rows[row - 1].quantity)
                                          : std::string(endOfList);
}

}  // namespace vek::sim
