#include "simulator/kdlparameters.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace vek::sim {
namespace {

using enum Parameter;

constexpr TypeSet impedanceTypes = typeSet(1, 2);
constexpr TypeSet batteryType = typeSet(9);
constexpr TypeSet voltageTypes = allTypes & ~batteryType;

// What a written value does to the flag that the parameter depends on.
enum class Flag : std::uint8_t { Stays, Follows };

struct Row {
    std::uint16_t number;
    TypeSet types;
    Parameter parameter;
    std::string_view key;
    Flag flag = Flag::Stays;
};

constexpr Row rows[] = {
    {1, allTypes, InsulationWarning, "Re/kO", Flag::Follows},
    {2, allTypes, InsulationAlarm, "Re/kO", Flag::Follows},
    {3, impedanceTypes, ImpedanceAlarm, "Ze/kO"},
    {3, typeSet(8), SystemCapacitance, "Ce/uF"},
    {3, batteryType, BatteryHigh, "Uo/V"},
    {4, batteryType, BatteryLow, "Uu/V"},
    {5, batteryType, CrossFaultHigh, "Uo/V"},
    {6, batteryType, CrossFaultLow, "Uu/V"},
    {4, voltageTypes, Undervoltage, "Uu/V", Flag::Follows},
    {5, voltageTypes, Overvoltage, "Uo/V", Flag::Follows},
    {6, voltageTypes, SelfTestInterval, "T/h"},
    {7, allTypes & ~typeSet(8), MainsSupervision, "dig"},
    {8, impedanceTypes, MainsFrequency, "FndHz", Flag::Follows},
    {8, batteryType, PulsePeriod, "dig"},
    {8, typeSet(10), GeneratorMode, "dig"},
    {9, allTypes, StartDelay, "Tvz/s"},
    {10, allTypes, ResponseDelay, "Tvz/s"},
    {11, allTypes, ReleaseDelay, "Tvz/s"},
    {12, impedanceTypes, ImpedanceWarning, "Ze/kO"},
    {12, batteryType, SelfTestInterval, "T/h"},
    {13, allTypes, StopMode, "STDBY"},
    {14, allTypes, Address, "Adr="},
    {15, allTypes & ~typeSet(6), BaudCode, "dig"},
};

const Row* findRow(const DeviceType& type, std::uint16_t number) {
    const auto* found = std::ranges::find_if(rows, [&](const Row& row) {
        return row.number == number && (row.types & typeSet(type.number)) != 0;
    });
    return found == std::end(rows) ? nullptr : found;
}

// The bus counts the hours between two self tests, by the code of the parameter.
constexpr std::array<std::uint16_t, 3> selfTestHours{0, 1, 24};

std::uint16_t toBus(Parameter parameter, std::uint16_t value) {
    return parameter == SelfTestInterval ? selfTestHours.at(value) : value;
}

// A value that there is no code for becomes one that no device accepts.
std::uint16_t fromBus(Parameter parameter, std::uint16_t value) {
    return parameter == SelfTestInterval
               ? static_cast<std::uint16_t>(std::ranges::find(selfTestHours, value) - selfTestHours.begin())
               : value;
}

}  // namespace

bool hasKdlParameter(const DeviceType& type, std::uint16_t number) {
    return findRow(type, number) != nullptr;
}

std::optional<std::string> kdlParameter(const Device& device, std::uint16_t number) {
    const Row* row = findRow(device.type(), number);
    if (row == nullptr) {
        return std::nullopt;
    }
    const ParameterSet& parameters = device.parameters();
    if (!parameters.isInUse(row->parameter)) {
        return "off";
    }
    const std::uint16_t value = parameters.value(row->parameter).value_or(0);
    return std::string(row->key) + " " + std::to_string(toBus(row->parameter, value));
}

bool writeKdlParameter(Device& device, std::uint16_t number, std::uint16_t value) {
    const Row* row = findRow(device.type(), number);
    if (row == nullptr) {
        return false;
    }
    ParameterSet& parameters = device.parameters();
    const bool follows = row->flag == Flag::Follows;
    if (follows && value == 0 && parameters.setInUse(row->parameter, false)) {
        return true;
    }
    const std::uint16_t code = fromBus(row->parameter, value);
    if (!parameters.accepts(row->parameter, code) || !(follows || parameters.isInUse(row->parameter))) {
        return false;
    }
    parameters.set(row->parameter, code);
    if (follows) {
        parameters.setInUse(row->parameter, true);
    }
    // There is no parameter here that could tell the parity of the bus to which it goes over.
    if (row->parameter == BaudCode && code != kdlBaudCode) {
        parameters.set(Parity, evenParity);
    }
    return true;
}

}  // namespace vek::sim
