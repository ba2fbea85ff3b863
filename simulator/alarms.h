#pragma once

#include <array>
#include <cstdint>

#include "simulator/devicetypes.h"
#include "simulator/parameters.h"
#include "simulator/time.h"

namespace vek::sim {

// Alarm field of a channel's status word.
inline constexpr std::uint16_t noAlarm = 0x000;
inline constexpr std::uint16_t preAlarm = 0x100;
inline constexpr std::uint16_t deviceFault = 0x200;
inline constexpr std::uint16_t warning = 0x400;
inline constexpr std::uint16_t alarm = 0x500;

// The measured values of one measuring cycle in base units (ohms, volts, farads), indexed by Quantity.
class Measurement {
  public:
    double& operator[](Quantity quantity) { return values_[static_cast<std::size_t>(quantity)]; }
    double operator[](Quantity quantity) const { return values_[static_cast<std::size_t>(quantity)]; }

  private:
    std::array<double, quantityCount> values_{};
};

// The alarms that a device judges by what it measures.
enum class AlarmId : std::uint8_t {
    InsulationWarning,
    InsulationAlarm,
    ImpedanceWarning,
    ImpedanceAlarm,
    Undervoltage,
    Overvoltage,
    RmsUndervoltage,
    RmsOvervoltage,
    CrossFault,
    BatteryLow,
    BatteryHigh,
};

// An alarm that comes after its condition has held for the response delay and goes after the condition
// has been gone for the release delay, or not before it is cleared when it latches.
class DelayedAlarm {
  public:
    struct Timing {
        Time response;
        Time release;
        bool latches;
    };

    void update(bool condition, Time now, const Timing& timing);
    // Forgets an alarm whose condition is gone; one whose condition lasts stays.
    void clear() { active_ = active_ && condition_; }
    bool isActive() const { return active_; }

  private:
    bool condition_ = false;
    bool active_ = false;
    Time since_{};
};

// What the alarms make of one channel.
struct AlarmDisplay {
    std::uint16_t state = noAlarm;
    std::uint16_t description = 0;  // 0 while there is no alarm
};

// All alarms of a device, judged by its own parameters.
class Alarms {
  public:
    // Judges one measuring cycle. Times must not run backwards.
    void update(const Measurement& measurement, const ParameterSet& parameters, Time now);
    void clear();
    bool isActive(AlarmId id) const { return alarms_.at(static_cast<std::size_t>(id)).isActive(); }
    // The most severe active alarm of the channel that carries this quantity.
    AlarmDisplay of(Quantity quantity) const;

  private:
    static constexpr std::size_t alarmCount = 11;
    std::array<DelayedAlarm, alarmCount> alarms_;
};

}  // namespace vek::sim
