#include "simulator/battery.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>

namespace vek::sim {
namespace {

constexpr double secondsPerScene = 20.0;

// The string has 216 V. The factory's thresholds make the alarms: the string below 180 V, or poles that stand
// 120 V unequally against earth.
constexpr std::array<BatteryScene, 7> scenes{{
    {"normal", "a healthy string", 108, -108, 4e6, 1.2e-6},
    {"open-string", "the string is interrupted", 108, -108, 4e6, 1.2e-6, true},
    {"voltage-fault", "the string's voltage is too low", 75, -75, 4e6, 1.2e-6},
    {"cross-fault-plus", "a cross fault, to be counted from L+", 20, -196, 50e3, 1.2e-6},
    {"cross-fault-minus", "a cross fault, to be counted from L-", -20, -236, 60e3, 1.2e-6},
    {"irrelevant-cross-fault", "a cross fault with a voltage from outside", 250, 34, 20e3, 1.2e-6},
    {"over-range-capacitance", "more capacitance than the device can measure", 110, -106, 2e6, 2e-6},
}};

}  // namespace

std::span<const BatteryScene> batteryScenes() {
    return scenes;
}

bool BatteryPlay::add(std::string_view name) {
    if (name == "all") {
        std::ranges::transform(scenes, std::back_inserter(scenes_), [](const auto& scene) { return &scene; });
        return true;
    }
    const auto* found = std::ranges::find(scenes, name, &BatteryScene::name);
    if (found == scenes.end()) {
        return false;
    }
    scenes_.push_back(found);
    return true;
}

const BatteryScene* BatteryPlay::at(double seconds) const {
    if (scenes_.empty()) {
        return nullptr;
    }
    const double scene =
        std::fmod(std::floor(seconds / secondsPerScene), static_cast<double>(scenes_.size()));
    return scenes_[static_cast<std::size_t>(scene)];
}

}  // namespace vek::sim
