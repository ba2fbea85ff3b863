#include <gtest/gtest.h>

#include <sstream>

#include "modbus/ModBus.h"
#include "program/port.h"
#include "support/conversation.h"

namespace vek {
namespace {

/// What the port has been opened with at last.
std::string lastOpening(const FakeSerial& serial) {
    return "COM" + std::to_string(serial.openings.back().number) + " " + serial.openings.back().settings;
}

/// The operations of conversations.txt.
Operations operationsOf(TestProgram& test) {
    Program& program = test.program;
    const auto data = [](const Bytes& reply) {
        const bool isToken = reply == crcTimeout || reply.starts_with(exceptionPrefix);
        return isToken ? reply : spacedHex(CheckCrc(reply) ? reply.substr(0, reply.size() - 2) : reply);
    };
    return {
        {"port",
         [&](const Operand& settings) {
             std::istringstream(settings.text) >> program.ComPort >> program.BaudRate >> program.FrameFormat;
             return "";
         }},
        {"open",
         [&](const Operand&) {
             OpenPort(program);
             return lastOpening(test.serial);
         }},
        {"absent",
         [&](const Operand&) {
             test.serial.openErrors = {{3, PortError::NotThere}};
             OpenPort(program);
             test.serial.openErrors.clear();
             return "";
         }},
        {"close",
         [&](const Operand&) {
             ClosePort(program);
             return "";
         }},
        {"probe",
         [&](const Operand& port) {
             PortError error{};
             return PortExists(program, port.numbers[0], error) ? "yes" : "no";
         }},
        {"ask",
         [&, data](const Operand& read) {
             const auto slave = static_cast<std::uint8_t>(read.numbers[0]);
             return data(SendReadRequest(program, slave, read.numbers[1], read.numbers[2]));
         }},
        {"tell",
         [&, data](const Operand& write) {
             return data(SendWriteRequest(program, 3, write.numbers[0], 1, 2, WordToBytes(write.numbers[1])));
         }},
        {"value", [&](const Operand& read) { return MbReadRegisters(program, read.numbers[0], 1); }},
        {"values",
         [&, data](const Operand& read) {
             return data(MbReadRegisters(program, read.numbers[0], read.numbers[1]));
         }},
        {"data",
         [&](const Operand& read) {
             const auto bytes = readData(program, read.numbers[0], read.numbers[1]);
             return bytes ? spacedHex(*bytes) : "none";
         }},
        {"write",
         [&](const Operand& write) {
             const Bytes value = WordToBytes(write.numbers[1]);
             return MbWriteRegisters(program, write.numbers[0], 1, 2, value) ? "yes" : "no";
         }},
        {"text", [&](const Operand& read) { return ReadDeviceText(program, read.numbers[0]); }},
    };
}

TEST(Modbus, Conversations) {
    TestProgram test;
    test.configure();
    test.open<LastWindow>();
    converse(test, VEK_TEST_FOLDER "conversations.txt", operationsOf(test));
}

TEST(Modbus, SpoiledAndCutRepliesAreNoneAndOnesInPiecesAre) {
    TestProgram test;
    test.configure();
    OpenPort(test.program);
    const Bytes good = frameBytes("03 03 04 42 F6 E9 79 *");
    std::string first, second;
    test.serial.peer = [&](std::string_view) {
        test.serial.reply(first, Milliseconds{10});
        test.serial.reply(second, Milliseconds{999});
    };
    for (std::size_t bit = 0; bit < 8 * good.size(); ++bit) {
        first = good.substr(0, bit / 8);
        second = good.substr(bit / 8);
        EXPECT_EQ(SendReadRequest(test.program, 3, 9820, 2), good) << bit / 8;
        first = std::exchange(second, "");
        EXPECT_EQ(SendReadRequest(test.program, 3, 9820, 2), bit < 8 ? good : "CRC_TIMEOUT") << bit / 8;
        first = good;
        first[bit / 8] = static_cast<char>(static_cast<unsigned char>(first[bit / 8]) ^ (1U << bit % 8));
        EXPECT_EQ(SendReadRequest(test.program, 3, 9820, 2), "CRC_TIMEOUT") << bit;
    }
}

TEST(Modbus, RegistersBecomeNumbers) {
    EXPECT_EQ(BytesToSingle(frameBytes("47 C3 50 00")), 100000.0F);
    EXPECT_EQ(BytesToSingle(frameBytes("3F 80")), 1.0F) << "missing bytes count as 0";
    TestProgram test;
    const std::pair<const char*, int> addresses[] = {{"247", 247}, {"12a", 12}, {" 90 ", 90}, {"", 0},
                                                     {"3.5", 4},   {"256", 0},  {"-1", 0},    {"1e9", 1}};
    for (const auto& [text, address] : addresses) {
        SetDeviceAddress(test.program, text);
        EXPECT_EQ(test.program.DeviceAddress, address) << text;
    }
}

}  // namespace
}  // namespace vek
