#include "simulator/devicetypes.h"

#include <algorithm>

namespace vek::sim {
namespace {

using enum Quantity;
using Channels = std::array<Quantity, channelCount>;

constexpr Channels withImpedance{Insulation,   Impedance,    Voltage,       Capacitance,
                                 VoltagePlus,  VoltageMinus, FaultPosition, DisplacementInsulation,
                                 UpdateCounter};
constexpr Channels ordinary{Insulation,   None,         Voltage,       Capacitance,
                            VoltagePlus,  VoltageMinus, FaultPosition, DisplacementInsulation,
                            UpdateCounter};
constexpr Channels withRmsVoltage{Insulation,   RmsVoltage,    Voltage, None,         VoltagePlus,
                                  VoltageMinus, FaultPosition, None,    UpdateCounter};
constexpr Channels battery{Insulation,   None,          Voltage, Capacitance,  VoltagePlus,
                           VoltageMinus, FaultPosition, None,    UpdateCounter};

// The faults stay between a fifth of the pre-alarm and well below the alarm threshold that leaves the
// factory.
constexpr std::array<DeviceType, highestDeviceType> types{{
    {1, "vekQB731-K7W-2", withImpedance, 4e6, 500e-6, 230.0, 0.04e-6, 20e3, 1731},
    {2, "vekQC731-K7W-2", withImpedance, 4e6, 500e-6, 230.0, 0.04e-6, 20e3, 2731},
    {3, "vekQA731-K75-2", ordinary, 1e6, 500e-6, 400.0, 1.5e-6, 20e3, 3731},
    {4, "vekQD731-K7-5", ordinary, 1e6, 500e-6, 400.0, 1.5e-6, 20e3, 4731},
    {5, "vekQC731QF-K7W-2", ordinary, 5e6, 500e-6, 400.0, 0.8e-6, 20e3, 5731},
    {6, "vekQE731-K7-2", withImpedance, 4e6, 500e-6, 230.0, 0.04e-6, 20e3, 6731},
    {7, "vekQF731-K7-2", ordinary, 4e6, 500e-6, 690.0, 3.0e-6, 20e3, 7731},
    {8, "vekQG731-K7-2", withRmsVoltage, 1e6, 500e-6, 110.0, 10e-6, 10e3, 8731},
    {9, "vekQH731-K7-2", battery, 10e6, 1.6e-6, 216.0, 1.2e-6, 20e3, 9731},
    {10, "vekQLN729-K7-2", ordinary, 2e6, 500e-6, 230.0, 1.0e-6, 20e3, 10729},
}};
static_assert(types.back().number == highestDeviceType, "a type lacks its row");

}  // namespace

std::span<const DeviceType> deviceTypes() {
    return types;
}

const DeviceType* findDeviceType(int number) {
    const auto* found = std::ranges::find(types, number, &DeviceType::number);
    return found == types.end() ? nullptr : found;
}

}  // namespace vek::sim
