#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace vek {

/// The caption of a monitor slot (0 to 15) in Modbus mode, blank where the device type has no such channel.
std::string_view modbusSlotName(std::size_t slot, std::uint8_t deviceType);

/// The caption of a monitor slot (0 to 15) on the KDL bus; nothing where the slot keeps the caption it has.
std::optional<std::string_view> kdlSlotName(std::size_t slot, std::uint8_t deviceType);

}  // namespace vek
