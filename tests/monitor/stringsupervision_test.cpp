#include "monitor/stringsupervision.h"

#include <gtest/gtest.h>

namespace vek {
namespace {

const NumberLocale german{.decimalPoint = ",", .groupSeparator = "."};
const std::string kept = "(kept)";
const std::string none = "--- --- ---";
const std::string unplaced = kept + ": " + none;

using Number = std::optional<double>;

StringValues crossFault(Number resistance, Number string, Number plus, Number minus) {
    return {resistance, string, plus, minus, colors::red, colors::green};
}

StringValues healthy(Number resistance, Number string, Number plus, Number minus) {
    return {resistance, string, plus, minus, colors::green, colors::green};
}

/// Twenty modules of 12 V, up to 288 V; symmetric faults are placed up to 100 kOhm.
BatteryData battery(Number offset = std::nullopt) {
    return {.moduleVoltage = 12, .moduleCount = 20, .positionLimit = 100, .offsetResistance = offset};
}

/// Cell voltage, module number and count, and the pole that they are counted from.
std::string position(const StringState& state) {
    std::string pole = kept;
    if (state.countCaption) {
        pole = *state.countCaption == "Von L+ Anz. Module bis Rf"   ? "L+"
               : *state.countCaption == "Von L- Anz. Module bis Rf" ? "L-"
                                                                    : "?";
    }
    const std::string count = state.moduleCount.value_or(kept);
    for (const std::string_view text :
         {": ", state.cellVoltage.c_str(), " ", state.moduleNumber.c_str(), " ", count.c_str()}) {
        pole += text;
    }
    return pole;
}

TEST(StringSupervision, StatusFollowsTheTwoIndicators) {
    struct Row {
        Color string, plus;
        const char* status;
        Color color;
    };
    const Row rows[] = {
        {colors::red, colors::green, "CrossFault", colors::red},
        {colors::green, colors::red, "Strang offen", colors::green},
        {colors::red, colors::red, "Spannungsfehler", colors::red},
        {colors::green, colors::green, "Batteriespannung OK", colors::green},
        {colors::yellow, colors::green, "---", colors::grey},
        {colors::red, colors::cyan, "---", colors::grey},
        {colors::green, colors::magenta, "---", colors::grey},
        {colors::grey, colors::grey, "---", colors::grey},
    };
    for (const Row& row : rows) {
        const StringState state =
            superviseString({500, 240, 120, -120, row.string, row.plus}, battery(), german);
        EXPECT_EQ(state.status, row.status);
        EXPECT_EQ(state.statusColor, row.color) << row.status;
        if (row.color != colors::red) {
            EXPECT_EQ(position(state), unplaced) << row.status;
        }
    }
}

TEST(StringSupervision, ACrossFaultFromOutsideNeedsAllThreeSigns) {
    const std::pair<StringValues, bool> cases[] = {
        {crossFault(80, 100, 120, -90), true},           {crossFault(80, 100, -120, 90), true},
        {crossFault(99, 100, 100.1, 99.1), true},        {crossFault(100, 100, 120, -120), false},
        {crossFault(80, 100, 100, -90), false},          {crossFault(80, 100, 120, -80), false},
        {crossFault({}, 100, 120, -90), false},          {crossFault(80, {}, 120, -90), false},
        {crossFault(80, 100, 120, std::nullopt), false},
    };
    for (const auto& [values, foreign] : cases) {
        const StringState state = superviseString(values, battery(), german);
        EXPECT_EQ(state.status, foreign ? "unrelevanter Crossfault" : "CrossFault")
            << &values - &cases[0].first;
        EXPECT_EQ(state.statusColor, foreign ? colors::green : colors::red);
    }
    EXPECT_EQ(position(superviseString(crossFault(80, 100, 120, -90), battery(), german)),
              "L+: 200,0 16,7 3,3");
}

struct PositionCase {
    StringValues values;
    BatteryData battery;
    std::string shown;
};

void expectPositions(const std::vector<PositionCase>& cases) {
    for (const PositionCase& c : cases) {
        EXPECT_EQ(position(superviseString(c.values, c.battery, german)), c.shown)
            << "case " << &c - cases.data();
    }
}

TEST(StringSupervision, CountsTheModulesToACrossFault) {
    expectPositions({
        // From L+, up to the highest plausible voltage.
        {crossFault(120, 100, 10, -90), battery(), "L+: 20,0 1,7 18,3"},
        {crossFault(120, 240, 144, -96), battery(), "L+: 288,0 24,0 -4,0"},
        {crossFault(120, 240, 144.1, -96), battery(), "L+: " + none},
        {crossFault(120, 100, 0.5, -90), battery(), "L+: 1,0 0,1 19,9"},
        // Neither pole.
        {crossFault(120, 100, 0.4, -90), battery(), unplaced},
        {crossFault(120, 100, -0.4, -90), battery(), unplaced},
        // From L-.
        {crossFault(120, 100, -0.5, -100), battery(), "L-: -200,0 16,7 16,7"},
        {crossFault(120, 100, -10, -144), battery(), "L-: -288,0 24,0 24,0"},
        {crossFault(120, 100, -10, -144.1), battery(), "L-: " + none},
        {crossFault(120, 100, -10, 50), battery(), "L-: 100,0 -8,3 " + kept},
        // Without all the numbers.
        {crossFault({}, 100, 10, -90), battery(), unplaced},
        {crossFault(120, 100, {}, -90), battery(), unplaced},
        {crossFault(120, 100, -10, {}), battery(), "L-: " + none},
    });
}

TEST(StringSupervision, TakesTheOffsetResistanceOff) {
    expectPositions({
        {crossFault(200, 100, 60, -40), battery(1000), "L+: 185,0 15,4 4,6"},  // R' = 250
        {crossFault(200, 100, 60, -40), battery(0), "L+: 160,0 13,3 6,7"},
        {crossFault(200, 100, 60, -40), battery(-5), "L+: 160,0 13,3 6,7"},
        {crossFault(200, 100, 60, -40), battery(200), "L+: " + none},
        {crossFault(200, 100, -60, -40), battery(100), "L-: " + none},
        {crossFault(200, 100, -60, 0), battery(200), "L-: " + none},
        // Halves go to the even neighbour: 2.5 and 7.5.
        {crossFault(2, 100, 12, -88), battery(10), "L+: 12,2 1,0 19,0"},
        {crossFault(6, 100, 12, -88), battery(30), "L+: 12,8 1,1 18,9"},
        {healthy(50, 100, 50, -50), battery(100), "L+: --- 10,0 10,0"},
        {healthy(51, 100, 50, -50), battery(100), unplaced},
        {healthy(50, 100, 50, -50), battery(50), unplaced},
    });
}

TEST(StringSupervision, BatteryDataThatMakeNoSense) {
    const auto with = [](double voltage, double count) {
        BatteryData data = battery();
        data.moduleVoltage = voltage;
        data.moduleCount = count;
        return data;
    };
    expectPositions({
        {crossFault(120, 100, 10, -90), with(0, 20), "L+: " + none},
        {crossFault(120, 100, 10, -90), with(12, 0), "L+: " + none},
        {crossFault(120, 100, 10, -90), with(-12, 20), "L+: " + none},
        {crossFault(120, 100, 10, -90), with(-12, -20), "L+: 20,0 -1,7 " + kept},
        {crossFault(120, 100, -10, 0), with(0, 20), "L-: 0,0 --- ---"},
        {healthy(100, 100, 50, -50), with(0, 0), "L+: --- 0,0 0,0"},
    });
}

TEST(StringSupervision, EstimatesWhereASymmetricFaultLies) {
    expectPositions({
        {healthy(100, 100, 50, -50), battery(), "L+: --- 10,0 10,0"},
        {healthy(100, 100, 30, -70), battery(), "L+: --- 2,6 17,4"},
        {healthy(100, 100, 60, -40), battery(), "L-: --- 6,3 6,3"},
        {healthy(100, 100, 10, -90), battery(), "L+: --- 0,0 20,0"},
        {healthy(101, 100, 50, -50), battery(), unplaced},
        // Nothing to divide by.
        {healthy(100, 0, 50, -50), battery(), unplaced},
        {healthy(0, 100, 50, -50), battery(), unplaced},
        {healthy(81, 199.8, 159.3, -40.5), battery(), unplaced},
        // Without all the numbers.
        {healthy({}, 100, 50, -50), battery(), unplaced},
        {healthy(100, {}, 50, -50), battery(), unplaced},
        {healthy(100, 100, {}, -50), battery(), unplaced},
        {healthy(100, 100, 50, {}), battery(), unplaced},
    });
    // Whatever the resistance, poles alike mean the middle, and that counts from L+.
    for (double resistance = 1; resistance <= 100; ++resistance) {
        EXPECT_EQ(position(superviseString(healthy(resistance, 216, 108, -108), battery(), german)),
                  "L+: --- 10,0 10,0")
            << resistance;
    }
}

TEST(StringSupervision, TypedNumbersTakeCommaAndPoint) {
    const std::pair<const char*, double> cases[] = {
        {"10,73", 10.73}, {"10.73", 10.73}, {" 36 ", 36},       {"-5,5", -5.5},
        {"", 0},          {"  ", 0},        {"abc", 0},         {"1e3", 1},
        {",5", 0.5},      {",", 0},         {"1.234,5", 1.234}, {"---", 0},
    };
    for (const auto& [text, number] : cases) {
        EXPECT_DOUBLE_EQ(batteryNumber(text), number) << text;
    }
}

}  // namespace
}  // namespace vek
