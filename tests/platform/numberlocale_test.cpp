#include "platform/numberlocale.h"

#include <gtest/gtest.h>

#include <limits>

namespace vek {
namespace {

const NumberLocale german{",", "."};

TEST(NumberLocale, FixedDecimalsRoundHalvesAwayFromZero) {
    using Limits = std::numeric_limits<double>;
    const NumberLocale plain;
    const std::tuple<double, int, const char*> cases[] = {
        {0, 3, "0.000"},
        {2.5, 0, "3"},
        {-2.5, 0, "-3"},
        {0.125, 2, "0.13"},
        {0.49999999999999994, 0, "0"},  // adding a half in floating point would make it one
        {2.4999999999999996, 0, "2"},
        {9.96, 1, "10.0"},
        {999.5, 0, "1000"},
        {-0.04, 1, "0.0"},
        {-0.05, 1, "-0.1"},
        {1e-300, 9, "0.000000000"},
        {4503599627370497.5, 0, "4503599627370498"},
        {1e22, 1, "10000000000000000000000.0"},
        {Limits::infinity(), 1, "---"},
        {Limits::quiet_NaN(), 0, "---"},
    };
    for (const auto& [value, decimals, text] : cases) {
        EXPECT_EQ(plain.fixed(value, decimals), text) << value << " with " << decimals;
    }
    EXPECT_EQ(plain.fixed(Limits::max(), 9).size(), 309U + 1 + 9);
    EXPECT_EQ(german.fixed(999.4, 1), "999,4");
    EXPECT_EQ(german.fixed(999.99, 1), "1.000,0");
    EXPECT_EQ(german.fixed(-123456.789, 2), "-123.456,79");
    EXPECT_EQ(german.fixed(1234567, 0), "1.234.567");
    EXPECT_EQ((NumberLocale{".", "’"}).fixed(20000, 0), "20’000");
}

TEST(NumberLocale, PlainHasSevenDigitsAndNoExponent) {
    using Limits = std::numeric_limits<float>;
    const std::pair<float, const char*> cases[] = {
        {-0.0F, "0"},
        {-250.0F, "-250"},
        {0.1F, "0,1"},
        {3.14159265F, "3,141593"},
        {1234567.8F, "1234568"},
        {99999996.0F, "100000000"},
        {9.9999995F, "9,999999"},  // the nearest float is 9.99999905
        {1.5e-6F, "0,0000015"},
        {1e20F, "100000000000000000000"},
        {1.4e-45F, "0,000000000000000000000000000000000000000000001401298"},
        {-Limits::infinity(), "---"},
        {Limits::quiet_NaN(), "---"},
    };
    for (const auto& [value, text] : cases) {
        EXPECT_EQ(german.plain(value), text) << value;
    }
}

}  // namespace
}  // namespace vek
