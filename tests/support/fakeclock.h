#pragma once

#include <chrono>

#include "platform/clock.h"

namespace vek {

/// Time that only a test moves.
class FakeClock final : public PassingTime {
  public:
    TimePoint now() const override { return now_; }
    void sleepUntil(TimePoint time) override { advanceTo(time); }
    void advance(Clock::duration span) { now_ += span; }

    /// Moves to that time; never back.
    void advanceTo(TimePoint time) {
        if (time > now_) {
            now_ = time;
        }
    }

  private:
    TimePoint now_{std::chrono::hours{1}};
};

}  // namespace vek
