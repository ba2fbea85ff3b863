#include "simulator/device.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace vek::sim {
namespace {

using enum Quantity;
using namespace std::chrono_literals;

constexpr int batteryType = 9;
constexpr Time measuringCycle = 500ms;
constexpr Time selfTestDuration = 5s;
constexpr Time calibrationDuration = 10s;
constexpr double counterModulus = 65536.0;

constexpr double smallestResistance = 1000.0;
// A fault can be placed only while it stands out from the healthy leakage: below this part of the measuring
// range.
constexpr double placeablePart = 0.25;

constexpr std::uint16_t unitNone = 0;
constexpr std::uint16_t unitNumber = 1;
constexpr std::uint16_t unitOhm = 2;
constexpr std::uint16_t unitVolt = 4;
constexpr std::uint16_t unitPercent = 5;
constexpr std::uint16_t unitFarad = 8;

// Where a condition shows; a warning gives way to an alarm there, a device fault does not.
struct ConditionRow {
    bool Conditions::*flag;
    Quantity shownAt;
    AlarmDisplay display;
};
constexpr std::array<ConditionRow, 4> conditionRows{{
    {&Conditions::warning, Voltage, {warning, 101}},
    {&Conditions::earthWarning, Insulation, {warning, 102}},
    {&Conditions::deviceFault, Insulation, {deviceFault, 115}},
    {&Conditions::openString, VoltagePlus, {alarm, 77}},
}};

struct QuantityRow {
    std::uint16_t unit;
    std::uint16_t description;
};

// In the order of Quantity.
constexpr std::array<QuantityRow, quantityCount> quantityRows{{
    {unitNone, 0},     // None
    {unitOhm, 71},     // Insulation
    {unitOhm, 86},     // Impedance
    {unitVolt, 76},    // Voltage
    {unitVolt, 76},    // RmsVoltage
    {unitFarad, 82},   // Capacitance
    {unitVolt, 76},    // VoltagePlus
    {unitVolt, 76},    // VoltageMinus
    {unitPercent, 1},  // FaultPosition
    {unitOhm, 71},     // DisplacementInsulation
    {unitNumber, 0},   // UpdateCounter
}};

bool isResistance(Quantity quantity) {
    return quantity == Insulation || quantity == Impedance || quantity == DisplacementInsulation;
}

// Seconds of the installation between two self tests, by the code of the parameter; 0 for none.
constexpr std::array<double, 3> selfTestIntervals{0.0, 3600.0, 24 * 3600.0};

}  // namespace

Device::Device(const DeviceOptions& options, Time start)
    : type_(*findDeviceType(options.type)),
      name_(options.name.empty() ? std::string(type_.articleName) : options.name),
      speed_(options.speed),
      parameters_(type_),
      installation_(type_, options.seed),
      battery_(options.type == batteryType ? options.battery : BatteryPlay()),
      conditions_(options.conditions),
      start_(start),
      now_(start),
      nextCycle_(start),
      selfTestEnd_(start),
      calibrationEnd_(start) {
    parameters_.set(Parameter::Address, options.address);
    parameters_.set(Parameter::BaudCode,
                    options.kdl ? kdlBaudCode : baudCode(options.baudRate).value_or(kdlBaudCode));
    parameters_.set(Parameter::Parity, options.parity);
    advance(start);
}

void Device::advance(Time now) {
    while (nextCycle_ <= now) {
        runCycle(nextCycle_);
        nextCycle_ += measuringCycle;
    }
    now_ = std::max(now_, now);
}

void Device::runCycle(Time now) {
    now_ = now;
    const double seconds = inSeconds(now - start_) * speed_;
    const double interval = selfTestIntervals.at(parameters_.value(Parameter::SelfTestInterval).value_or(0));
    if (interval > 0 && seconds - lastSelfTest_ >= interval) {
        startSelfTest();
    }
    if (!parameters_.isOn(Parameter::StopMode, false)) {
        measure(seconds);
        alarms_.update(measurement_, parameters_, now);
    }
}

void Device::measure(double seconds) {
    const InstallationState state = installation_.at(seconds);
    const double position = state.faultPosition();
    const double insulation = state.insulation();
    Measurement& m = measurement_;
    m[Insulation] = insulation;
    m[Impedance] = impedance(insulation, state.capacitance);
    m[Voltage] = state.supplyVoltage;
    m[RmsVoltage] = state.supplyVoltage * 1.01;
    m[Capacitance] = state.capacitance;
    // The two sides divide the supply voltage: the side with the fault comes close to earth.
    m[VoltagePlus] = state.supplyVoltage * (100.0 - position) / 200.0;
    m[VoltageMinus] = -state.supplyVoltage * (100.0 + position) / 200.0;
    m[FaultPosition] = position;
    m[DisplacementInsulation] = insulation * 1.03;
    m[UpdateCounter] = std::fmod(m[UpdateCounter] + 1.0, counterModulus);
    if (const BatteryScene* scene = battery_.at(seconds)) {
        measureBattery(*scene);
    }
    for (std::size_t i = 0; i < channelCount; ++i) {
        if (pins_[i].value.has_value() && type_.channels[i] != UpdateCounter) {
            m[type_.channels[i]] = static_cast<double>(*pins_[i].value);
        }
    }
}

