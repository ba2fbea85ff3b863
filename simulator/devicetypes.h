#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string_view>

namespace vek::sim {

// What a measurement channel can carry.
enum class Quantity : std::uint8_t {
    None,
    Insulation,
    Impedance,
    Voltage,
    RmsVoltage,
    Capacitance,
    VoltagePlus,
    VoltageMinus,
    FaultPosition,
    DisplacementInsulation,
    UpdateCounter,
};
// The device types have the numbers 1 to this one.
inline constexpr std::size_t highestDeviceType = 10;

inline constexpr std::size_t quantityCount = 11;
inline constexpr std::size_t channelCount = 9;

// A set of type numbers, bit n for type n.
using TypeSet = std::uint16_t;

template <typename... Numbers>
constexpr TypeSet typeSet(Numbers... numbers) {
    return static_cast<TypeSet>(((1 << numbers) | ...));
}
inline constexpr TypeSet allTypes = (2U << highestDeviceType) - 2U;
// Those that can be calibrated over the bus.
inline constexpr TypeSet calibratedTypes = allTypes & ~typeSet(9);

// One model of the family, together with an installation that suits it.
struct DeviceType {
    int number;
    std::string_view articleName;
    std::array<Quantity, channelCount> channels;
    double insulationLimit;    // ohms; the device reports higher resistances as "greater than"
    double capacitanceLimit;   // farads
    double supplyVoltage;      // volts between L1/+ and L2/-
    double capacitance;        // farads against earth
    double faultResistance;    // ohms that a fault reaches at its worst
    std::uint16_t softwareId;  // registration number of its software
};

// All types in the order of their numbers.
std::span<const DeviceType> deviceTypes();

// The type with this number, null for a number that no type has.
const DeviceType* findDeviceType(int number);

}  // namespace vek::sim
