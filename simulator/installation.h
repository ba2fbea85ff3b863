#pragma once

#include <cstdint>

#include "simulator/devicetypes.h"

namespace vek::sim {

// What there is to measure at one moment.
struct InstallationState {
    double resistancePlus;   // ohms between L1/+ and earth
    double resistanceMinus;  // ohms between L2/- and earth
    double supplyVoltage;    // volts between L1/+ and L2/-
    double capacitance;      // farads against earth

    // Both sides in parallel, in ohms.
    double insulation() const;
    // Where the fault lies: 100 % when all of it is on L1/+, -100 % when all of it is on L2/-.
    double faultPosition() const;
};

// The installation that a device watches. It goes round a cycle of one minute: healthy, a fault on L1/+ that
// builds up over pre-alarm and alarm and heals, healthy, the same on L2/-. Its state is a function of seed
// and time alone, so a run repeats whatever is asked and however often.
class Installation {
  public:
    Installation(const DeviceType& type, std::uint32_t seed) : type_(type), seed_(seed) {}

    // `seconds` counts from the start of the first cycle, 0 or more.
    InstallationState at(double seconds) const;

  private:
    double wander(std::uint32_t stream, double period, double seconds) const;
    double faultConductance(double secondsOfSide, double healthyResistance) const;

    const DeviceType& type_;
    std::uint32_t seed_;
};

}  // namespace vek::sim
