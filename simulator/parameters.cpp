#include "simulator/parameters.h"

#include <algorithm>
#include <array>

namespace vek::sim {
namespace {

using enum Parameter;

template <std::size_t N>
using Intervals = std::array<Interval, N>;

constexpr Intervals<1> flag{{{0, 1}}};
constexpr Intervals<1> zeroToTwo{{{0, 2}}};
constexpr Intervals<1> zeroToFour{{{0, 4}}};
constexpr Intervals<1> delay{{{0, 99}}};
constexpr Intervals<1> startDelay{{{0, 10}}};
constexpr Intervals<2> addresses{{{0, 0}, {3, 90}}};
constexpr Intervals<1> baudCodes{{{0, 8}}};
constexpr Intervals<2> frequencies{{{500, 500}, {600, 600}}};
constexpr Intervals<6> capacitances{{{1, 1}, {10, 10}, {20, 20}, {30, 30}, {40, 40}, {50, 50}}};
constexpr std::uint16_t relayMask = 0x0FFE;
constexpr Intervals<1> relayAlarms{{{0, relayMask}}};

template <std::uint16_t Min, std::uint16_t Max>
constexpr Intervals<1> range{{{Min, Max}}};

constexpr TypeSet impedanceTypes = typeSet(1, 2);
constexpr TypeSet batteryType = typeSet(9);
constexpr TypeSet voltageTypes = allTypes & ~batteryType;

constexpr ParameterRow rows[] = {
    {ImpedanceWarning, 3001, impedanceTypes, range<2, 500>, 50},
    {InsulationWarning, 3001, batteryType, range<11, 5000>, 100},
    {ImpedanceAlarm, 3003, impedanceTypes, range<1, 495>, 25},
    {InsulationAlarm, 3003, batteryType, range<10, 4950>, 50},
    {InsulationWarningOn, 3004, impedanceTypes, flag, 1},
    {InsulationWarning, 3005, typeSet(1, 2, 6), range<2, 990>, 100},
    {InsulationWarning, 3005, typeSet(3, 4, 5), range<2, 500>, 100},
    {InsulationWarning, 3005, typeSet(7), range<11, 500>, 100},
    {InsulationWarning, 3005, typeSet(8), range<2, 100>, 50},
    {InsulationWarning, 3005, typeSet(10), range<6, 200>, 100},
    {BatteryHigh, 3005, batteryType, range<4, 500>, 250},
    {InsulationAlarmOn, 3006, impedanceTypes, flag, 1},
    {InsulationAlarm, 3007, typeSet(1, 2, 6), range<1, 980>, 50},
    {InsulationAlarm, 3007, typeSet(3, 4, 5), range<1, 490>, 50},
    {InsulationAlarm, 3007, typeSet(7), range<10, 490>, 50},
    {InsulationAlarm, 3007, typeSet(8), range<1, 95>, 25},
    {InsulationAlarm, 3007, typeSet(10), range<5, 195>, 50},
    {BatteryLow, 3007, batteryType, range<3, 495>, 180},
    {UndervoltageOn, 3008, voltageTypes, flag, 1},
    {Undervoltage, 3009, typeSet(1, 2, 6, 10), range<10, 499>, 180},
    {Undervoltage, 3009, typeSet(3, 4, 5), range<30, 1140>, 320},
    {Undervoltage, 3009, typeSet(7), range<30, 1090>, 550},
    {Undervoltage, 3009, typeSet(8), range<8, 143>, 88},
    {CrossFaultHigh, 3009, batteryType, range<4, 500>, 120},
    {OvervoltageOn, 3010, voltageTypes, flag, 1},
    {Overvoltage, 3011, typeSet(1, 2, 6, 10), range<11, 500>, 260},
    {Overvoltage, 3011, typeSet(3, 4, 5), range<31, 1150>, 460},
    {Overvoltage, 3011, typeSet(7), range<31, 1100>, 790},
    {Overvoltage, 3011, typeSet(8), range<9, 144>, 132},
    {CrossFaultLow, 3011, batteryType, range<3, 495>, 60},
    {FaultMemory, 3012, allTypes, flag, 0},
    {Relay1Mode, 3013, allTypes, flag, 0},
    {Relay2Mode, 3014, allTypes, flag, 0},
    {Address, 3015, allTypes, addresses, 3},
    {BaudCode, 3016, allTypes, baudCodes, 4},
    {Parity, 3017, allTypes, zeroToTwo, evenParity},
    {StartDelay, 3018, allTypes, startDelay, 0},
    {ResponseDelay, 3019, allTypes, delay, 0},
    {ReleaseDelay, 3020, allTypes, delay, 0},
    {SelfTestInterval, 3021, allTypes, zeroToTwo, 2},
    {ImpedanceOn, 3022, impedanceTypes, flag, 1},
    {MainsFrequency, 3023, impedanceTypes, frequencies, 500},
    {SystemCapacitance, 3023, typeSet(8), capacitances, 10},
    {GeneratorMode, 3023, typeSet(10), flag, 0},
    {MainsSupervision, 3024, allTypes & ~typeSet(8), flag, 1},
    {StartWithTest, 3025, allTypes & ~typeSet(5), flag, 0},
    {StopMode, 3026, allTypes, flag, 0},
    {Relay1Alarms, 3027, allTypes, relayAlarms, 0x000E, relayMask},
    {Relay2Alarms, 3028, allTypes, relayAlarms, 0x0032, relayMask},
    {PulsePeriod, 3029, batteryType, zeroToFour, 0},
    {ResponseDelay2, 3030, batteryType, delay, 0},
};

constexpr TypeSet typesWith(Parameter parameter) {
    unsigned types = 0;
    for (const ParameterRow& row : rows) {
        types |= row.parameter == parameter ? row.types : 0U;
    }
    return static_cast<TypeSet>(types);
}
static_assert((typesWith(InsulationWarning) & typesWith(InsulationAlarm)) == allTypes,
              "a type lacks its ranges");
static_assert((typesWith(Undervoltage) & typesWith(Overvoltage)) == voltageTypes, "a type lacks its ranges");

constexpr int bitsWithoutParity = 10;
constexpr int kdlBaudRate = 9600;
// By the code of the parameter.
constexpr std::array<int, 9> baudRates{0, 1200, 2400, 4800, 9600, 19200, 38400, 57600, 115200};

// The flag that a parameter depends on.
struct FlagRow {
    Parameter parameter;
    Parameter flag;
};
constexpr std::array<FlagRow, 7> flags{{{ImpedanceWarning, ImpedanceOn},
                                        {ImpedanceAlarm, ImpedanceOn},
                                        {MainsFrequency, ImpedanceOn},
                                        {InsulationWarning, InsulationWarningOn},
                                        {InsulationAlarm, InsulationAlarmOn},
                                        {Undervoltage, UndervoltageOn},
                                        {Overvoltage, OvervoltageOn}}};

std::optional<Parameter> flagOf(Parameter parameter) {
    const auto* found = std::ranges::find(flags, parameter, &FlagRow::parameter);
    return found == flags.end() ? std::nullopt : std::optional(found->flag);
}

bool belongsToInterface(Parameter parameter) {
    return parameter == Address || parameter == BaudCode || parameter == Parity;
}

}  // namespace

ParameterSet::ParameterSet(const DeviceType& type) {
    for (const ParameterRow& row : rows) {
        if ((row.types & typeSet(type.number)) != 0) {
            entries_.push_back({&row, row.factory});
        }
    }
}

const ParameterSet::Entry* ParameterSet::find(std::uint16_t reg) const {
    const auto found = std::ranges::find_if(entries_, [reg](const Entry& e) { return e.row->reg == reg; });
    return found == entries_.end() ? nullptr : &*found;
}

const ParameterSet::Entry* ParameterSet::find(Parameter parameter) const {
    const auto found =
        std::ranges::find_if(entries_, [parameter](const Entry& e) { return e.row->parameter == parameter; });
    return found == entries_.end() ? nullptr : &*found;
}

std::optional<std::uint16_t> ParameterSet::read(std::uint16_t reg) const {
    const Entry* entry = find(reg);
    return entry == nullptr ? std::nullopt : std::optional(entry->value);
}

bool ParameterSet::allows(const Entry* entry, std::uint16_t value) {
    return entry != nullptr && (value & ~entry->row->mask) == 0 &&
           std::ranges::any_of(entry->row->allowed,
                               [value](const Interval& i) { return i.min <= value && value <= i.max; });
}

bool ParameterSet::accepts(std::uint16_t reg, std::uint16_t value) const {
    return allows(find(reg), value);
}

bool ParameterSet::accepts(Parameter parameter, std::uint16_t value) const {
    return allows(find(parameter), value);
}

void ParameterSet::store(std::uint16_t reg, std::uint16_t value) {
    for (Entry& entry : entries_) {
        if (entry.row->reg == reg) {
            entry.value = value;
        }
    }
}

std::optional<std::uint16_t> ParameterSet::value(Parameter parameter) const {
    const Entry* entry = find(parameter);
    return entry == nullptr ? std::nullopt : std::optional(entry->value);
}

bool ParameterSet::isOn(Parameter parameter, bool otherwise) const {
    return value(parameter).value_or(otherwise ? 1 : 0) != 0;
}

bool ParameterSet::isInUse(Parameter parameter) const {
    // Something has to watch the installation: the resistance can be left out only while the impedance is
    // measured.
    const bool indispensable =
        (parameter == InsulationWarning || parameter == InsulationAlarm) && !isOn(ImpedanceOn, false);
    const std::optional<Parameter> own = flagOf(parameter);
    return indispensable || !own.has_value() || isOn(*own, true);
}

bool ParameterSet::setInUse(Parameter parameter, bool inUse) {
    const std::optional<Parameter> own = flagOf(parameter);
    if (!own.has_value() || find(*own) == nullptr) {
        return false;
    }
    set(*own, inUse ? 1 : 0);
    return true;
}

void ParameterSet::set(Parameter parameter, std::uint16_t value) {
    for (Entry& entry : entries_) {
        if (entry.row->parameter == parameter) {
            entry.value = value;
        }
    }
}

void ParameterSet::restoreFactory(FactoryReset reset) {
    for (Entry& entry : entries_) {
        if (reset == FactoryReset::All || !belongsToInterface(entry.row->parameter)) {
            entry.value = entry.row->factory;
        }
    }
}

InterfaceSettings ParameterSet::busSettings() const {
    const std::uint16_t address = value(Address).value_or(0);
    const std::uint16_t code = value(BaudCode).value_or(kdlBaudCode);
    if (code == kdlBaudCode) {
        return {Protocol::Kdl, address, kdlBaudRate, bitsWithoutParity};
    }
    // Parity adds a bit to the eight data bits here; on the KDL bus it takes the place of one.
    const int parityBits = value(Parity).value_or(0) != 0 ? 1 : 0;
    return {Protocol::Modbus, address, baudRates.at(code), bitsWithoutParity + parityBits};
}

std::optional<std::uint16_t> baudCode(int baudRate) {
    const auto* found = std::ranges::find(baudRates, baudRate);
    if (baudRate == 0 || found == baudRates.end()) {
        return std::nullopt;
    }
    return static_cast<std::uint16_t>(found - baudRates.begin());
}

}  // namespace vek::sim
