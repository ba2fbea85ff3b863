#include "devicemodel/faultposition.h"

#include <gtest/gtest.h>

#include <limits>
#include <ostream>

namespace vek {

void PrintTo(const FaultPosition& shown, std::ostream* stream);
void PrintTo(const FaultPosition& shown, std::ostream* stream) {
    *stream << shown.slider << " '" << shown.sign << "' -: " << shown.reNegative
            << " +: " << shown.rePositive;
}

namespace {

TEST(FaultPosition, SplitsTheResistanceBetweenTheSides) {
    constexpr double none = std::numeric_limits<double>::quiet_NaN();
    const std::tuple<std::optional<double>, double, int, FaultPosition> cases[] = {
        {50, 100, 1, {50, "+", "400", "133"}},
        // no grouping
        {0, 1234, 5, {0, "~", "2468", "2468"}},
        // exactly 2.5 and 3.5 on the negative side: halves go to the even neighbour
        {60, 0.5, 1, {60, "+", "2", "1"}},
        // a sign only off the middle
        {-15, 0, 1, {-15, "~", "0", "0"}},
        {15.5, 0, 1, {16, "+", "0", "0"}},
        // the ends of the bar, and further out
        {-100, 70, 10, {-100, "-", "70", ">2000"}},
        {120, 70, 1, {100, "+", ">4000", "70"}},
        {std::nullopt, 100, 1, {0, "~", "---", "---"}},
        {none, 70, 1, {0, "~", "---", "---"}},
    };
    for (const auto& [percent, kiloOhms, type, shown] : cases) {
        EXPECT_EQ(faultPosition(percent, kiloOhms, static_cast<std::uint8_t>(type)), shown)
            << percent.value_or(0) << " % of " << kiloOhms << " kOhm, type " << type;
    }
}

TEST(FaultPosition, LimitsByDeviceType) {
    const int limits[] = {0, 4000, 4000, 1000, 1000, 5000, 4000, 4000, 1000, 0, 2000, 0};
    std::uint8_t type = 0;
    for (const int limit : limits) {
        const std::string reached = limit != 0 ? ">" + std::to_string(limit) : "---";
        const std::string below = limit != 0 ? std::to_string(limit - 1) : "---";
        const double half = limit / 2.0;
        EXPECT_EQ(faultPosition(0, half, type).rePositive, reached) << int{type};
        EXPECT_EQ(faultPosition(0, half - 0.5, type).rePositive, below) << int{type};
        EXPECT_EQ(faultPosition(0, half - 0.2, type).rePositive, reached) << int{type} << ", rounded up";
        EXPECT_EQ(faultPosition(0, 1e35, type).reNegative, reached) << int{type};
        ++type;
    }
}

}  // namespace
}  // namespace vek
