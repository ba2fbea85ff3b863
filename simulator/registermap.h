#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "simulator/device.h"

namespace vek::sim {

enum class ModbusException : std::uint8_t { IllegalFunction = 1, IllegalAddress = 2, IllegalValue = 3 };

// The device as a row of holding registers.
class RegisterMap {
  public:
    explicit RegisterMap(Device& device) : device_(device) {}

    // The content of a register, or nothing when it does not exist or cannot be read.
    std::optional<std::uint16_t> read(std::uint16_t reg) const;

    // Writes a block, all of it or none. Returns why it was refused.
    std::optional<ModbusException> write(std::uint16_t start, std::span<const std::uint16_t> words);

  private:
    std::optional<ModbusException> writeParameters(std::uint16_t start, std::span<const std::uint16_t> words);

    Device& device_;
};

}  // namespace vek::sim
