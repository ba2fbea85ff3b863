#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "simulator/devicetypes.h"

namespace vek::sim {

enum class Parameter : std::uint8_t {
    ImpedanceWarning,  // kOhm
    ImpedanceAlarm,    // kOhm
    InsulationWarningOn,
    InsulationAlarmOn,
    InsulationWarning,  // kOhm
    InsulationAlarm,    // kOhm
    UndervoltageOn,
    Undervoltage,  // V
    OvervoltageOn,
    Overvoltage,     // V
    BatteryHigh,     // V
    BatteryLow,      // V
    CrossFaultHigh,  // V
    CrossFaultLow,   // V
    FaultMemory,
    Relay1Mode,
    Relay2Mode,
    Address,
    BaudCode,
    Parity,
    StartDelay,     // s
    ResponseDelay,  // s
    ReleaseDelay,   // s
    SelfTestInterval,
    ImpedanceOn,
    MainsFrequency,     // tenths of a hertz
    SystemCapacitance,  // microfarads
    GeneratorMode,
    MainsSupervision,
    StartWithTest,
    StopMode,
    Relay1Alarms,
    Relay2Alarms,
    PulsePeriod,
    ResponseDelay2,  // s
};

struct Interval {
    std::uint16_t min;
    std::uint16_t max;
};

// One register of the parameter block as some of the types have it.
struct ParameterRow {
    Parameter parameter;
    std::uint16_t reg;
    TypeSet types;
    std::span<const Interval> allowed;
    std::uint16_t factory;
    // Bits that may be set at all.
    std::uint16_t mask = 0xFFFF;
};

// All includes the interface: wherever the device was before, it is then on Modbus RTU at address 3 with
// 9600 bit/s and parity even, where a new device is looked for.
enum class FactoryReset : std::uint8_t { All, KeepInterface };

enum class Protocol : std::uint8_t { Modbus, Kdl };

// The serial interface of a device as its parameters tell it.
struct InterfaceSettings {
    Protocol protocol;
    std::uint16_t address;
    int baudRate;          // bit/s
    int bitsPerCharacter;  // start and stop bit included
};

// The parameters of one device: just the registers its type has, each within its allowed values.
class ParameterSet {
  public:
    explicit ParameterSet(const DeviceType& type);

    // The value of a register, or nothing when the type does not have it.
    std::optional<std::uint16_t> read(std::uint16_t reg) const;
    bool accepts(std::uint16_t reg, std::uint16_t value) const;
    // The register must exist; the value is stored as it is, also outside the allowed values.
    void store(std::uint16_t reg, std::uint16_t value);

    std::optional<std::uint16_t> value(Parameter parameter) const;
    // A flag of a type that does not have it counts as `otherwise`.
    bool isOn(Parameter parameter, bool otherwise) const;
    bool accepts(Parameter parameter, std::uint16_t value) const;
    // Whether the device works with the parameter, or the flag that it depends on has switched it off.
    bool isInUse(Parameter parameter) const;
    // Sets that flag; returns false when the parameter has none on this type.
    bool setInUse(Parameter parameter, bool inUse);
    // Does nothing for a type that does not have the parameter.
    void set(Parameter parameter, std::uint16_t value);

    void restoreFactory(FactoryReset reset);

    InterfaceSettings busSettings() const;

  private:
    struct Entry {
        const ParameterRow* row;
        std::uint16_t value;
    };
    const Entry* find(std::uint16_t reg) const;
    const Entry* find(Parameter parameter) const;
    static bool allows(const Entry* entry, std::uint16_t value);

    std::vector<Entry> entries_;
};

// The code that register 3017 holds for even parity.
inline constexpr std::uint16_t evenParity = 2;

// The code that register 3016 holds for the KDL bus.
inline constexpr std::uint16_t kdlBaudCode = 0;
// The code that register 3016 holds for a rate in bit/s, or nothing for a rate that the devices do not have.
std::optional<std::uint16_t> baudCode(int baudRate);

}  // namespace vek::sim
