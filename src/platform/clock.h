#pragma once

#include <chrono>
#include <thread>

namespace vek {

using Clock = std::chrono::steady_clock;
using TimePoint = Clock::time_point;
using Milliseconds = std::chrono::milliseconds;

/// A time that goes by: the machine's own, or in tests one that only they move.
class PassingTime {
  public:
    virtual ~PassingTime() = default;

    virtual TimePoint now() const { return Clock::now(); }

    /// Returns at that time, at once when it has passed.
    virtual void sleepUntil(TimePoint time) { std::this_thread::sleep_until(time); }
};

}  // namespace vek
