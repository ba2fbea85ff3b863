#include "devicemodel/monitorrendering.h"

#include <gtest/gtest.h>

#include <limits>

namespace vek {
namespace {

TEST(MonitorRendering, ValuesBySlotAndDeviceType) {
    const NumberLocale german{.decimalPoint = ",", .groupSeparator = "."};
    const std::tuple<std::size_t, int, float, const char*, std::optional<double>> cases[] = {
        // resistances in whole kOhm
        {0, 1, 0.0F, "---", std::nullopt},
        {0, 1, -2500.0F, "-3", -3},
        {0, 1, 4.0e6F, "4.000", 4000},
        // voltages
        {1, 8, 0.0F, "0,0", 0},
        {1, 8, 230.25F, "230,3", 230.3},
        {2, 1, 230.5F, "231", 231},
        {2, 8, -0.04F, "0,0", 0},
        {2, 9, 10.75F, "10,8", 10.8},
        {4, 9, -115.5F, "-115,5", -115.5},
        {5, 10, 0.25F, "0", 0},
        // capacitance
        {3, 1, 1.5e-6F, "1,500", 1.5},
        {3, 8, 1.234567e-3F, "1.234,567", 1234.567},
        // fault position
        {6, 1, 15.9F, "15", 15},
        {6, 9, -99.6F, "-99", -99},
        {6, 1, 0.3F, "0", 0},
        // all others
        {8, 1, 123456.0F, "123456", 123456},
        {15, 8, 0.5F, "0,5", 0.5},
    };
    for (const auto& [slot, typeNumber, value, text, number] : cases) {
        const auto type = static_cast<std::uint8_t>(typeNumber);
        EXPECT_EQ(channelValueText(slot, type, value, german), text) << "slot " << slot << " type " << type;
        EXPECT_EQ(channelNumber(slot, type, value), number) << "slot " << slot << ": " << value;
    }
    using Limits = std::numeric_limits<float>;
    for (std::size_t slot = 0; slot < 16; ++slot) {
        for (const float value : {Limits::quiet_NaN(), Limits::infinity(), -Limits::infinity()}) {
            EXPECT_EQ(channelValueText(slot, 8, value, german), "---") << slot;
            EXPECT_EQ(channelNumber(slot, 8, value), std::nullopt) << slot;
        }
    }
}

}  // namespace
}  // namespace vek
