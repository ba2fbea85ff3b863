#include "report.h"

#include <exception>
#include <iomanip>
#include <iostream>
#include <sstream>
#include <string>

namespace vek::bench {

namespace {

/// Three digits that count, never with an exponent.
std::string figure(double value) {
    constexpr double twoPlaces = 10;
    constexpr double onePlace = 100;
    std::ostringstream text;
    text << std::fixed
         << std::setprecision(value < 1           ? 4
                              : value < twoPlaces ? 2
                              : value < onePlace  ? 1
                                                  : 0)
         << value;
    return text.str();
}

}  // namespace

void print(const Row& row) {
    const double ratio = row.ours / row.peer;
    std::cout << row.what << '\t' << figure(row.ours) << ' ' << row.unit << '\t' << figure(row.peer) << ' '
              << row.unit << ' ' << row.peerName << '\t' << std::fixed << std::setprecision(3) << ratio
              << '\t' << row.bound << '\t' << (ratio <= row.bound ? "ok" : "OVER") << std::endl;
}

int run(const std::function<void()>& measurement) {
    try {
        measurement();
        return 0;
    } catch (const std::exception& problem) {
        std::cerr << "No measurement: " << problem.what() << std::endl;
        return 1;
    }
}

}  // namespace vek::bench
