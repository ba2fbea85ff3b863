#include "devicemodel/faultposition.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <limits>
#include <ostream>

namespace vek {

void PrintTo(const FaultPosition& shown, std::ostream* stream) {
    *stream << shown.slider << " '" << shown.sign << "' -: " << shown.reNegative
            << " +: " << shown.rePositive;
}

namespace {

struct Case {
    std::optional<double> percent;
    double kiloOhms;
    std::uint8_t type;
    FaultPosition shown;
};

void expectShown(std::initializer_list<Case> cases) {
    for (const Case& c : cases) {
        EXPECT_EQ(faultPosition(c.percent, c.kiloOhms, c.type), c.shown)
            << "at " << c.percent.value_or(0) << " % with " << c.kiloOhms << " kOhm, type " << int{c.type};
    }
}

TEST(FaultPosition, SplitsTheResistanceBetweenTheSides) {
    expectShown({
        {0, 100, 1, {0, "~", "200", "200"}},
        {50, 100, 1, {50, "+", "400", "133"}},
        {-50, 100, 1, {-50, "-", "133", "400"}},
        {0, 0, 1, {0, "~", "0", "0"}},
        // no grouping
        {0, 1234, 5, {0, "~", "2468", "2468"}},
        // exactly 2.5 and 3.5 on the negative side: halves go to the even neighbour
        {60, 0.5, 1, {60, "+", "2", "1"}},
        {60, 0.7, 1, {60, "+", "4", "1"}},
        {std::nullopt, 100, 1, {0, "~", "---", "---"}},
    });
}

TEST(FaultPosition, SignOnlyOffTheMiddle) {
    expectShown({
        {15, 0, 1, {15, "~", "0", "0"}},
        {-15, 0, 1, {-15, "~", "0", "0"}},
        {16, 0, 1, {16, "+", "0", "0"}},
        {-16, 0, 1, {-16, "-", "0", "0"}},
        {15.5, 0, 1, {16, "+", "0", "0"}},
    });
}

TEST(FaultPosition, EndsOfTheBar) {
    expectShown({
        {100, 70, 1, {100, "+", ">4000", "70"}},
        {-100, 70, 10, {-100, "-", "70", ">2000"}},
        {100, 0, 8, {100, "+", ">1000", "0"}},
        // further out than the bar
        {120, 70, 1, {100, "+", ">4000", "70"}},
        {-1e30, 70, 1, {-100, "-", "70", ">4000"}},
        {std::numeric_limits<double>::quiet_NaN(), 70, 1, {0, "~", "---", "---"}},
    });
}

TEST(FaultPosition, LimitsByDeviceType) {
    const int limits[] = {0, 4000, 4000, 1000, 1000, 5000, 4000, 4000, 1000, 0, 2000, 0};
    std::uint8_t type = 0;
    for (const int limit : limits) {
        const std::string reached = limit != 0 ? ">" + std::to_string(limit) : "---";
        const std::string below = limit != 0 ? std::to_string(limit - 1) : "---";
        const double half = limit / 2.0;
        expectShown({
            {0, half, type, {0, "~", reached, reached}},
            {0, half - 0.5, type, {0, "~", below, below}},
            // rounds up to the limit, and so reaches it
            {0, half - 0.2, type, {0, "~", reached, reached}},
            {0, 1e35, type, {0, "~", reached, reached}},
        });
        ++type;
    }
}

}  // namespace
}  // namespace vek
