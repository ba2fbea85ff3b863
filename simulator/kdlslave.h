#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "simulator/device.h"
#include "simulator/kdlparameters.h"

namespace vek::sim {

// The KDL side of a device: turns the command of a request into the payload of its reply.
class KdlSlave {
  public:
    explicit KdlSlave(Device& device) : device_(device) {}

    // Carries the command out, which begins with ":". An empty payload says that an order was obeyed.
    std::string answer(std::string_view command);

    // The payload that refuses a request with this code.
    static std::string refusal(std::uint8_t code);

  private:
    Device& device_;
    std::uint16_t selected_ = noParameter;  // what the next value is for
};

}  // namespace vek::sim
