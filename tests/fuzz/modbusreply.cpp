// What a device may answer to a Modbus request. Input: operation, number of registers, length of the first
// part of the reply, the reply.
#include "fuzz.h"
#include "modbus/ModBus.h"
#include "support/testprogram.h"

namespace vek {
namespace {

constexpr Milliseconds replyLimit{1000};
constexpr std::uint8_t rightCrc = 0x80;  // of the operation: the reply gets one
constexpr std::uint8_t inTwoParts = 0x40;
constexpr std::uint8_t longPause = 0x20;

/// The CRC in its other form, most significant bit first with everything mirrored.
std::string mirroredCrc(std::string_view bytes) {
    const auto mirrored = [](unsigned value, int bits) {
        unsigned result = 0;
        for (int bit = 0; bit < bits; ++bit) {
            result |= ((value >> bit) & 1U) << (bits - 1 - bit);
        }
        return result;
    };
    unsigned crc = 0xFFFF;
    for (const char byte : bytes) {
        crc ^= mirrored(static_cast<unsigned char>(byte), 8) << 8;
        for (int bit = 0; bit < 8; ++bit) {
            crc = ((crc & 0x8000U) != 0 ? crc << 1 ^ 0x8005U : crc << 1) & 0xFFFFU;
        }
    }
    crc = mirrored(crc, 16);
    return {static_cast<char>(crc & 0xFFU), static_cast<char>(crc >> 8U)};
}

bool hasRightCrc(std::string_view frame) {
    return frame.size() >= 3 &&
           mirroredCrc(frame.substr(0, frame.size() - 2)) == frame.substr(frame.size() - 2);
}

/// A device that answers the next request with these bytes.
class Line {
  public:
    Line(Input input, std::uint8_t operation) {
        const std::size_t firstPart = (operation & inTwoParts) != 0 ? input.byte() : std::string::npos;
        reply = input.rest();
        if ((operation & rightCrc) != 0) {
            reply += mirroredCrc(reply);
        }
        test.configure();
        OpenPort(test.program);
        wholeAtOnce = firstPart >= reply.size();
        test.serial.peer = [this, operation, firstPart](std::string_view /*request*/) {
            const std::string first = reply.substr(0, firstPart);
            test.serial.reply(first, Milliseconds(5));
            test.serial.reply(reply.substr(first.size()),
                              Milliseconds((operation & longPause) != 0 ? 1200 : 50));
        };
    }

    TestProgram test;
    std::string reply;
    bool wholeAtOnce = false;
};

/// `head`: what the answer to the request begins with.
void checkResult(const Line& line, const Bytes& result, std::string_view head) {
    const std::string& reply = line.reply;
    if (result == crcTimeout) {
        const bool isAnswer = hasRightCrc(reply) && reply.size() >= exceptionReplyLength &&
                              reply.starts_with(head) && reply != line.test.serial.written.back();
        require(!(line.wholeAtOnce && isAnswer), "a valid reply is taken");
    } else if (isExceptionToken(result)) {
        require(result == "EXCEP_" + std::to_string(static_cast<unsigned char>(reply.at(2))),
                "an exception carries the third byte");
    } else {
        require(hasRightCrc(result), "a reply that is taken has a right CRC");
        require(result.size() >= exceptionReplyLength, "a reply that is taken is long enough");
        require(result.starts_with(head), "a reply that is taken answers the request");
        require(reply.starts_with(result), "a reply holds what the device has sent");
    }
}

void checkRead(Line& line, std::uint16_t count) {
    const auto data = readData(line.test.program, 3001, count);
    require(!data || data->size() == 2 * std::size_t{count}, "data are complete or none");
    require(!data || line.reply.substr(3, data->size()) == *data, "data are what the device has sent");
    require(!data || line.reply.size() >= data->size() + 5, "a CRC does not pass for data");
    require(!data || line.test.desktop.boxes.empty(), "no message about data that came");
    require(line.test.desktop.boxes.size() <= 1, "one message for one failure");
}

void checkOneRegister(Line& line) {
    const Bytes text = MbReadRegisters(line.test.program, 3001, 1);
    if (text.size() <= 5 && !text.empty() && text.find_first_not_of("0123456789") == Bytes::npos) {
        require(std::stoul(text) <= 65535, "a register holds 16 bits");
    }
}

void run(Input input) {
    const std::uint8_t operation = input.byte();
    const std::uint16_t count = input.byte() % 126U;
    Line line(input, operation);
    Program& program = line.test.program;
    const TimePoint begin = line.test.clock.now();
    switch (operation & 3U) {
        case 0:
            checkResult(line, SendReadRequest(program, 3, 3001, count), "\x03\x03");
            break;
        case 1:
            checkResult(line, SendWriteRequest(program, 3, 3001, 1, 2, "12"), {"\x03\x10\x0B\xB9\0\1", 6});
            break;
        case 2:
            checkRead(line, count);
            break;
        default:
            checkOneRegister(line);
    }
    require(line.test.clock.now() - begin <= replyLimit, "no reply is waited for longer than a second");
}

}  // namespace
}  // namespace vek

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    vek::run(vek::Input(data, size));
    return 0;
}
