#include "kdl/kdlparametervalue.h"

#include <gtest/gtest.h>

namespace vek {
namespace {

TEST(KdlParameterValueText, IsWhatStandsBehindTheFirstKeyInTheirOrder) {
    const std::pair<const char*, const char*> cases[] = {
        {"Re/kO 250", "250"},
        {"Uu/V   80 ", "80"},
        {"\tUo/V 300\t", "300\t"},
        {"12 dig 7 s", "7 s"},
        {"off", "off"},
        {"off 0", "0"},
        {"no 0", "0"},
        {"Ce/uF off 3", "off 3"},  // two keys: the order of the keys counts, not their places
        {"on 1 off 0", "0"},       //
        {"dig 5 Adr= 3", "3"},     //
        {"Tvz/s 4 T/h 24", "4 T/h 24"},
        {"Re/kO 1 Re/kO 2", "1 Re/kO 2"},
        {"second 5", "d 5"},  // a key inside another word
        {"", ""},
        {"Re/kO    ", ""},
        {"#TIMEOUT_ERROR#", ""},
    };
    for (const auto& [reply, value] : cases) {
        EXPECT_EQ(KdlParameterValueText(reply), value) << '"' << reply << '"';
    }
}

}  // namespace
}  // namespace vek
