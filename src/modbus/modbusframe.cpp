#include "modbus/modbusframe.h"

#include <algorithm>
#include <bit>

namespace vek {

namespace {

constexpr std::size_t crcLength = 2;
constexpr unsigned exceptionFlag = 128;
constexpr unsigned anySlave = 0;  // a device answers it under its own address
constexpr std::size_t writeReplyLength = 8;

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

bool isRead(std::string_view request) {
    return byteAt(request, 1) == functionReadHoldingRegisters;
}

/// Whether a reply comes from the slave that was asked.
bool isFrom(std::string_view request, std::string_view reply) {
    return byteAt(request, 0) == anySlave || reply[0] == request[0];
}

/// Whether a reply with a right CRC, which refuses nothing, begins as the answer to this request does.
bool isAnswerTo(std::string_view request, std::string_view reply) {
    const std::size_t commonHead = isRead(request) ? readReplyHead - 1 : writeReplyLength - crcLength;
    return isFrom(request, reply) && reply.substr(1, commonHead - 1) == request.substr(1, commonHead - 1) &&
           reply != request;
}

}  // namespace

Bytes readRequest(std::uint8_t slave, std::uint16_t startRegister, std::uint16_t count) {
    const Bytes frame = requestHead(slave, functionReadHoldingRegisters, startRegister, count);
    return frame + ComputeCrc(frame);
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

std::size_t replyLength(std::string_view request) {
    const std::size_t count = BytesToWord(request.substr(4));
    return isRead(request) ? readReplyHead + 2 * count + crcLength : writeReplyLength;
}

ReplyKind parseReply(std::string_view request, std::string_view reply, bool moreCanCome) {
    const bool sound = CheckCrc(reply);
    const bool refused = sound && IsExceptionReply(reply, static_cast<std::uint8_t>(byteAt(request, 1)));
    const bool wholeRefusal = refused && reply.size() == exceptionReplyLength && reply[0] == request[0];
    if (moreCanCome && !wholeRefusal && reply.size() < replyLength(request)) {
        return ReplyKind::NotYet;
    }
    if (refused) {
        return isFrom(request, reply) ? ReplyKind::Exception : ReplyKind::NotForUs;
    }
    return sound && isAnswerTo(request, reply) ? ReplyKind::Data : ReplyKind::NotForUs;
}

std::string ExceptionToken(std::string_view reply) {
    return exceptionPrefix + std::to_string(byteAt(reply, 2));
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
