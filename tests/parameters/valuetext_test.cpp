#include <gtest/gtest.h>

#include <limits>
#include <string>

#include "parameters/ParamValueText.h"

namespace vek {
namespace {

constexpr double largest = std::numeric_limits<double>::max();

TEST(ParamValueText, TakesTheLeadingNumber) {
    // Each with its value, and whether the whole text is that number.
    const std::tuple<std::string, double, bool> cases[] = {
        {"", 0, false},
        {"EXCEP_2", 0, false},
        {"inf", 0, false},
        {"0x10", 0, false},
        {"  1 0\t0\r\n", 100, true},
        {".5", 0.5, true},
        {"1,5", 1, false},
        {"- 5", -5, true},
        {"1E-1", 0.1, true},
        {"2e", 2, false},
        {"20 k\xCE\xA9", 20, false},
        {"5.5.5", 5.5, false},
        {"-" + std::string(500, '9'), -largest, true},
        {"1e99999999999", largest, true},
        {"1e-99999999999", 0, true},
    };
    for (const auto& [text, value, whole] : cases) {
        EXPECT_EQ(ParamValueText(text), value) << text;
        EXPECT_EQ(wholeTextNumber(text).has_value(), whole) << text;
    }
}

}  // namespace
}  // namespace vek
