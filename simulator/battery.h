#pragma once

#include <cstddef>
#include <span>
#include <string_view>
#include <vector>

namespace vek::sim {

// A state of a battery string, as the battery device (type 9) would measure it.
struct BatteryScene {
    std::string_view name;
    std::string_view meaning;
    double voltagePlus;   // volts, L+ against earth
    double voltageMinus;  // volts, L- against earth
    double insulation;    // ohms
    double capacitance;   // farads
    bool open = false;    // the string is interrupted somewhere
};

// All scenes there are.
std::span<const BatteryScene> batteryScenes();

// Scenes that follow each other, each for the same time, and begin again after the last.
class BatteryPlay {
  public:
    // Adds a scene by its name, all of them for "all". False for a name that is none.
    bool add(std::string_view name);

    // The scene at that time, 0 or more; null when none has been added.
    const BatteryScene* at(double seconds) const;

  private:
    std::vector<const BatteryScene*> scenes_;
};

}  // namespace vek::sim
