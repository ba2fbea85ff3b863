#include <gtest/gtest.h>

#include "master.h"
#include "simulator/battery.h"

namespace vek::sim {
namespace {

constexpr int alarmMask = 0x700;

LineOptions playing(const char* scene, int type) {
    LineOptions options = ofType(type);
    EXPECT_TRUE(options.device.battery.add(scene)) << scene;
    return options;
}

// Each scene by itself is what the battery monitor's tests watch.
TEST(Battery, AllScenesFollowEachOtherAndBeginAgain) {
    Master master(playing("all", 9));
    // Alarm states of the string voltage and of L+, the capacitance's range.
    const auto states = [&](double seconds) {
        master.now = fromSeconds(seconds);
        return std::array<int, 3>{master.status(2) & alarmMask, master.status(4) & alarmMask,
                                  master.status(3) & rangeGreater};
    };
    const std::array<int, 3> normal{0, 0, 0};
    EXPECT_EQ(states(5), normal);
    EXPECT_EQ(states(25), (std::array<int, 3>{0, alarm, 0}));
    EXPECT_EQ(states(45), (std::array<int, 3>{alarm, alarm, 0}));
    EXPECT_EQ(states(125), (std::array<int, 3>{0, 0, rangeGreater}));
    EXPECT_EQ(states(145), normal);
}

TEST(Battery, IsForTheBatteryTypeAlone) {
    EXPECT_EQ(Master(playing("voltage-fault", 1)).status(2) & alarmMask, 0);
    BatteryPlay play;
    EXPECT_FALSE(play.add("burning"));
    EXPECT_EQ(play.at(0), nullptr);
}

}  // namespace
}  // namespace vek::sim
