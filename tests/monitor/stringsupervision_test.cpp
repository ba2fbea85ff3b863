#include "monitor/stringsupervision.h"

#include <gtest/gtest.h>

namespace vek {
namespace {

const NumberLocale german{.decimalPoint = ",", .groupSeparator = "."};

using Number = std::optional<double>;

StringValues crossFault(Number resistance, Number string, Number plus, Number minus) {
    return {resistance, string, plus, minus, colors::red, colors::green};
}

StringValues healthy(Number resistance, Number string, Number plus, Number minus) {
    return {resistance, string, plus, minus, colors::green, colors::green};
}

/// Modules of 12 V, twenty unless told otherwise, so up to 288 V; symmetric faults are placed up to 100 kOhm.
BatteryData battery(Number offset = std::nullopt, double voltage = 12, double count = 20) {
    return {.moduleVoltage = voltage, .moduleCount = count, .positionLimit = 100, .offsetResistance = offset};
}

StringState stateOf(const StringValues& values, const BatteryData& data = battery()) {
    return superviseString(values, data, german);
}

/// The pole that the modules are counted from, cell voltage, module number and count; * for a text that
/// stays.
std::string position(const StringState& state) {
    const std::string caption = state.countCaption.value_or("    *");
    EXPECT_TRUE(!state.countCaption || caption.substr(6) == " Anz. Module bis Rf") << caption;
    return caption.substr(4, caption == "    *" ? 1 : 2) + " " + state.cellVoltage + " " +
           state.moduleNumber + " " + state.moduleCount.value_or("*");
}

TEST(StringSupervision, StatusFollowsTheTwoIndicators) {
    const std::tuple<Color, Color, const char*, Color> rows[] = {
        {colors::red, colors::green, "CrossFault", colors::red},
        {colors::green, colors::red, "Strang offen", colors::green},
        {colors::red, colors::red, "Spannungsfehler", colors::red},
        {colors::green, colors::green, "Batteriespannung OK", colors::green},
        {colors::yellow, colors::green, "---", colors::grey},
        {colors::red, colors::cyan, "---", colors::grey},
        {colors::grey, colors::grey, "---", colors::grey},
    };
    for (const auto& [string, plus, status, color] : rows) {
        const StringState state = stateOf({500, 240, 120, -120, string, plus});
        EXPECT_EQ(state.status, status);
        EXPECT_EQ(state.statusColor, color) << status;
        EXPECT_EQ(position(state) == "* --- --- ---", state.status != "CrossFault") << status;
    }
}

TEST(StringSupervision, ACrossFaultFromOutsideNeedsAllThreeSigns) {
    const std::pair<StringValues, bool> cases[] = {
        {crossFault(80, 100, -120, 90), true},    {crossFault(99, 100, 100.1, 99.1), true},
        {crossFault(100, 100, 120, -120), false}, {crossFault(80, 100, 100, -90), false},
        {crossFault(80, 100, 120, -80), false},   {crossFault({}, 100, 120, -90), false},
    };
    for (const auto& [values, foreign] : cases) {
        const StringState state = stateOf(values);
        EXPECT_EQ(state.status, foreign ? "unrelevanter Crossfault" : "CrossFault")
            << &values - &cases[0].first;
        EXPECT_EQ(state.statusColor, foreign ? colors::green : colors::red);
    }
    EXPECT_EQ(position(stateOf(crossFault(80, 100, 120, -90))), "L+ 200,0 16,7 3,3");
}

TEST(StringSupervision, PlacesTheFault) {
    const std::tuple<StringValues, BatteryData, const char*> cases[] = {
        // A cross fault from L+, up to the highest plausible voltage.
        {crossFault(120, 100, 10, -90), battery(), "L+ 20,0 1,7 18,3"},
        {crossFault(120, 240, 144, -96), battery(), "L+ 288,0 24,0 -4,0"},
        {crossFault(120, 240, 144.1, -96), battery(), "L+ --- --- ---"},
        // Neither pole.
        {crossFault(120, 100, 0.4, -90), battery(), "* --- --- ---"},
        // From L-.
        {crossFault(120, 100, -0.5, -100), battery(), "L- -200,0 16,7 16,7"},
        {crossFault(120, 100, -10, -144.1), battery(), "L- --- --- ---"},
        {crossFault(120, 100, -10, 50), battery(), "L- 100,0 -8,3 *"},
        // Without all the numbers.
        {crossFault(120, 100, {}, -90), battery(), "* --- --- ---"},
        {crossFault(120, 100, -10, {}), battery(), "L- --- --- ---"},
        // The offset resistance taken off: R' = 250; halves go to the even neighbour, 2.5 and 7.5.
        {crossFault(200, 100, 60, -40), battery(1000), "L+ 185,0 15,4 4,6"},
        {crossFault(200, 100, 60, -40), battery(0), "L+ 160,0 13,3 6,7"},
        {crossFault(200, 100, 60, -40), battery(200), "L+ --- --- ---"},
        {crossFault(200, 100, -60, 0), battery(200), "L- --- --- ---"},
        {crossFault(6, 100, 12, -88), battery(30), "L+ 12,8 1,1 18,9"},
        {healthy(50, 100, 50, -50), battery(100), "L+ --- 10,0 10,0"},
        {healthy(51, 100, 50, -50), battery(100), "* --- --- ---"},
        // Battery data that make no sense.
        {crossFault(120, 100, 10, -90), battery({}, 0), "L+ --- --- ---"},
        {crossFault(120, 100, 10, -90), battery({}, -12, -20), "L+ 20,0 -1,7 *"},
        {crossFault(120, 100, -10, 0), battery({}, 0), "L- 0,0 --- ---"},
        {healthy(100, 100, 50, -50), battery({}, 0, 0), "L+ --- 0,0 0,0"},
        // A symmetric fault.
        {healthy(100, 100, 50, -50), battery(), "L+ --- 10,0 10,0"},
        {healthy(100, 100, 30, -70), battery(), "L+ --- 2,6 17,4"},
        {healthy(100, 100, 60, -40), battery(), "L- --- 6,3 6,3"},
        {healthy(100, 100, 10, -90), battery(), "L+ --- 0,0 20,0"},
        {healthy(101, 100, 50, -50), battery(), "* --- --- ---"},
        // Nothing to divide by.
        {healthy(100, 0, 50, -50), battery(), "* --- --- ---"},
        {healthy(0, 100, 50, -50), battery(), "* --- --- ---"},
        {healthy(81, 199.8, 159.3, -40.5), battery(), "* --- --- ---"},
        {healthy(100, 100, 50, {}), battery(), "* --- --- ---"},
    };
    int number = 0;
    for (const auto& [values, data, shown] : cases) {
        ++number;
        EXPECT_EQ(position(stateOf(values, data)), shown) << "case " << number;
    }
    // Whatever the resistance, poles alike mean the middle, and that counts from L+.
    for (double resistance = 1; resistance <= 100; ++resistance) {
        EXPECT_EQ(position(stateOf(healthy(resistance, 216, 108, -108))), "L+ --- 10,0 10,0") << resistance;
    }
}

TEST(StringSupervision, TypedNumbersTakeCommaAndPoint) {
    const std::pair<const char*, double> cases[] = {{"10,73", 10.73}, {"10.73", 10.73}, {" 36 ", 36},
                                                    {"-5,5", -5.5},   {"abc", 0},       {"1.234,5", 1.234}};
    for (const auto& [text, number] : cases) {
        EXPECT_DOUBLE_EQ(batteryNumber(text), number) << text;
    }
}

}  // namespace
}  // namespace vek
