#include "support/fakeserial.h"

#include <gtest/gtest.h>

namespace vek {
namespace {

// Other tests believe what this stand-in does; it has to do as the real port does.

class FakeSerialTest : public testing::Test {
  protected:
    FakeClock clock;
    FakeSerial serial{clock};
    TimePoint begin = clock.now();

    Milliseconds elapsed() const { return std::chrono::duration_cast<Milliseconds>(clock.now() - begin); }
};

TEST_F(FakeSerialTest, WaitsEndAtTheByteOrAtTheDeadline) {
    serial.peer = [this](std::string_view frame) { serial.reply(frame, Milliseconds{10}, Milliseconds{2}); };
    ASSERT_EQ(serial.open(), PortError::None);
    serial.writeOutput("abcde");
    EXPECT_EQ(serial.receivedCount(), 0U);
    EXPECT_TRUE(serial.waitReceived(3, begin + Milliseconds{100}));
    EXPECT_EQ(elapsed(), Milliseconds{14});
    EXPECT_EQ(serial.readInput(), "abc");
    EXPECT_FALSE(serial.waitReceived(3, begin + Milliseconds{100}));
    EXPECT_EQ(elapsed(), Milliseconds{100});
    EXPECT_EQ(serial.readInput(), "de");
    EXPECT_EQ(serial.written, std::vector<Bytes>{"abcde"});
}

TEST_F(FakeSerialTest, PortsOpenFailAndCloseAsTheTestSays) {
    serial.openErrors = {{2, PortError::InUse}, {3, PortError::NotPermitted}, {4, PortError::NotThere}};
    for (const auto& [number, error] : serial.openErrors) {
        EXPECT_TRUE(serial.setPortNumber(number));
        EXPECT_EQ(serial.open(), error);
    }
    EXPECT_TRUE(serial.setPortNumber(5));
    EXPECT_FALSE(serial.setSettings("9600"));
    EXPECT_TRUE(serial.setSettings("9600,e,7,1"));
    EXPECT_EQ(serial.open(), PortError::None);
    EXPECT_EQ(serial.open(), PortError::InUse);
    EXPECT_FALSE(serial.setPortNumber(6));
    serial.reply("lost on closing");
    serial.close();
    serial.close();
    serial.writeOutput("x");
    EXPECT_EQ(serial.receivedCount(), 0U);
    EXPECT_EQ(serial.closeCount, 1);
    ASSERT_EQ(serial.openings.size(), 1U);
    EXPECT_EQ(serial.openings[0].number, 5);
    EXPECT_EQ(serial.openings[0].settings, "9600,e,7,1");
    EXPECT_EQ(serial.lost, std::vector<Bytes>{"x"});
}

TEST_F(FakeSerialTest, SendingTakesItsTimeUnlessTheLineStandsStill) {
    serial.sendTime = Milliseconds{8};
    ASSERT_EQ(serial.open(), PortError::None);
    serial.writeOutput("abc");
    serial.writeOutput("de");
    EXPECT_EQ(serial.sendQueueCount(), 5U);
    clock.advance(Milliseconds{8});
    EXPECT_EQ(serial.sendQueueCount(), 2U);
    serial.waitSent();
    EXPECT_EQ(elapsed(), Milliseconds{16});
    serial.sendTime = std::chrono::hours{1};
    serial.writeOutput("f");
    serial.waitSent();
    EXPECT_EQ(elapsed(), Milliseconds{1016});
    EXPECT_EQ(serial.sendQueueCount(), 1U);
}

TEST_F(FakeSerialTest, AVanishedDeviceIsSilentUntilItIsWrittenToAgain) {
    ASSERT_EQ(serial.open(), PortError::None);
    serial.reply("late", Milliseconds{50});
    serial.hangUp();
    EXPECT_FALSE(serial.waitReceived(1, begin + Milliseconds{100}));
    EXPECT_EQ(elapsed(), Milliseconds{100});
    EXPECT_TRUE(serial.isOpen());
    serial.writeOutput("x");
    EXPECT_EQ(serial.lost, std::vector<Bytes>{"x"});
    serial.plugIn();
    serial.reply("nobody listens");
    EXPECT_EQ(serial.receivedCount(), 0U);
    serial.writeOutput("y");
    serial.reply("here");
    EXPECT_EQ(serial.readInput(), "here");
}

}  // namespace
}  // namespace vek
