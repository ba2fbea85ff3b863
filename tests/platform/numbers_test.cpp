#include <gtest/gtest.h>

#include <limits>
#include <string>

#include "platform/leadingnumber.h"
#include "platform/numberlocale.h"
#include "platform/serialsettings.h"

namespace vek {
namespace {

TEST(LeadingNumber, IsTheLongestDecimalNumberAtTheBegin) {
    const std::pair<std::string, double> cases[] = {{"", 0},
                                                    {"abc", 0},
                                                    {"12a", 12},
                                                    {"\t 3", 3},
                                                    {"-7", -7},
                                                    {"+7", 7},
                                                    {"+-7", 0},
                                                    {"-.5x", -0.5},
                                                    {"5.", 5},
                                                    {"10,73", 10},
                                                    {"1.2.3", 1.2},
                                                    {"1e5", 1},
                                                    {"0x1F", 0},
                                                    {"inf", 0},
                                                    {"0012", 12},
                                                    {"1 2", 1},
                                                    {"99999999999", 99999999999.0}};
    for (const auto& [text, number] : cases) {
        EXPECT_EQ(leadingNumber(text), number) << '"' << text << '"';
    }
    EXPECT_EQ(leadingNumber({"4\0005", 3}), 4);
    EXPECT_EQ(leadingNumber("3" + std::string(5000, 'x')), 3);
    EXPECT_EQ(leadingNumber(std::string(5000, '9')), 0) << "beyond every double";
}

TEST(LeadingNumber, WholeNumbersAreRoundedToEvenWithinTheirRange) {
    EXPECT_EQ(wholeNumber(2.5, 0, 255), 2);
    EXPECT_EQ(wholeNumber(3.5, 0, 255), 4);
    EXPECT_EQ(wholeNumber(255.4, 0, 255), 255);
    EXPECT_EQ(wholeNumber(255.6, 0, 255), 0);
    EXPECT_EQ(wholeNumber(255.6, 0, 255, -1), -1);
    EXPECT_EQ(wholeNumber(-0.4, 0, 255, -1), 0);
    EXPECT_EQ(wholeNumber(1e300, -32768, 32767), 0);
    EXPECT_EQ(wholeNumber(-32768, -32768, 32767), -32768);
}

const NumberLocale german{",", "."};

TEST(NumberLocale, FixedDecimalsRoundHalvesAwayFromZero) {
    using Limits = std::numeric_limits<double>;
    const NumberLocale plain;
    const std::tuple<double, int, const char*> cases[] = {
        {0, 3, "0.000"},
        {-2.5, 0, "-3"},
        {0.125, 2, "0.13"},
        {0.49999999999999994, 0, "0"},  // adding a half in floating point would make it one
        {2.4999999999999996, 0, "2"},
        {9.96, 1, "10.0"},
        {-0.04, 1, "0.0"},
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
        {3.14159265F, "3,141593"},
        {1234567.8F, "1234568"},
        {99999996.0F, "100000000"},
        {9.9999995F, "9,999999"},  // the nearest float is 9.99999905
        {1.5e-6F, "0,0000015"},
        {1.4e-45F, "0,000000000000000000000000000000000000000000001401298"},
        {-Limits::infinity(), "---"},
        {Limits::quiet_NaN(), "---"},
    };
    for (const auto& [value, text] : cases) {
        EXPECT_EQ(german.plain(value), text) << value;
    }
}

TEST(SerialSettings, OnlyTheExactFormIsTakenAndByteTimeCountsEveryBit) {
    const auto settings = parseSerialSettings("115200,e,7,2");
    ASSERT_TRUE(settings);
    EXPECT_EQ(settings->baudRate, 115200);
    EXPECT_EQ(settings->parity, 'e');
    EXPECT_EQ(settings->dataBits, 7);
    EXPECT_EQ(settings->stopBits, 2);
    const std::pair<const char*, int> times[] = {
        {"9600,n,8,1", 1042}, {"9600,e,8,1", 1146}, {"9600,e,7,1", 1042}, {"1200,o,8,2", 10000}};
    for (const auto& [text, microseconds] : times) {
        EXPECT_EQ(parseSerialSettings(text)->byteTime().count(), microseconds) << text;
    }
    for (const char* text :
         {"", "9600", "9600,n,8", "9600,n,8,1,", "9600,m,8,1", "9600,N,8,1", "9600,n,6,1", "9600,n,8,1.5",
          "14400,n,8,1", "09600,n,8,1", " 9600,n,8,1", "9600,,8,1", "9600,n,8,1 "}) {
        EXPECT_FALSE(parseSerialSettings(text)) << text;
    }
}

}  // namespace
}  // namespace vek
