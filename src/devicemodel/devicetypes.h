#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace vek {

/// The device types have the numbers 1 to this one.
inline constexpr std::uint8_t highestDeviceType = 10;

/// The type that watches a battery string and has a monitor window of its own.
inline constexpr std::uint8_t batteryDeviceType = 9;

/// Which channels a type publishes over Modbus, and the captions of its slots: columns of slotnames.cpp.
enum class ModbusSlots : std::size_t { impedance, plain, mains, battery, count };

/// The captions of a type's rows on the KDL bus: columns of slotnames.cpp.
enum class KdlSlots : std::size_t { impedance, plain, mains, battery, voltages, count };

/// How finely a type's voltages are shown, and in which slots it measures them: columns of
/// monitorrendering.cpp.
enum class SlotFormats : std::size_t { wholeVolts, mainsTenths, stringTenths, count };

/// What the monitors know of a device type.
struct DeviceTypeFacts {
    int faultLimit = 0;  ///< the highest fault resistance in kOhm that the type can tell; 0 = it tells none
    ModbusSlots modbusSlots = ModbusSlots::impedance;
    KdlSlots kdlSlots = KdlSlots::impedance;
    SlotFormats slotFormats = SlotFormats::wholeVolts;
};

/// The facts of a type; for 0, no device yet, and numbers that no type has, those of an impedance device
/// that tells no fault resistance.
const DeviceTypeFacts& deviceTypeFacts(std::uint8_t deviceType);

/// The number of the model that reports this name, 1 to highestDeviceType: both the article names that
/// devices report and the short display names, compared exactly (case and blanks count). Any other text
/// counts as type 1.
std::uint8_t deviceTypeFromName(std::string_view name);

}  // namespace vek
