#include "simulator/installation.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace vek::sim {
namespace {

constexpr double secondsPerSide = 30.0;

// The course of a fault: its resistance in multiples of the worst one, 0 standing for "no fault worth
// speaking of". The long stretch between 4.5 and 2.7 keeps it between the factory's pre-alarm (5) and alarm
// (2.5) thresholds for some seconds, so that a watcher can see each.
struct Keyframe {
    double second;
    double multiple;
};
constexpr std::array<Keyframe, 9> faultCourse{
    {{0, 0}, {8, 0}, {12, 4.5}, {17, 2.7}, {19, 1}, {24, 1}, {26, 3.5}, {29, 0}, {secondsPerSide, 0}}};

enum Stream : std::uint32_t {
    LeakageStream,
    BalanceStream,
    SideStream,
    RippleStream,
    SupplyStream,
    CapacitanceStream
};

std::uint64_t scramble(std::uint64_t x) {
    x += 0x9E3779B97F4A7C15U;
    x = (x ^ (x >> 30U)) * 0xBF58476D1CE4E5B9U;
    x = (x ^ (x >> 27U)) * 0x94D049BB133111EBU;
    return x ^ (x >> 31U);
}

}  // namespace

double InstallationState::insulation() const {
    return 1.0 / (1.0 / resistancePlus + 1.0 / resistanceMinus);
}

double InstallationState::faultPosition() const {
    return 100.0 * (resistanceMinus - resistancePlus) / (resistanceMinus + resistancePlus);
}

// Smooth noise in -1..1 that takes a new course once per period.
double Installation::wander(std::uint32_t stream, double period, double seconds) const {
    const double step = std::floor(seconds / period);
    const auto corner = [&](double index) {
        const auto key = scramble(scramble(seed_ + (static_cast<std::uint64_t>(stream) << 32U)) +
                                  static_cast<std::uint64_t>(index));
        return static_cast<double>(key >> 11U) * 0x1p-52 - 1.0;
    };
    const double x = seconds / period - step;
    return std::lerp(corner(step), corner(step + 1), x * x * (3.0 - 2.0 * x));
}

double Installation::faultConductance(double secondsOfSide, double healthyResistance) const {
    const auto resistance = [&](const Keyframe& key) {
        return key.multiple > 0 ? key.multiple * type_.faultResistance : 50.0 * healthyResistance;
    };
    const auto* next = std::ranges::upper_bound(faultCourse, secondsOfSide, {}, &Keyframe::second);
    const auto* last = next - 1;
    const double x = (secondsOfSide - last->second) / (next->second - last->second);
    return std::exp(-std::lerp(std::log(resistance(*last)), std::log(resistance(*next)), x));
}

InstallationState Installation::at(double seconds) const {
    const double side = std::floor(seconds / secondsPerSide);
    const double sign = std::fmod(side, 2.0) == 0.0 ? 1.0 : -1.0;
    const double healthy =
        0.75 * type_.insulationLimit * std::exp(0.5 * wander(LeakageStream, 15.0, seconds));
    const double fault = faultConductance(seconds - side * secondsPerSide, healthy) *
                         (1.0 + 0.015 * wander(RippleStream, 0.7, seconds));
    const double balance = 0.1 * wander(BalanceStream, 10.0, seconds);
    const double faultSide = sign * (0.8 + 0.1 * wander(SideStream, 5.0, seconds));

    const double plus = (1.0 + balance) / (2.0 * healthy) + fault * (1.0 + faultSide) / 2.0;
    const double minus = (1.0 - balance) / (2.0 * healthy) + fault * (1.0 - faultSide) / 2.0;
    return {1.0 / plus, 1.0 / minus, type_.supplyVoltage * (1.0 + 0.01 * wander(SupplyStream, 3.0, seconds)),
            type_.capacitance * (1.0 + 0.05 * wander(CapacitanceStream, 4.0, seconds))};
}

}  // namespace vek::sim
