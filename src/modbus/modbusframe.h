#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "platform/seams/serialcontrol.h"

/// Modbus RTU frames as bytes, without a port: requests of the functions 03 and 16, the parse of their
/// replies, and the byte conversions of register data. Layouts and CRC are those of the Modbus over Serial
/// Line protocol.
namespace vek {

inline constexpr std::uint8_t functionReadHoldingRegisters = 3;
inline constexpr std::uint8_t functionWriteMultipleRegisters = 16;

/// Result of a transaction without a valid reply.
inline constexpr const char* crcTimeout = "CRC_TIMEOUT";

/// Begin of the result of a transaction that the device refused; the exception code follows in decimal.
inline constexpr const char* exceptionPrefix = "EXCEP_";

/// Length of a complete exception reply: address, function + 128, exception code, CRC. No reply is shorter.
inline constexpr std::size_t exceptionReplyLength = 5;

/// Request to read `count` holding registers, CRC included: 8 bytes.
Bytes readRequest(std::uint8_t slave, std::uint16_t startRegister, std::uint16_t count);

/// The data bytes of a reply to a read (5 bytes or more): as many as its byte count says, never more than
/// have arrived.
Bytes readReplyData(std::string_view reply);

/// Request to write `count` registers, CRC included: 9 + data.size() bytes.
Bytes writeRequest(std::uint8_t slave, std::uint16_t startRegister, std::uint8_t count,
                   std::uint8_t byteCount, std::string_view data);

/// Length of the reply to a request, unless the device refuses it.
std::size_t replyLength(std::string_view request);

/// What the bytes that have come for a request are.
enum class ReplyKind {
    NotYet,     ///< too few, and more can still come
    Data,       ///< the answer
    Exception,  ///< the refusal
    NotForUs    ///< damaged, or said by somebody else or to another request
};

/// `moreCanCome`: the time is not up. The answer has a right CRC and comes from the slave that was asked
/// (from any when the request went to address 0); it is of the same function, for a write of the same
/// registers, and not the request itself, as an adapter that hears its own sending returns it. A refusal of
/// the slave ends the wait: without the early look at it, a register that the device lacks would cost the
/// whole time-out.
ReplyKind parseReply(std::string_view request, std::string_view reply, bool moreCanCome);

/// The two CRC bytes of the frame, low byte first: CRC-16 with start value FFFF and polynomial A001
/// (reflected).
Bytes ComputeCrc(std::string_view frame);

/// Whether the last two bytes are the CRC of those before; false below 3 bytes.
bool CheckCrc(std::string_view reply);

/// Whether a reply with a right CRC refuses the request: shorter than 5 bytes, or with functionCode + 128.
bool IsExceptionReply(std::string_view reply, std::uint8_t functionCode);

/// "EXCEP_" with the third byte of the reply (which has 3 bytes or more) in decimal.
std::string ExceptionToken(std::string_view reply);

/// High byte, then low byte.
Bytes WordToBytes(std::uint16_t value);

/// The first two bytes (which must be there) as a register's value.
std::uint16_t BytesToWord(std::string_view bytes);

/// The first four bytes as an IEEE 754 single, most significant byte first; missing bytes count as 0.
float BytesToSingle(std::string_view bytes);

}  // namespace vek
