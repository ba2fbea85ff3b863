#include <gtest/gtest.h>

#include "master.h"

namespace vek::sim {
namespace {

using namespace std::chrono_literals;

const Bytes nameRequest = hex("03 03 26 48 00 01 0E B6");
const Bytes nameReply = withCrc(hex("03 03 02 76 65"));

LineFault fault(const char* text) {
    return std::get<LineFault>(parseFault(text));
}

TEST(Frames, ThatAreSpoiledGetNoAnswerAndDoNoHarm) {
    Bytes longer = nameRequest;
    longer.push_back(0);
    Master master;
    for (const Bytes& frame :
         {hex("04 03 26 48 00 01 0F 01"), longer, hex("FF 00 03 26 48 00 01 0E B6"), hex("03 10 0B BF 00 01"),
          Bytes(300, 0x55), hex("03"), hex("03 03 26 48 00 01 0E B7"), hex("03 06 0B BF 00 05 7B EC")}) {
        EXPECT_EQ(master.send(frame), Bytes()) << frame.size();
        EXPECT_EQ(master.send(nameRequest), nameReply);
    }
    // Without a pause two frames are one spoiled frame.
    master.line.receive(hex("03 03 26 48"), master.now);
    master.line.receive(nameRequest, master.now + 1ms);
    EXPECT_EQ(master.collect(), Bytes());
}

TEST(Pacing, BytesTakeTheirTimeAtTheDevicesOwnRate) {
    LineOptions options;
    options.pace = true;
    options.turnaround = 10ms;
    Master master(options);
    const Time perByte = Time(1s) * 11 / 9600;
    master.line.receive(nameRequest, 0ms);
    Time due = perByte * 8 + 10ms;
    for (const std::uint8_t byte : nameReply) {
        due += perByte;
        ASSERT_EQ(master.line.nextEvent(), due);
        EXPECT_EQ(master.line.transmit(due - 1ns), Bytes());
        EXPECT_EQ(master.line.transmit(due), Bytes{byte});
    }
    EXPECT_EQ(master.line.nextEvent(), std::nullopt);
}

TEST(Faults, SpoilOrMultiplyTheReply) {
    // The length of the reply, and whether its CRC is right.
    const std::tuple<const char*, std::size_t, bool> rows[] = {
        {"silence", 0, false},  {"crc", 7, false},        {"cut=3", 3, false},     {"cut=0", 0, false},
        {"noise=4", 11, false}, {"exception=6", 5, true}, {"lacks=9800", 5, true}, {"refuses=9800", 7, true},
        {"late=1500", 7, true}, {"trail=4", 11, false},   {"flip=1", 7, false}};
    for (const auto& [text, length, goodCrc] : rows) {
        Master master;
        master.line.faults().add(fault(text));
        const Bytes reply = master.send(nameRequest);
        EXPECT_EQ(reply.size(), length) << text;
        EXPECT_EQ(hasValidCrc(reply), goodCrc) << text;
        EXPECT_EQ(master.now >= 1500ms, std::string_view(text) == "late=1500");
        master.line.faults().clear();
        EXPECT_EQ(master.send(nameRequest), nameReply);
    }
    const std::pair<const char*, Bytes> whole[] = {
        {"double", hex("03 03 02 76 65 27 CF 03 03 02 76 65 27 CF")},
        {"echo", hex("03 03 26 48 00 01 0E B6 03 03 02 76 65 27 CF")},
        {"foreign", withCrc(hex("04 03 02 76 65"))}};
    for (const auto& [text, reply] : whole) {
        Master master;
        master.line.faults().add(fault(text));
        EXPECT_EQ(master.send(nameRequest), reply) << text;
    }
}

TEST(Faults, StrikeTheRequestsTheyAreMeantFor) {
    // For reads of 9800, 3007, 9800, 3007, ...
    const std::pair<const char*, std::string> rows[] = {{"silence,every=3", "..x..x..x."},
                                                        {"silence,from=4", "...xxxxxxx"},
                                                        {"silence,from=4,times=2", "...xx....."},
                                                        {"silence,register=3007", ".x.x.x.x.x"},
                                                        {"silence,register=3007,every=2", "...x...x.."}};
    for (const auto& [text, expected] : rows) {
        Master master;
        master.line.faults().add(fault(text));
        std::string struck;
        for (int i = 0; i < 10; ++i) {
            struck += master.read(i % 2 == 0 ? 9800 : 3007) == -100 ? 'x' : '.';
        }
        EXPECT_EQ(struck, expected) << text;
    }
}

TEST(Faults, AHangUpTakesTheLineAwayForAWhile) {
    Master master;
    master.line.faults().add(fault("hangup=2.5,times=1"));
    master.line.receive(nameRequest, 0ms);
    EXPECT_TRUE(master.line.isDown(2499ms));
    EXPECT_EQ(master.line.nextEvent(), 2500ms);
    master.line.receive(nameRequest, 1s);
    EXPECT_EQ(master.line.transmit(2500ms), Bytes());
    EXPECT_FALSE(master.line.isDown(2500ms));
    EXPECT_EQ(master.line.nextEvent(), std::nullopt);
    master.now = 3s;
    EXPECT_EQ(master.send(nameRequest), nameReply);
}

}  // namespace
}  // namespace vek::sim
