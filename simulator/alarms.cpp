#include "simulator/alarms.h"

#include <cmath>

namespace vek::sim {
namespace {

using enum Quantity;

constexpr double kiloOhm = 1000.0;

bool isBelow(const ParameterSet& parameters, Parameter threshold, double value) {
    const auto limit = parameters.value(threshold);
    return limit.has_value() && parameters.isInUse(threshold) && value < *limit;
}

bool isAbove(const ParameterSet& parameters, Parameter threshold, double value) {
    const auto limit = parameters.value(threshold);
    return limit.has_value() && parameters.isInUse(threshold) && value > *limit;
}

bool insulationWarning(const Measurement& m, const ParameterSet& p, bool) {
    return isBelow(p, Parameter::InsulationWarning, m[Insulation] / kiloOhm);
}

bool insulationAlarm(const Measurement& m, const ParameterSet& p, bool) {
    return isBelow(p, Parameter::InsulationAlarm, m[Insulation] / kiloOhm);
}

bool impedanceWarning(const Measurement& m, const ParameterSet& p, bool) {
    return isBelow(p, Parameter::ImpedanceWarning, m[Impedance] / kiloOhm);
}

bool impedanceAlarm(const Measurement& m, const ParameterSet& p, bool) {
    return isBelow(p, Parameter::ImpedanceAlarm, m[Impedance] / kiloOhm);
}

template <Quantity quantity>
bool undervoltage(const Measurement& m, const ParameterSet& p, bool) {
    return isBelow(p, Parameter::Undervoltage, m[quantity]);
}

template <Quantity quantity>
bool overvoltage(const Measurement& m, const ParameterSet& p, bool) {
    return isAbove(p, Parameter::Overvoltage, m[quantity]);
}

bool batteryTooHigh(const Measurement& m, const ParameterSet& p, bool) {
    return isAbove(p, Parameter::BatteryHigh, m[Voltage]);
}

bool batteryTooLow(const Measurement& m, const ParameterSet& p, bool) {
    return isBelow(p, Parameter::BatteryLow, m[Voltage]);
}

// A cross fault shows in poles that stand unequally against earth; the lower value is where it is over again.
bool crossFault(const Measurement& m, const ParameterSet& p, bool active) {
    const double asymmetry = std::abs(m[VoltagePlus] + m[VoltageMinus]);
    return isAbove(p, active ? Parameter::CrossFaultLow : Parameter::CrossFaultHigh, asymmetry);
}

enum Description : std::uint16_t {
    InsulationFault = 71,
    UndervoltageText = 77,
    OvervoltageText = 78,
    AsymmetryText = 81,
    ImpedanceFault = 86,
};

struct AlarmRow {
    Quantity shownAt;
    Quantity alsoShownAt;
    std::uint16_t state;
    std::uint16_t description;
    bool (*condition)(const Measurement&, const ParameterSet&, bool active);
};

// In the order of AlarmId. Of several alarms of one channel the later row wins.
constexpr std::array<AlarmRow, 11> alarmRows{{
    {Insulation, None, preAlarm, InsulationFault, insulationWarning},
    {Insulation, None, alarm, InsulationFault, insulationAlarm},
    {Impedance, None, preAlarm, ImpedanceFault, impedanceWarning},
    {Impedance, None, alarm, ImpedanceFault, impedanceAlarm},
    {Voltage, None, alarm, UndervoltageText, undervoltage<Voltage>},
    {Voltage, None, alarm, OvervoltageText, overvoltage<Voltage>},
    {RmsVoltage, None, alarm, UndervoltageText, undervoltage<RmsVoltage>},
    {RmsVoltage, None, alarm, OvervoltageText, overvoltage<RmsVoltage>},
    {Voltage, None, alarm, AsymmetryText, crossFault},
    {Voltage, VoltagePlus, alarm, UndervoltageText, batteryTooLow},
    {Voltage, VoltagePlus, alarm, OvervoltageText, batteryTooHigh},
}};

}  // namespace

void DelayedAlarm::update(bool condition, Time now, const Timing& timing) {
    if (condition != condition_) {
        condition_ = condition;
        since_ = now;
    }
    if (condition == active_ || (active_ && timing.latches)) {
        return;
    }
    if (now - since_ >= (condition ? timing.response : timing.release)) {
        active_ = condition;
    }
}

void Alarms::update(const Measurement& measurement, const ParameterSet& parameters, Time now) {
    const DelayedAlarm::Timing timing{
        std::chrono::seconds(parameters.value(Parameter::ResponseDelay).value_or(0)),
        std::chrono::seconds(parameters.value(Parameter::ReleaseDelay).value_or(0)),
        parameters.isOn(Parameter::FaultMemory, false),
    };
    static_assert(alarmCount == alarmRows.size());
    for (std::size_t i = 0; i < alarmCount; ++i) {
        alarms_[i].update(alarmRows[i].condition(measurement, parameters, alarms_[i].isActive()), now,
                          timing);
    }
}

void Alarms::clear() {
    for (DelayedAlarm& each : alarms_) {
        each.clear();
    }
}

AlarmDisplay Alarms::of(Quantity quantity) const {
    AlarmDisplay display;
    for (std::size_t i = 0; i < alarmCount; ++i) {
        const AlarmRow& row = alarmRows[i];
        if (alarms_[i].isActive() && (row.shownAt == quantity || row.alsoShownAt == quantity)) {
            display = {row.state, row.description};
        }
    }
    return display;
}

}  // namespace vek::sim
