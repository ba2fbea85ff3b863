#include <gtest/gtest.h>

#include <limits>
#include <string>

#include "platform/leadingnumber.h"
#include "platform/numberlocale.h"
#include "platform/serialsettings.h"

namespace vek {
namespace {

TEST(LeadingNumber, IsTheLongestDecimalNumberAtTheBegin) {
    const std::pair<std::string, double> cases[] = {
        {"", 0},    {"abc", 0},    {"12a", 12},        {"\t 3", 3},
        {"-7", -7}, {"+7", 7},     {"+-7", 0},         {"-.5x", -0.5},
        {"5.", 5},  {"10,73", 10}, {"1.2.3", 1.2},     {"1e5", 1},
        {"inf", 0}, {"1 2", 1},    {{"4\0005", 3}, 4}, {std::string(5000, '9'), 0}};
    for (const auto& [text, number] : cases) {
        EXPECT_EQ(leadingNumber(text), number) << '"' << text << '"';
    }
}

TEST(LeadingNumber, WholeNumbersAreRoundedToEvenWithinTheirRange) {
    const std::tuple<double, long, long, long> cases[] = {
        {2.5, 0, 255, 2},  {3.5, 0, 255, 4},   {255.4, 0, 255, 255}, {255.6, 0, 255, -1},
        {-0.4, 0, 255, 0}, {-0.6, 0, 255, -1}, {1e300, -9, 9, -1},   {-32768, -32768, 9, -32768}};
    for (const auto& [value, lowest, highest, whole] : cases) {
        EXPECT_EQ(wholeNumber(value, lowest, highest, -1), whole) << value;
    }
}

TEST(NumberLocale, FixedDecimalsRoundHalvesAwayFromZeroAndPlainHasSevenDigits) {
    using Limits = std::numeric_limits<float>;
    const NumberLocale german{",", "."};
    const std::tuple<double, int, const char*> fixed[] = {
        {0, 3, "0,000"},
        {-2.5, 0, "-3"},
        {0.125, 2, "0,13"},
        {0.49999999999999994, 0, "0"},  // adding a half in floating point would make it one
        {999.99, 1, "1.000,0"},
        {-0.04, 1, "0,0"},
        {-123456.789, 2, "-123.456,79"},
        {4503599627370497.5, 0, "4.503.599.627.370.498"},
        {1e22, 1, "10.000.000.000.000.000.000.000,0"},
        {Limits::infinity(), 1, "---"},
    };
    for (const auto& [value, decimals, text] : fixed) {
        EXPECT_EQ(german.fixed(value, decimals), text) << value << " with " << decimals;
    }
    EXPECT_EQ((NumberLocale{".", "’"}).fixed(20000, 0), "20’000");
    EXPECT_EQ(NumberLocale{}.fixed(20000.5, 1), "20000.5");
    const std::pair<float, const char*> plain[] = {
        {-0.0F, "0"},
        {3.14159265F, "3,141593"},
        {1234567.8F, "1234568"},
        {99999996.0F, "100000000"},
        {1.5e-6F, "0,0000015"},
        {1.4e-45F, "0,000000000000000000000000000000000000000000001401298"},
        {Limits::quiet_NaN(), "---"},
    };
    for (const auto& [value, text] : plain) {
        EXPECT_EQ(german.plain(value), text) << value;
    }
}

TEST(SerialSettings, OnlyTheExactFormIsTakenAndByteTimeCountsEveryBit) {
    const std::pair<const char*, int> times[] = {
        {"9600,n,8,1", 1042}, {"9600,e,8,1", 1146}, {"9600,e,7,1", 1042}, {"1200,o,8,2", 10000}};
    for (const auto& [text, microseconds] : times) {
        EXPECT_EQ(parseSerialSettings(text)->byteTime().count(), microseconds) << text;
    }
    for (const char* text : {"", "9600", "9600,n,8", "9600,n,8,1,", "9600,N,8,1", "9600,n,6,1",
                             "9600,n,8,1.5", "14400,n,8,1", "09600,n,8,1", "9600,,8,1", "9600,n,8,1 "}) {
        EXPECT_FALSE(parseSerialSettings(text)) << text;
    }
}

}  // namespace
}  // namespace vek
