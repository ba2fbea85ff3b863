#include "platform/leadingnumber.h"

#include <gtest/gtest.h>

#include <string>

namespace vek {
namespace {

TEST(LeadingNumber, IsTheLongestDecimalNumberAtTheBegin) {
    const std::pair<std::string, double> cases[] = {
        {"", 0},      {"   ", 0},    {"abc", 0},      {"12a", 12},
        {" 3", 3},    {"\t 3", 3},   {"-7", -7},      {"+7", 7},
        {"+-7", 0},   {"--7", 0},    {"-", 0},        {"+", 0},
        {".", 0},     {"-.", 0},     {".5", 0.5},     {"-.5x", -0.5},
        {"5.", 5},    {"10,73", 10}, {"1.2.3", 1.2},  {"1e5", 1},
        {"0x1F", 0},  {"inf", 0},    {"nan", 0},      {"-inf", 0},
        {"0012", 12}, {"1 2", 1},    {"\xC3\xA4", 0}, {"99999999999", 99999999999.0}};
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

}  // namespace
}  // namespace vek
