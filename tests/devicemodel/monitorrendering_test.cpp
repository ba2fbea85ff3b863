#include "devicemodel/monitorrendering.h"

#include <gtest/gtest.h>

#include <limits>

namespace vek {
namespace {

const NumberLocale german{.decimalPoint = ",", .groupSeparator = "."};

TEST(MonitorRendering, StatesAsColoursAndSymbols) {
    EXPECT_EQ(alarmColor(AlarmState{0x000}), (Color{0, 255, 0}));
    EXPECT_EQ(alarmColor(AlarmState{0x100}), (Color{255, 255, 0}));
    EXPECT_EQ(alarmColor(AlarmState{0x200}), (Color{255, 0, 255}));
    EXPECT_EQ(alarmColor(AlarmState{0x400}), (Color{0, 255, 255}));
    EXPECT_EQ(alarmColor(AlarmState{0x500}), (Color{255, 0, 0}));
    for (const int keeps : {0x300, 0x600, 0x700}) {
        EXPECT_EQ(alarmColor(static_cast<AlarmState>(keeps)), std::nullopt) << keeps;
    }

    EXPECT_EQ(testColors(TestState{0x0000}), (TestColors{colors::green, colors::green}));
    EXPECT_EQ(testColors(TestState{0x4000}), (TestColors{colors::red, colors::green}));
    EXPECT_EQ(testColors(TestState{0x8000}), (TestColors{colors::green, colors::red}));
    EXPECT_EQ(testColors(TestState{0xC000}), (TestColors{colors::green, colors::green}));

    EXPECT_EQ(rangeCaption(RangeState{0x00}), " ");
    EXPECT_EQ(rangeCaption(RangeState{0x40}), "<");
    EXPECT_EQ(rangeCaption(RangeState{0x80}), ">");
    EXPECT_EQ(rangeCaption(RangeState{0xC0}), "-");
}

struct ValueCase {
    int slot;
    std::uint8_t type;
    float value;
    std::string_view text;
    std::optional<double> number;
};

void expectValues(std::initializer_list<ValueCase> cases) {
    for (const ValueCase& c : cases) {
        const auto where = testing::Message()
                           << "slot " << c.slot << " type " << int{c.type} << ": " << c.value;
        EXPECT_EQ(channelValueText(c.slot, c.type, c.value, german), c.text) << where;
        EXPECT_EQ(channelNumber(c.slot, c.type, c.value), c.number) << where;
    }
}

TEST(MonitorRendering, ResistancesInWholeKiloOhms) {
    expectValues({
        {0, 1, 0.0F, "---", std::nullopt},
        {0, 9, -0.0F, "---", std::nullopt},
        {0, 8, 400.0F, "0", 0},
        {0, 1, 2500.0F, "3", 3},
        {0, 1, -2500.0F, "-3", -3},
        {0, 1, 4.0e6F, "4.000", 4000},
        {1, 2, 0.0F, "---", std::nullopt},
        {1, 9, 50000.0F, "50", 50},
        {7, 10, 1.25e6F, "1.250", 1250},
    });
}

TEST(MonitorRendering, VoltagesByDeviceType) {
    expectValues({
        {1, 8, 0.0F, "0,0", 0},
        {1, 8, 230.25F, "230,3", 230.3},
        {7, 8, 1234.5F, "1.234,5", 1234.5},
        {2, 1, 230.5F, "231", 231},
        {2, 8, -0.04F, "0,0", 0},
        {2, 9, 10.75F, "10,8", 10.8},
        {4, 7, -115.5F, "-116", -116},
        {4, 9, -115.5F, "-115,5", -115.5},
        {5, 8, 0.25F, "0,3", 0.3},
        {5, 10, 0.25F, "0", 0},
    });
}

TEST(MonitorRendering, CapacitancePositionAndPlainValues) {
    expectValues({
        {3, 1, 1.5e-6F, "1,500", 1.5},
        {3, 9, 0.0F, "0,000", 0},
        {3, 8, 1.234567e-3F, "1.234,567", 1234.567},
        {6, 1, 15.0F, "15", 15},
        {6, 1, 15.9F, "15", 15},
        {6, 8, -16.0F, "-16", -16},
        {6, 9, -99.6F, "-99", -99},
        {6, 1, 0.3F, "0", 0},
        {6, 1, 0.0F, "0", 0},
        // too small for half a percent to keep its digits
        {6, 1, 1e-20F, "0", 0},
        {8, 1, 123456.0F, "123456", 123456},
        {15, 8, 0.5F, "0,5", 0.5},
    });
}

TEST(MonitorRendering, ValuesThatAreNoNumbersShowDashes) {
    using Limits = std::numeric_limits<float>;
    for (int slot = 0; slot < 16; ++slot) {
        for (const float value : {Limits::quiet_NaN(), Limits::infinity(), -Limits::infinity()}) {
            EXPECT_EQ(channelValueText(slot, 8, value, german), "---") << slot;
            EXPECT_EQ(channelNumber(slot, 8, value), std::nullopt) << slot;
        }
    }
}

}  // namespace
}  // namespace vek
