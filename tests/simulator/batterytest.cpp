#include <gtest/gtest.h>

#include "master.h"
#include "simulator/battery.h"

namespace vek::sim {
namespace {

constexpr int alarmMask = 0x700;

LineOptions playing(const char* scene, int type = 9) {
    LineOptions options = ofType(type);
    EXPECT_TRUE(options.device.battery.add(scene)) << scene;
    return options;
}

// Alarm states of the string voltage and of L+, the capacitance's range.
std::array<int, 3> states(Master& master) {
    return {master.status(2) & alarmMask, master.status(4) & alarmMask, master.status(3) & rangeMask};
}

TEST(Battery, ScenesRaiseTheAlarmsThatBelongToThem) {
    const std::pair<const char*, std::array<int, 3>> rows[] = {
        {"normal", {0, 0, 0}},
        {"open-string", {0, alarm, 0}},
        {"voltage-fault", {alarm, alarm, 0}},
        {"cross-fault-plus", {alarm, 0, 0}},
        {"cross-fault-minus", {alarm, 0, 0}},
        {"irrelevant-cross-fault", {alarm, 0, 0}},
        {"over-range-capacitance", {0, 0, rangeGreater}},
    };
    for (const auto& [scene, expected] : rows) {
        Master master(playing(scene));
        EXPECT_EQ(states(master), expected) << scene;
        EXPECT_NEAR(master.value(4) - master.value(5), master.value(2), 0.01F) << scene;
    }
}

TEST(Battery, AllScenesFollowEachOtherAndBeginAgain) {
    Master master(playing("all"));
    std::vector<std::array<int, 3>> seen;
    for (std::size_t scene = 0; scene <= batteryScenes().size(); ++scene) {
        master.now = fromSeconds(20.0 * static_cast<double>(scene) + 5);
        seen.push_back(states(master));
    }
    EXPECT_EQ(seen[1], (std::array<int, 3>{0, alarm, 0}));
    EXPECT_EQ(seen[2], (std::array<int, 3>{alarm, alarm, 0}));
    EXPECT_EQ(seen[6], (std::array<int, 3>{0, 0, rangeGreater}));
    EXPECT_EQ(seen.back(), seen.front());
}

TEST(Battery, IsForTheBatteryTypeAlone) {
    EXPECT_EQ(Master(playing("voltage-fault", 1)).status(2) & alarmMask, 0);
    BatteryPlay play;
    EXPECT_FALSE(play.add("burning"));
    EXPECT_EQ(play.at(0), nullptr);
}

}  // namespace
}  // namespace vek::sim
