// What a device may answer to a Modbus request. Input: operation, number of registers, length of the first
// part of the reply, the reply.
#include "fuzz.h"
#include "modbus/ModBus.h"
#include "support/testprogram.h"

namespace vek {

void fuzz(Input input) {
    constexpr unsigned rightCrc = 0x80;  // of the operation: the reply gets one
    constexpr unsigned write = 1;
    const unsigned operation = input.byte();
    const std::uint16_t count = input.byte() % 126U;
    const std::size_t firstPart = input.byte();
    std::string reply = input.rest();
    reply += (operation & rightCrc) != 0 ? ComputeCrc(reply) : "";
    TestProgram test;
    test.configure();
    OpenPort(test.program);
    test.serial.peer = [&](std::string_view) {
        const std::string first = reply.substr(0, firstPart);
        test.serial.reply(first, Milliseconds(5));
        test.serial.reply(reply.substr(first.size()), Milliseconds(50));
    };
    const TimePoint begin = test.clock.now();
    if ((operation & write) != 0) {
        MbWriteRegisters(test.program, 3001, 1, 2, "12");
    } else if (const auto data = readData(test.program, 3001, count)) {
        require(data->size() == 2 * std::size_t{count}, "data are complete or none");
        require(reply.find(*data) != std::string::npos, "data are what the device has sent");
        require(test.desktop.boxes.empty(), "no message about data that came");
    }
    require(test.desktop.boxes.size() <= 1, "one message for one failure");
    require(test.clock.now() - begin <= Milliseconds(1000), "no reply is waited for longer than a second");
}

}  // namespace vek
