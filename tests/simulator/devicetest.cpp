#include <gtest/gtest.h>

#include <tuple>
#include <vector>

#include "master.h"

namespace vek::sim {
namespace {

constexpr int preAlarmState = 0x100;
constexpr int alarmState = 0x500;
constexpr int alarmMask = 0x700;
constexpr int rangeMask = 0xC0;
constexpr int testMask = 0xC000;

TEST(Registers, AnswerWholeFramesAsGiven) {
    const std::pair<const char*, const char*> rows[] = {
        {"03 03 26 48 00 0A 4F 71",
         "03 03 14 76 65 6B 51 42 37 33 31 2D 4B 37 57 2D 32 00 00 00 00 00 00 BA 26"},
        {"03 03 26 5D 00 01 1F 72", "03 03 02 00 D4 C1 DB"},
        {"03 03 0B BF 00 01 B6 28", "03 03 02 00 32 40 51"},
        {"03 10 0B BF 00 01 02 00 2D DF 22", "03 10 0B BF 00 01 33 EB"},
        {"03 10 1F 46 00 01 02 43 4C 6F 92", "03 10 1F 46 00 01 E6 2A"},
        {"03 03 03 E8 00 04 C5 9B", "03 03 08 47 43 50 00 01 02 00 47 45 23"},
        {"03 06 0B BF 00 05 7B EB", "03 86 01 22 60"},
    };
    Master master;
    master.line.device().pin(0, {50000.0F, 0x0102, 71});
    for (const auto& [request, reply] : rows) {
        EXPECT_EQ(master.send(hex(request)), hex(reply)) << request;
    }
}

TEST(Registers, RefuseWhatIsNotThere) {
    Master master;
    for (const int reg : {0, 999, 1036, 3002, 8005, 9810, 65535}) {
        EXPECT_EQ(master.read(reg), -2) << reg;
    }
    EXPECT_EQ(master.readBlock(1000, 36).size(), 77U);
    EXPECT_EQ(master.readBlock(1000, 37)[2], 2);
    EXPECT_EQ(master.readBlock(9800, 126)[2], 3);
    EXPECT_EQ(master.write(1000, {1}), -2);
    EXPECT_EQ(master.write(3007, {}), -3);
}

// What fits is written all day by the editor's tests.
TEST(Parameters, WhatDoesNotFitTheTypeIsRefused) {
    const std::tuple<int, int, std::vector<int>> rows[] = {
        {1, 3005, {1, 991, 65535}}, {6, 3007, {0, 981}},    {3, 3005, {501}},     {7, 3007, {9, 491}},
        {8, 3009, {7, 144}},        {9, 3001, {10, 5001}},  {9, 3003, {9, 4951}}, {10, 3011, {10, 501}},
        {1, 3023, {0, 1, 550}},     {8, 3023, {0, 5, 500}}, {10, 3023, {2}},      {4, 3015, {1, 2, 91}},
        {5, 3027, {1, 0x1000}},     {9, 3029, {5}},
    };
    for (const auto& [type, reg, values] : rows) {
        for (const int value : values) {
            EXPECT_EQ(Master(ofType(type)).write(reg, {value}), -3) << type << '/' << reg << '=' << value;
        }
    }
    const std::pair<int, int> missing[] = {{3, 3001}, {6, 3022}, {4, 3023}, {9, 3008},
                                           {8, 3024}, {5, 3025}, {1, 3029}, {10, 3030}};
    for (const auto& [type, reg] : missing) {
        EXPECT_EQ(Master(ofType(type)).read(reg), -2) << type << '/' << reg;
        EXPECT_EQ(Master(ofType(type)).write(reg, {0}), -2) << type << '/' << reg;
    }
}

TEST(Commands, FactoryResetsKeepOrRestoreTheInterface) {
    Master master;
    EXPECT_EQ(master.write(3007, {45}), 0);
    EXPECT_EQ(master.write(3017, {0}), 0);
    EXPECT_EQ(master.write(3015, {7}), 0);
    EXPECT_EQ(master.read(3007), -100);
    master.address = 7;
    EXPECT_EQ(master.write(8004, {0x4653}), 0);
    EXPECT_EQ(master.read(3007), 50);
    EXPECT_EQ(master.read(3017), 0);
    EXPECT_EQ(master.write(8003, {0x4661}), -3);
    EXPECT_EQ(master.write(8003, {0x6661}), 0);
    EXPECT_EQ(master.read(3015), -100);
    master.address = 3;
    EXPECT_EQ(master.read(3017), 2);
}

TEST(Commands, CalibrationAndSelfTestLastAWhile) {
    Master master;
    EXPECT_EQ(master.write(8001, {0x7675}), -3) << "without the first word";
    EXPECT_EQ(master.write(8000, {0x716F}), 0);
    EXPECT_EQ(master.write(8001, {0x7675}), 0);
    EXPECT_EQ(master.status(0) & rangeMask, 0xC0);
    master.wait(11);
    EXPECT_NE(master.status(0) & rangeMask, 0xC0);
    EXPECT_EQ(Master(ofType(9)).write(8000, {0x716F}), -2);

    EXPECT_EQ(master.write(8005, {0x5445}), 0);
    EXPECT_EQ(master.status(8) & testMask, 0x4000);
    master.wait(6);
    EXPECT_EQ(master.status(0) & testMask, 0);
    EXPECT_EQ(master.write(3021, {1}), 0);
    master.wait(3600 - 7.5);
    EXPECT_EQ(master.status(0) & testMask, 0);
    master.wait(3);
    EXPECT_EQ(master.status(0) & testMask, 0x4000) << "an hour after the last test";
}

TEST(AlarmStates, WaitForTheirDelaysAndLatch) {
    Master master;
    Device& device = master.line.device();
    const auto stateAfter = [&](double seconds) {
        master.wait(seconds);
        return master.status(0) & alarmMask;
    };
    device.pin(0, {200e3F, {}, {}});
    EXPECT_EQ(master.write(3019, {4, 8}), 0);
    EXPECT_EQ(stateAfter(1), 0);
    device.pin(0, {99.9e3F, {}, {}});
    EXPECT_EQ(stateAfter(3.5), 0);
    EXPECT_EQ(stateAfter(1.5), preAlarmState);
    device.pin(0, {49.9e3F, {}, {}});
    EXPECT_EQ(stateAfter(5), alarmState);
    device.pin(0, {200e3F, {}, {}});
    EXPECT_EQ(stateAfter(7), alarmState);
    EXPECT_EQ(stateAfter(2), 0);

    EXPECT_EQ(master.write(3012, {1}), 0);
    device.pin(0, {10e3F, {}, {}});
    EXPECT_EQ(stateAfter(5), alarmState);
    EXPECT_EQ(master.write(8006, {0x434C}), 0);
    EXPECT_EQ(stateAfter(0), alarmState) << "the fault is still there";
    device.pin(0, {200e3F, {}, {}});
    EXPECT_EQ(stateAfter(60), alarmState);
    EXPECT_EQ(master.write(8006, {0x434C}), 0);
    EXPECT_EQ(stateAfter(0), 0);
}

TEST(AlarmStates, FollowThresholdsAndSwitches) {
    // Type, channel, value, state, description, and the write that ends it.
    const std::tuple<int, int, float, int, int, std::pair<int, int>> rows[] = {
        {1, 0, 40e3F, alarmState, 71, {3006, 0}},    {1, 1, 40e3F, preAlarmState, 86, {3022, 0}},
        {2, 2, 100.0F, alarmState, 77, {3008, 0}},   {3, 2, 470.0F, alarmState, 78, {3010, 0}},
        {8, 1, 140.0F, alarmState, 78, {3011, 144}}, {9, 4, 200.0F, 0, 76, {3012, 1}},
        {9, 2, 300.0F, alarmState, 78, {3005, 310}},
    };
    for (const auto& [type, channel, value, state, description, off] : rows) {
        SCOPED_TRACE(testing::Message() << "type " << type << ", channel " << channel);
        Master master(ofType(type));
        master.line.device().pin(static_cast<std::size_t>(channel), {value, {}, {}});
        master.wait(1);
        EXPECT_EQ(master.status(channel) & alarmMask, state);
        EXPECT_EQ(master.description(channel), description);
        EXPECT_EQ(master.write(off.first, {off.second}), 0);
        master.wait(1);
        EXPECT_NE(master.status(channel) & alarmMask, alarmState);
    }
}

TEST(Channels, StatesFromOutsideAndOutOfRange) {
    LineOptions options;
    options.device.conditions = {.deviceFault = true, .warning = true, .externalTest = true};
    Master master(options);
    EXPECT_EQ(master.status(0), 0x8000 | 0x200 | 0xC0 | 2);
    EXPECT_EQ(master.description(0), 115);
    EXPECT_EQ(master.status(2), 0x8000 | 0x400 | 4);
    master.line.device().setConditions({.earthWarning = true});
    EXPECT_EQ(master.status(0) & alarmMask, 0x400);
    EXPECT_EQ(master.description(0), 102);
    EXPECT_EQ(master.status(2), 4);
    EXPECT_EQ(master.status(6) & rangeMask, 0xC0) << "no fault to place";
    EXPECT_EQ(master.write(3026, {1}), 0);
    const float counter = master.value(8);
    master.wait(10);
    EXPECT_EQ(master.value(8), counter) << "stopped devices do not measure";
}

}  // namespace
}  // namespace vek::sim
