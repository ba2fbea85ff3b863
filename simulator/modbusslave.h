#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "simulator/registermap.h"

namespace vek::sim {

using Bytes = std::vector<std::uint8_t>;

// CRC-16 of Modbus RTU over all the bytes.
std::uint16_t modbusCrc(std::span<const std::uint8_t> bytes);
// Appends the CRC over what is there, low byte first.
void appendCrc(Bytes& frame);
// Whether the last two bytes are the CRC over the others; false for fewer than four bytes.
bool hasValidCrc(std::span<const std::uint8_t> frame);

// How long a request is going to be, judged by its start. Nothing when too little of it is there
// or when its function is unknown, so that only silence can end it.
std::optional<std::size_t> requestLength(std::span<const std::uint8_t> start);

// The head of a request.
struct RequestHead {
    std::uint8_t address = 0;
    std::uint8_t function = 0;
    // 0 for functions that are not supported.
    std::uint16_t firstRegister = 0;
    std::uint16_t registerCount = 0;

    bool isWrite() const;
    bool touches(std::uint16_t reg) const;
};

// `frame` must have a valid CRC.
RequestHead parseHead(std::span<const std::uint8_t> frame);

// The Modbus RTU side of a device: turns one valid request frame into its reply.
class ModbusSlave {
  public:
    explicit ModbusSlave(Device& device) : registers_(device) {}

    // Carries the request out and returns the reply with its CRC. The frame must have a valid CRC;
    // address and broadcast are the caller's matter.
    Bytes answer(std::span<const std::uint8_t> frame);

    // The reply that refuses a request with this code.
    static Bytes exceptionReply(const RequestHead& head, std::uint8_t code);

  private:
    Bytes read(const RequestHead& head) const;
    Bytes write(const RequestHead& head, std::span<const std::uint8_t> frame);

    RegisterMap registers_;
};

}  // namespace vek::sim
