#include <gtest/gtest.h>

#include <limits>
#include <string>

#include "parameters/ParamValueText.h"

namespace vek {
namespace {

constexpr double largest = std::numeric_limits<double>::max();

struct ValueCase {
    std::string text;
    double value;
    bool whole;
};

TEST(ParamValueText, TakesTheLeadingNumber) {
    const ValueCase cases[] = {
        {"", 0, false},
        {"abc", 0, false},
        {"---", 0, false},
        {"EXCEP_2", 0, false},
        {"inf", 0, false},
        {"nan", 0, false},
        {"0x10", 0, false},
        {".", 0, false},
        {"+-5", 0, false},
        {"100", 100, true},
        {"  1 0\t0\r\n", 100, true},
        {"2.5", 2.5, true},
        {".5", 0.5, true},
        {"1,5", 1, false},
        {"-5", -5, true},
        {"- 5", -5, true},
        {"+5", 5, true},
        {"1e3", 1000, true},
        {"1E-1", 0.1, true},
        {"2e", 2, false},
        {"20 k\xCE\xA9", 20, false},
        {"5.5.5", 5.5, false},
        {"99999999999", 99999999999.0, true},
        {std::string(500, '9'), largest, true},
        {"-" + std::string(500, '9'), -largest, true},
        {"0." + std::string(500, '0') + "1", 0, true},
        {"1e99999999999", largest, true},
        {"1e-99999999999", 0, true},
        {std::string(500, 'x'), 0, false},
    };
    for (const ValueCase& c : cases) {
        EXPECT_EQ(ParamValueText(c.text), c.value) << c.text;
        EXPECT_EQ(wholeTextNumber(c.text).has_value(), c.whole) << c.text;
    }
}

}  // namespace
}  // namespace vek
