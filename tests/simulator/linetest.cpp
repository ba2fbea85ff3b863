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

TEST(Frames, AreFoundInPiecesUnlessAPauseIsBetweenThem) {
    for (std::size_t piece = 1; piece <= nameRequest.size(); ++piece) {
        Master master;
        for (std::size_t i = 0; i < nameRequest.size(); i += piece) {
            const std::size_t end = std::min(i + piece, nameRequest.size());
            master.line.receive(Bytes(nameRequest.data() + i, nameRequest.data() + end), master.now);
            master.now += 1ms;
        }
        EXPECT_EQ(master.collect(), nameReply) << piece;
    }
    Master master;
    const Bytes half(nameRequest.begin(), nameRequest.begin() + 4);
    master.line.receive(half, 0ms);
    master.line.receive(nameRequest, 1ms);
    EXPECT_EQ(master.collect(), Bytes());
    master.line.receive(half, 100ms);
    master.line.receive(nameRequest, 110ms);
    EXPECT_EQ(master.collect(), nameReply);
}

TEST(Frames, ThatAreSpoiledGetNoAnswerAndDoNoHarm) {
    Bytes longer = nameRequest;
    longer.push_back(0);
    Bytes noisy = hex("FF 00");
    noisy.insert(noisy.end(), nameRequest.begin(), nameRequest.end());
    std::vector<Bytes> spoiled{hex("04 03 26 48 00 01 0F 01"), longer,           noisy,
                               hex("03 10 0B BF 00 01"),       Bytes(300, 0x55), hex("03"),
                               hex("03 06 0B BF 00 05 7B EC")};
    for (std::size_t i = 0; i < nameRequest.size(); ++i) {
        spoiled.push_back(nameRequest);
        spoiled.back()[i] ^= 0x10U;
        spoiled.emplace_back(nameRequest.begin(), nameRequest.begin() + static_cast<std::ptrdiff_t>(i));
    }
    Master master;
    for (const Bytes& frame : spoiled) {
        EXPECT_EQ(master.send(frame), Bytes()) << frame.size();
        EXPECT_EQ(master.send(nameRequest), nameReply);
    }
}

TEST(Frames, ToAddressZeroAreBroadcastsUnlessItIsTheDevicesOwn) {
    Master master;
    master.address = 0;
    EXPECT_EQ(master.write(3007, {45}), -100);
    master.address = 3;
    EXPECT_EQ(master.read(3007), 45);
    EXPECT_EQ(master.write(3015, {0}), 0);
    EXPECT_EQ(master.read(3007), -100);
    master.address = 0;
    EXPECT_EQ(master.read(3007), 45);
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

TEST(Faults, RefusedAndUnheardWritesAreNotCarriedOut) {
    for (const char* text : {"refuses=3007", "exception=4", "silence"}) {
        Master master;
        master.line.faults().add(fault(text));
        EXPECT_LT(master.write(3007, {45}), 0);
        master.line.faults().clear();
        EXPECT_EQ(master.read(3007), 50) << text;
    }
    Master master;
    master.line.faults().add(fault("crc,times=1"));
    EXPECT_EQ(master.write(3007, {45}), -100);
    EXPECT_EQ(master.read(3007), 45);
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