void Device::measureBattery(const BatteryScene& scene) {
    Measurement& m = measurement_;
    m[Insulation] = scene.insulation;
    m[Capacitance] = scene.capacitance;
    m[VoltagePlus] = scene.voltagePlus;
    m[VoltageMinus] = scene.voltageMinus;
    m[Voltage] = scene.voltagePlus - scene.voltageMinus;
    m[FaultPosition] =
        std::clamp(-100.0 * (scene.voltagePlus + scene.voltageMinus) / m[Voltage], -100.0, 100.0);
    conditions_.openString = scene.open;
}

// Resistance and capacitance against earth in parallel, at the mains frequency.
double Device::impedance(double resistance, double capacitance) const {
    const double frequency = parameters_.value(Parameter::MainsFrequency).value_or(500) / 10.0;
    return 1.0 / std::hypot(1.0 / resistance, 2.0 * std::numbers::pi * frequency * capacitance);
}

SoftwareId Device::softwareId() const {
    return {type_.softwareId, 212, 2019, 11, 7, 105};
}

Channel Device::channel(std::size_t index) const {
    const Quantity quantity = type_.channels.at(index);
    const ChannelPin& pin = pins_.at(index);
    Channel channel;
    if (quantity != None) {
        const AlarmDisplay display = alarmDisplay(quantity);
        const QuantityRow& row = quantityRows.at(static_cast<std::size_t>(quantity));
        const std::uint16_t range = pin.value.has_value() ? rangeValid : rangeState(quantity);
        const double measured = std::min(measurement_[quantity], limitOf(quantity));
        channel.value =
            static_cast<float>(isResistance(quantity) ? std::max(measured, smallestResistance) : measured);
        channel.status = static_cast<std::uint16_t>(testState() | display.state | range | row.unit);
        channel.description = display.description != 0 ? display.description : row.description;
    }
    return {pin.value.value_or(channel.value), pin.status.value_or(channel.status),
            pin.description.value_or(channel.description)};
}

std::optional<Channel> Device::channelOf(Quantity quantity) const {
    const auto* found = std::ranges::find(type_.channels, quantity);
    if (quantity == None || found == type_.channels.end()) {
        return std::nullopt;
    }
    return channel(static_cast<std::size_t>(found - type_.channels.begin()));
}

AlarmDisplay Device::alarmDisplay(Quantity quantity) const {
    AlarmDisplay display = alarms_.of(quantity);
    for (const ConditionRow& row : conditionRows) {
        const bool shows = display.state == noAlarm || row.display.state == deviceFault;
        if (conditions_.*row.flag && row.shownAt == quantity && shows) {
            display = row.display;
        }
    }
    return display;
}

bool Device::isAlarmActive(AlarmId id) const {
    const bool ofInsulation = id == AlarmId::InsulationWarning || id == AlarmId::InsulationAlarm;
    return alarms_.isActive(id) && !(ofInsulation && conditions_.deviceFault);
}

std::uint16_t Device::testState() const {
    if (now_ < selfTestEnd_) {
        return internalTest;
    }
    return conditions_.externalTest ? externalTest : std::uint16_t{0};
}

double Device::limitOf(Quantity quantity) const {
    if (isResistance(quantity)) {
        return type_.insulationLimit;
    }
    return quantity == Capacitance ? type_.capacitanceLimit : HUGE_VAL;
}

std::uint16_t Device::rangeState(Quantity quantity) const {
    const bool insulationUnknown = conditions_.deviceFault || isCalibrating();
    if (isResistance(quantity) || quantity == FaultPosition) {
        if (insulationUnknown || (quantity == Impedance && !parameters_.isOn(Parameter::ImpedanceOn, true))) {
            return rangeInvalid;
        }
    }
    if (quantity == FaultPosition) {
        const bool placeable = measurement_[Insulation] < placeablePart * type_.insulationLimit;
        return placeable ? rangeValid : rangeInvalid;
    }
    if (measurement_[quantity] > limitOf(quantity)) {
        return rangeGreater;
    }
    return isResistance(quantity) && measurement_[quantity] < smallestResistance ? rangeSmaller : rangeValid;
}

void Device::startSelfTest() {
    selfTestEnd_ = now_ + selfTestDuration;
    lastSelfTest_ = inSeconds(now_ - start_) * speed_;
}

bool Device::startCalibration() {
    if (!calibrationPrepared_) {
        return false;
    }
    calibrationPrepared_ = false;
    calibrationEnd_ = now_ + calibrationDuration;
    return true;
}

}  // namespace vek::sim
