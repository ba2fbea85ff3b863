#include "modbus/modbusframe.h"

#include <algorithm>
#include <bit>

#include "platform/hextext.h"

namespace vek {

namespace {

constexpr std::size_t crcLength = 2;
constexpr unsigned exceptionFlag = 128;
constexpr unsigned anySlave = 0;  // a device answers it under its own address

/// Address, function and byte count stand before the data of a read reply, the CRC behind them.
constexpr std::size_t readReplyHead = 3;

unsigned byteAt(std::string_view bytes, std::size_t index) {
    return static_cast<unsigned char>(bytes[index]);
}

Bytes requestHead(std::uint8_t slave, std::uint8_t function, std::uint16_t startRegister,
                  std::uint16_t count) {
    Bytes frame;
    frame += static_cast<char>(slave);
    frame += static_cast<char>(function);
    frame += WordToBytes(startRegister);
    frame += WordToBytes(count);
    return frame;
}

}  // namespace

Bytes readRequest(std::uint8_t slave, std::uint16_t startRegister, std::uint16_t count) {
    const Bytes frame = requestHead(slave, functionReadHoldingRegisters, startRegister, count);
    return frame + ComputeCrc(frame);
}

std::size_t readReplyLength(std::uint16_t count) {
    return 2 * std::size_t{count} + readReplyHead + crcLength;
}

Bytes readReplyData(std::string_view reply) {
    const std::size_t arrived = reply.size() - readReplyHead - crcLength;
    return Bytes(reply.substr(readReplyHead, std::min<std::size_t>(byteAt(reply, 2), arrived)));
}

Bytes writeRequest(std::uint8_t slave, std::uint16_t startRegister, std::uint8_t count,
                   std::uint8_t byteCount, std::string_view data) {
    Bytes frame = requestHead(slave, functionWriteMultipleRegisters, startRegister, count);
    frame += static_cast<char>(byteCount);
    frame += data;
    return frame + ComputeCrc(frame);
}

Bytes ComputeCrc(std::string_view frame) {
    unsigned crc = 0xFFFF;
    for (std::size_t index = 0; index < frame.size(); ++index) {
        crc ^= byteAt(frame, index);
        for (int bit = 0; bit < 8; ++bit) {
            crc = (crc & 1U) != 0 ? (crc >> 1U) ^ 0xA001U : crc >> 1U;
        }
    }
    return {static_cast<char>(crc & 0xFFU), static_cast<char>(crc >> 8U)};
}

bool CheckCrc(std::string_view reply) {
    if (reply.size() <= crcLength) {
        return false;
    }
    const std::string_view content = reply.substr(0, reply.size() - crcLength);
    return ComputeCrc(content) == reply.substr(content.size());
}

bool IsExceptionReply(std::string_view reply, std::uint8_t functionCode) {
    return reply.size() < exceptionReplyLength || byteAt(reply, 1) == functionCode + exceptionFlag;
}

bool isAnswerTo(std::string_view request, std::string_view reply) {
    const bool read = byteAt(request, 1) == functionReadHoldingRegisters;
    const std::size_t commonHead = read ? readReplyHead - 1 : writeReplyLength - crcLength;
    const bool sameSlave = byteAt(request, 0) == anySlave || reply[0] == request[0];
    return sameSlave && reply.substr(1, commonHead - 1) == request.substr(1, commonHead - 1) &&
           reply != request;
}

std::string ExceptionToken(std::string_view reply) {
    return exceptionPrefix + std::to_string(byteAt(reply, 2));
}

bool isCompleteExceptionReply(std::string_view reply, std::uint8_t slave, std::uint8_t functionCode) {
    return reply.size() == exceptionReplyLength && byteAt(reply, 0) == slave &&
           byteAt(reply, 1) == functionCode + exceptionFlag && CheckCrc(reply);
}

std::string ToHexText(std::string_view bytes) {
    return hexText(bytes);
}

Bytes WordToBytes(std::uint16_t value) {
    return {static_cast<char>(value >> 8U), static_cast<char>(value & 0xFFU)};
}

std::uint16_t BytesToWord(std::string_view bytes) {
    return static_cast<std::uint16_t>(byteAt(bytes, 0) << 8U | byteAt(bytes, 1));
}

float BytesToSingle(std::string_view bytes) {
    std::uint32_t bits = 0;
    for (std::size_t index = 0; index < sizeof bits; ++index) {
        bits = bits << 8U | (index < bytes.size() ? byteAt(bytes, index) : 0U);
    }
    return std::bit_cast<float>(bits);
}

}  // namespace vek
