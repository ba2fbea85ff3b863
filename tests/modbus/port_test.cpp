#include <gtest/gtest.h>

#include "modbus/ModBusLink1.h"
#include "support/testprogram.h"

namespace vek {
namespace {

const std::vector<std::string> portMissing = {"Fehler|-|ok+cancel|Schnittstelle nicht vorhanden"};

struct SettingsCase {
    std::int32_t baudRate;
    const char* frameFormat;
    const char* settings;
};

TEST(Port, SettingsText) {
    const SettingsCase cases[] = {
        {1200, ",e,8,1", "1200,e,8,1"},   {2400, ",n,8,1", "2400,n,8,1"},
        {4800, ",o,8,1", "4800,o,8,1"},   {9600, ",e,7,1", "9600,e,7,1"},
        {19200, ",e,8,1", "19200,e,8,1"}, {38400, ",e,8,1", "38400,e,8,1"},
        {57600, ",e,8,1", "57600,e,8,1"}, {115200, ",e,8,1", "115200,e,8,1"},
        {0, ",e,8,1", "9600,e,8,1"},      {12, ",n,8,1", "9600,n,8,1"},
        {-1200, ",n,8,1", "9600,n,8,1"},  {300, ",n,8,1", "9600,n,8,1"},
        {115201, ",n,8,1", "9600,n,8,1"}, {2147483647, ",n,8,1", "9600,n,8,1"},
    };
    for (const SettingsCase& c : cases) {
        TestProgram test;
        test.configure();
        test.program.BaudRate = c.baudRate;
        test.program.FrameFormat = c.frameFormat;
        OpenPort(test.program);
        ASSERT_EQ(test.serial.openings.size(), 1U) << c.baudRate;
        EXPECT_EQ(test.serial.openings[0].number, 3);
        EXPECT_EQ(test.serial.openings[0].settings, c.settings);
        EXPECT_TRUE(test.desktop.boxes.empty()) << c.baudRate;
    }
}

TEST(Port, NumbersOutside1To16LeaveTheOneBefore) {
    TestProgram test;
    test.configure();
    for (const auto& [comPort, opened] :
         {std::pair<std::int16_t, int>{0, 1}, {16, 16}, {17, 16}, {-1, 16}, {1, 1}}) {
        test.program.ComPort = comPort;
        OpenPort(test.program);
        EXPECT_EQ(test.serial.openings.back().number, opened) << comPort;
        ClosePort(test.program);
    }
    EXPECT_TRUE(test.desktop.boxes.empty());
}

TEST(Port, FailuresAreReportedOnceAndTheCallerGoesOn) {
    for (const PortError error : {PortError::NotThere, PortError::InUse, PortError::NotPermitted,
                                  PortError::SettingsRefused, PortError::Failed}) {
        TestProgram test;
        test.configure();
        test.serial.openErrors = {{3, error}};
        test.desktop.answers = {MessageAnswer::Cancel};  // which has no effect
        OpenPort(test.program);
        EXPECT_EQ(test.desktop.boxes, portMissing);
        EXPECT_EQ(SendReadRequest(test.program, 3, 9800, 1), "CRC_TIMEOUT");
        EXPECT_TRUE(test.serial.written.empty());
    }
    for (const char* frameFormat : {"", "e,8,1", ",x,8,1", ",e,8,1,", "rubbish"}) {
        TestProgram test;
        test.configure();
        test.program.FrameFormat = frameFormat;
        OpenPort(test.program);
        EXPECT_EQ(test.desktop.boxes, portMissing) << frameFormat;
        EXPECT_FALSE(test.serial.isOpen()) << frameFormat;
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
    EXPECT_TRUE(test.serial.isOpen());
    EXPECT_EQ(test.serial.portNumber(), 3);
    EXPECT_EQ(test.serial.settings(), "9600,e,8,1");
    ClosePort(test.program);
    ClosePort(test.program);
    EXPECT_EQ(test.serial.closeCount, 1);
}

TEST(Port, ExistsWhenItCanBeOpened) {
    TestProgram test;
    test.serial.openErrors = {{2, PortError::InUse}, {5, PortError::NotThere}};
    for (int n = 0; n <= 17; ++n) {
        EXPECT_EQ(PortExists(test.program, n), n >= 1 && n <= 16 && n != 2 && n != 5) << n;
        EXPECT_FALSE(test.serial.isOpen()) << n;
    }
    test.configure();
    OpenPort(test.program);
    EXPECT_FALSE(PortExists(test.program, 3)) << "its own, but open";
    EXPECT_TRUE(test.serial.isOpen());
    EXPECT_TRUE(test.desktop.boxes.empty());
}

}  // namespace
}  // namespace vek
