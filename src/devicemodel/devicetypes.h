#pragma once

#include <cstdint>
#include <string_view>

namespace vek {

/// The device types have the numbers 1 to this one.
inline constexpr std::uint8_t highestDeviceType = 10;

/// The type that watches a battery string and has a monitor window of its own.
inline constexpr std::uint8_t batteryDeviceType = 9;

/// The number of the model that reports this name, 1 to 10: both the article names that devices report and
/// the short display names, compared exactly (case and blanks count). Any other text counts as type 1.
std::uint8_t deviceTypeFromName(std::string_view name);

}  // namespace vek
