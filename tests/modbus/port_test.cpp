#include <gtest/gtest.h>

#include "modbus/ModBusLink1.h"
#include "support/testprogram.h"

namespace vek {
namespace {

const std::vector<std::string> portMissing = {"Fehler|-|ok+cancel|Schnittstelle nicht vorhanden"};

TEST(Port, OpensWithTheConfiguredNumberAndSettings) {
    const std::tuple<std::int16_t, int, const char*, int, const char*> cases[] = {
        {3, 1200, ",e,8,1", 3, "1200,e,8,1"},
        {16, 115200, ",n,8,1", 16, "115200,n,8,1"},
        {1, 4800, ",o,8,1", 1, "4800,o,8,1"},
        // Unknown rates count as 9600; another number leaves the port before.
        {0, 0, ",e,8,1", 1, "9600,e,8,1"},
        {17, 115201, ",n,8,1", 1, "9600,n,8,1"}};
    TestProgram test;
    for (const auto& [comPort, baudRate, frameFormat, number, settings] : cases) {
        test.program.ComPort = comPort;
        test.program.BaudRate = baudRate;
        test.program.FrameFormat = frameFormat;
        OpenPort(test.program);
        EXPECT_EQ(test.serial.openings.back().number, number);
        EXPECT_EQ(test.serial.openings.back().settings, settings);
        ClosePort(test.program);
    }
    EXPECT_EQ(test.serial.openings.size(), std::size(cases));
    EXPECT_TRUE(test.desktop.boxes.empty());
}

TEST(Port, FailuresAreReportedOnceAndTheCallerGoesOn) {
    using enum PortError;
    const std::pair<PortError, const char*> cases[] = {
        {NotThere, ",e,8,1"}, {InUse, ",e,8,1"}, {Failed, ",e,8,1"}, {PortError::None, ",e,8,1,"}};
    for (const auto& [error, frameFormat] : cases) {
        TestProgram test;
        test.configure();
        test.program.FrameFormat = frameFormat;
        test.serial.openErrors = {{3, error}};
        test.desktop.answers = {MessageAnswer::Cancel};  // which has no effect
        OpenPort(test.program);
        EXPECT_EQ(test.desktop.boxes, portMissing) << frameFormat;
        EXPECT_EQ(SendReadRequest(test.program, 3, 9800, 1), "CRC_TIMEOUT");
        EXPECT_TRUE(test.serial.written.empty());
    }
}

TEST(Port, OpenedTwiceItStaysAsItWas) {
    TestProgram test;
    test.configure();
    OpenPort(test.program);
    test.program.ComPort = 4;
    test.program.BaudRate = 1200;
    OpenPort(test.program);
    EXPECT_EQ(test.desktop.boxes, portMissing);
    EXPECT_EQ(probePort(test.program, 4), PortError::InUse);
    EXPECT_TRUE(test.serial.isOpen());
    EXPECT_EQ(test.serial.portNumber(), 3);
    EXPECT_EQ(test.serial.settings(), "9600,e,8,1");
    ClosePort(test.program);
    EXPECT_FALSE(test.serial.isOpen());
}

}  // namespace
}  // namespace vek
