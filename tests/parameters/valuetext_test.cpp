#include <gtest/gtest.h>

#include <limits>

#include "parameters/ParamValueText.h"
#include "platform/leadingnumber.h"
#include "support/table.h"

namespace vek {
namespace {

TEST(Numbers, CountAsTheTableSays) {
    for (const TableRow& row : readTable(VEK_TEST_FOLDER "numbers.txt")) {
        const std::string text = unescaped(row.cells.at(0));
        EXPECT_EQ(leadingNumber(text), std::stod(row.cells.at(1))) << row.text;
        EXPECT_EQ(ParamValueText(text), std::stod(row.cells.at(2))) << row.text;
        EXPECT_EQ(wholeTextNumber(text).has_value(), row.cells.at(3) == "yes") << row.text;
    }
    const std::string digits(5000, '9');
    EXPECT_EQ(leadingNumber(digits), 0);
    EXPECT_EQ(ParamValueText("-" + digits), -std::numeric_limits<double>::max());
}

}  // namespace
}  // namespace vek
