#pragma once

#include <chrono>
#include <functional>
#include <initializer_list>
#include <utility>
#include <vector>

namespace vek::bench {

/// One sample of one side: does the work once and says how many seconds the part took that counts.
using Sample = std::function<double()>;

/// Seconds that the call takes.
template <class Call>
double secondsOf(Call&& call) {
    const auto begin = std::chrono::steady_clock::now();
    std::forward<Call>(call)();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

/// The middle one of the values, of which there must be one.
double median(std::vector<double> values);

/// The median of each side in seconds. The sides take turns sample by sample, so that whatever else the
/// machine does meets all of them alike, and each round begins with another one. A first round does not
/// count.
std::vector<double> interleavedMedians(int rounds, std::initializer_list<Sample> sides);

}  // namespace vek::bench
