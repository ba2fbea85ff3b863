#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>

#include "simulator/alarms.h"
#include "simulator/battery.h"
#include "simulator/devicetypes.h"
#include "simulator/installation.h"
#include "simulator/parameters.h"
#include "simulator/time.h"

namespace vek::sim {

// Conditions that a device can be put into from outside.
struct Conditions {
    bool deviceFault = false;   // the device has found itself faulty and does not measure insulation any more
    bool warning = false;       // the connection to the mains is reported as interrupted
    bool earthWarning = false;  // the connection to earth is reported as interrupted
    bool externalTest = false;  // somebody holds the external test button
    bool openString = false;    // the battery string is interrupted
};

struct DeviceOptions {
    int type = 1;      // 1..highestDeviceType
    std::string name;  // what the device calls itself, up to 20 bytes; empty for the article name of the type
    std::uint16_t address = 3;
    int baudRate = 9600;  // one of the rates of baudCode()
    bool kdl = false;     // on the KDL bus from the start, whatever `baudRate`
    std::uint16_t parity = 2;
    std::uint32_t seed = 1;
    double speed = 1.0;  // how much faster than the clock the installation lives, above 0
    Conditions conditions;
    BatteryPlay battery{};  // what type 9 measures in place of its installation; others do not look at it
};

// Range field of a channel's status word.
inline constexpr std::uint16_t rangeMask = 0xC0;
inline constexpr std::uint16_t rangeValid = 0x00;
inline constexpr std::uint16_t rangeSmaller = 0x40;
inline constexpr std::uint16_t rangeGreater = 0x80;
inline constexpr std::uint16_t rangeInvalid = 0xC0;
// Test field of a channel's status word.
inline constexpr std::uint16_t internalTest = 0x4000;
inline constexpr std::uint16_t externalTest = 0x8000;

// A measurement channel as the device publishes it.
struct Channel {
    float value = 0;
    std::uint16_t status = 0;
    std::uint16_t description = 0;
};

// What a test wants to see in a channel in place of what the device measures. A pinned value is also what
// the alarms judge, in the unit of the channel, and counts as within range; pinned words are published as
// they are.
struct ChannelPin {
    std::optional<float> value;
    std::optional<std::uint16_t> status;
    std::optional<std::uint16_t> description;
};

struct SoftwareId {
    std::uint16_t registration;
    std::uint16_t version;  // hundredths
    std::uint16_t year;
    std::uint16_t month;
    std::uint16_t day;
    std::uint16_t driverVersion;  // hundredths
};

// One insulation monitoring device: what it measures, its parameters, its alarms and its commands.
// It knows no protocol; whoever speaks one reads and drives it through this class.
class Device {
  public:
    // `options` must be valid; `start` is the moment it is switched on.
    Device(const DeviceOptions& options, Time start);

    // Brings the device to `now`, which must not run backwards.
    void advance(Time now);

    const DeviceType& type() const { return type_; }
    const std::string& name() const { return name_; }
    SoftwareId softwareId() const;
    // Channel 0..8 as of the last advance().
    Channel channel(std::size_t index) const;
    // The channel that carries this quantity, or nothing when the type has none.
    std::optional<Channel> channelOf(Quantity quantity) const;
    bool isAlarmActive(AlarmId id) const;
    // internalTest, externalTest or 0.
    std::uint16_t testState() const;
    ParameterSet& parameters() { return parameters_; }
    const ParameterSet& parameters() const { return parameters_; }
    InterfaceSettings busSettings() const { return parameters_.busSettings(); }

    // The internal test; takes some seconds, in which all channels say so.
    void startSelfTest();
    void clearAlarms() { alarms_.clear(); }
    void restoreFactory(FactoryReset reset) { parameters_.restoreFactory(reset); }
    // Calibration is entered in two steps; the second is refused (false) unless the first came right before.
    void prepareCalibration() { calibrationPrepared_ = true; }
    bool startCalibration();
    bool isCalibrating() const { return now_ < calibrationEnd_; }

    const Conditions& conditions() const { return conditions_; }
    // Pins channel 0..8; an empty pin gives the channel back to the device.
    void pin(std::size_t index, const ChannelPin& pin) { pins_.at(index) = pin; }

  private:
    void runCycle(Time now);
    void measure(double seconds);
    void measureBattery(const BatteryScene& scene);
    double impedance(double resistance, double capacitance) const;
    std::uint16_t rangeState(Quantity quantity) const;
    AlarmDisplay alarmDisplay(Quantity quantity) const;
    double limitOf(Quantity quantity) const;

    const DeviceType& type_;
    std::string name_;
    double speed_;
    ParameterSet parameters_;
    Installation installation_;
    BatteryPlay battery_;
    Alarms alarms_;
    Measurement measurement_;
    Conditions conditions_;
    std::array<ChannelPin, channelCount> pins_;
    Time start_;
    Time now_;
    Time nextCycle_;
    Time selfTestEnd_;
    Time calibrationEnd_;
    bool calibrationPrepared_ = false;
    double lastSelfTest_ = 0;  // seconds of the installation
};

}  // namespace vek::sim
