#pragma once

#include <chrono>

namespace vek::sim {

// A moment or a span on the clock that the caller owns; only differences count, so any zero will do.
// Nanoseconds, because one character at 115200 bit/s is no whole number of microseconds.
using Time = std::chrono::nanoseconds;

inline double inSeconds(Time time) {
    return std::chrono::duration<double>(time).count();
}

inline Time fromSeconds(double seconds) {
    return std::chrono::duration_cast<Time>(std::chrono::duration<double>(seconds));
}

}  // namespace vek::sim
