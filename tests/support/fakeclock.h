#pragma once

#include <chrono>

#include "platform/clock.h"

namespace vek {

/// Time that only a test moves.
class FakeClock {
  public:
    TimePoint now() const { return now_; }
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
