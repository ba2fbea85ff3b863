#pragma once

#include <chrono>

namespace vek {

using Clock = std::chrono::steady_clock;
using TimePoint = Clock::time_point;
using Milliseconds = std::chrono::milliseconds;

}  // namespace vek
