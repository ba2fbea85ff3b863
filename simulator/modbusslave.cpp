#include "simulator/modbusslave.h"

namespace vek::sim {
namespace {

constexpr std::uint8_t readFunction = 3;
constexpr std::uint8_t writeFunction = 16;
constexpr std::uint8_t exceptionFlag = 0x80;
constexpr std::size_t crcLength = 2;
constexpr std::size_t headLength = 6;
constexpr std::size_t maxRead = 125;
constexpr std::size_t maxWrite = 123;
constexpr std::size_t registerNumbers = 0x10000;

std::uint16_t wordAt(std::span<const std::uint8_t> bytes, std::size_t offset) {
    return static_cast<std::uint16_t>((bytes[offset] << 8) | bytes[offset + 1]);
}

void appendWord(Bytes& bytes, std::uint16_t word) {
    bytes.push_back(static_cast<std::uint8_t>(word >> 8));
    bytes.push_back(static_cast<std::uint8_t>(word));
}

bool staysWithinRegisters(const RequestHead& head) {
    return std::size_t{head.firstRegister} + head.registerCount <= registerNumbers;
}

Bytes refuse(const RequestHead& head, ModbusException reason) {
    return ModbusSlave::exceptionReply(head, static_cast<std::uint8_t>(reason));
}

}  // namespace

std::uint16_t modbusCrc(std::span<const std::uint8_t> bytes) {
    std::uint16_t crc = 0xFFFF;
    for (const std::uint8_t byte : bytes) {
        crc = static_cast<std::uint16_t>(crc ^ byte);
        for (int bit = 0; bit < 8; ++bit) {
            const bool carry = (crc & 1) != 0;
            crc = static_cast<std::uint16_t>((crc >> 1) ^ (carry ? 0xA001 : 0));
        }
    }
    return crc;
}

void appendCrc(Bytes& frame) {
    const std::uint16_t crc = modbusCrc(frame);
    frame.push_back(static_cast<std::uint8_t>(crc));
    frame.push_back(static_cast<std::uint8_t>(crc >> 8));
}

bool hasValidCrc(std::span<const std::uint8_t> frame) {
    if (frame.size() < 2 + crcLength) {
        return false;
    }
    const std::size_t end = frame.size() - crcLength;
    return modbusCrc(frame.first(end)) == (frame[end] | (frame[end + 1] << 8));
}

std::optional<std::size_t> requestLength(std::span<const std::uint8_t> start) {
    if (start.size() >= 2 && start[1] == readFunction) {
        return headLength + crcLength;
    }
    if (start.size() > headLength && start[1] == writeFunction) {
        return headLength + 1 + start[headLength] + crcLength;
    }
    return std::nullopt;
}

bool RequestHead::isWrite() const {
    return function == writeFunction;
}

bool RequestHead::touches(std::uint16_t reg) const {
    return reg >= firstRegister && reg - firstRegister < registerCount;
}

RequestHead parseHead(std::span<const std::uint8_t> frame) {
    RequestHead head{frame[0], frame[1]};
    if ((head.function == readFunction || head.function == writeFunction) &&
        frame.size() >= headLength + crcLength) {
        head.firstRegister = wordAt(frame, 2);
        head.registerCount = wordAt(frame, 4);
    }
    return head;
}

Bytes ModbusSlave::exceptionReply(const RequestHead& head, std::uint8_t code) {
    Bytes reply{head.address, static_cast<std::uint8_t>(head.function | exceptionFlag), code};
    appendCrc(reply);
    return reply;
}

Bytes ModbusSlave::answer(std::span<const std::uint8_t> frame) {
    const RequestHead head = parseHead(frame);
    if (head.function == readFunction) {
        return read(head);
    }
    return head.isWrite() ? write(head, frame) : refuse(head, ModbusException::IllegalFunction);
}

Bytes ModbusSlave::read(const RequestHead& head) const {
    if (head.registerCount == 0 || head.registerCount > maxRead) {
        return refuse(head, ModbusException::IllegalValue);
    }
    if (!staysWithinRegisters(head)) {
        return refuse(head, ModbusException::IllegalAddress);
    }
    Bytes reply{head.address, head.function, static_cast<std::uint8_t>(2 * head.registerCount)};
    for (std::size_t i = 0; i < head.registerCount; ++i) {
        const auto word = registers_.read(static_cast<std::uint16_t>(head.firstRegister + i));
        if (!word.has_value()) {
            return refuse(head, ModbusException::IllegalAddress);
        }
        appendWord(reply, *word);
    }
    appendCrc(reply);
    return reply;
}

Bytes ModbusSlave::write(const RequestHead& head, std::span<const std::uint8_t> frame) {
    const std::size_t dataStart = headLength + 1;
    const std::size_t dataLength = std::size_t{2} * head.registerCount;
    const bool countFits =
        frame.size() == dataStart + dataLength + crcLength && frame[headLength] == dataLength;
    if (head.registerCount == 0 || head.registerCount > maxWrite || !countFits) {
        return refuse(head, ModbusException::IllegalValue);
    }
    if (!staysWithinRegisters(head)) {
        return refuse(head, ModbusException::IllegalAddress);
    }
    std::vector<std::uint16_t> words;
    for (std::size_t i = 0; i < dataLength; i += 2) {
        words.push_back(wordAt(frame, dataStart + i));
    }
    if (const auto reason = registers_.write(head.firstRegister, words)) {
        return refuse(head, *reason);
    }
    Bytes reply(frame.begin(), frame.begin() + headLength);
    appendCrc(reply);
    return reply;
}

}  // namespace vek::sim
