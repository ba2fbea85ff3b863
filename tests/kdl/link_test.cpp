#include <gtest/gtest.h>

#include <sstream>

#include "kdl/KDLBusLink.h"
#include "parameters/kdlparametervalue.h"
#include "platform/textcodec.h"
#include "support/conversation.h"

namespace vek {
namespace {

const Bytes none = "#TIMEOUT_ERROR#";

/// The operations of conversations.txt.
Operations operationsOf(TestProgram& test) {
    Program& program = test.program;
    const auto ask = [&](const Operand& command) {
        return KdlTransact(program, frameBytes(command.text, true));
    };
    const auto shown = [](const Bytes& bytes) { return withoutControls(utf8FromWindows1252(bytes)); };
    return {
        {"port",
         [&](const Operand& settings) {
             std::istringstream(settings.text) >> program.ComPort >> program.BaudRate;
             return "";
         }},
        {"open",
         [&](const Operand&) {
             KdlOpenPort(program);
             const auto& opening = test.serial.openings.back();
             return "COM" + std::to_string(opening.number) + " " + opening.settings;
         }},
        {"close",
         [&](const Operand&) {
             KdlClosePort(program);
             return "";
         }},
        {"address",
         [&, shown](const Operand& address) {
             KdlSetAddress(program, address.text);
             return shown(program.KdlAddressPrefix) + " " + std::to_string(program.DeviceAddress);
         }},
        {"ask", [=](const Operand& command) { return shown(ask(command)); }},
        {"value", [=](const Operand& command) { return shown(KdlParameterValueText(ask(command))); }},
    };
}

TEST(Kdl, Conversations) {
    TestProgram test;
    test.configureKdl();
    converse(test, VEK_TEST_FOLDER "conversations.txt", operationsOf(test));
}

class KdlLink : public testing::Test {
  protected:
    KdlLink() {
        test.configureKdl();
        KdlOpenPort(test.program);
    }

    /// One request that is answered so, long after whatever was before.
    Bytes ask(const Bytes& reply, Milliseconds gap = {}) {
        test.serial.peer = [&](std::string_view) { test.serial.reply(reply, Milliseconds{20}, gap); };
        test.clock.advance(Milliseconds{200'000});
        test.serial.readInput();
        test.desktop.eventRounds = 0;
        const TimePoint begin = test.clock.now();
        Bytes payload = KdlTransact(test.program, ":IDNM?");
        took = std::chrono::duration_cast<Milliseconds>(test.clock.now() - begin).count();
        return payload;
    }

    TestProgram test;
    std::int64_t took = 0;
};

TEST_F(KdlLink, AFloodEndsWithTheTimeOutAndFillsNothing) {
    const Bytes longest(65536 - 9, 'x');
    EXPECT_EQ(ask("abcdef" + longest + "&\r\n"), longest);
    EXPECT_EQ(ask("abcdef" + longest + "x&\r\n"), none);
    EXPECT_EQ(took, 205);
    EXPECT_EQ(test.program.terminalLog.widestLine(), 65536U);
    EXPECT_EQ(ask(Bytes(70'000, '\n'), Milliseconds{1}), none);
    EXPECT_EQ(took, 205) << "no byte starts the time anew";
}

TEST_F(KdlLink, WhatComesBeforeARequestIsNoAnswerToIt) {
    test.serial.reply("=;003:17&dZB\r\n");
    test.serial.reply("=;003:18&dZB\r\n", Milliseconds{2});
    test.serial.peer = [&](std::string_view) { reply(test.serial, "@1 :;003=42*", true); };
    EXPECT_EQ(KdlTransact(test.program, ":IDNM?"), "42");
}

}  // namespace
}  // namespace vek
