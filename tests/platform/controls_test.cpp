#include "platform/controls.h"

#include <gtest/gtest.h>

namespace vek {
namespace {

TEST(Controls, OneOptionOfAFrameIsSet) {
    Frame frame{"Port", ""};
    Frame other{"Baud", ""};
    OptionArray<3> options{frame, "opt"};
    OptionButton single{frame, "single", ""};
    OptionButton elsewhere{other, "elsewhere", ""};
    elsewhere.value = true;
    const auto setCount = [&] {
        return std::count_if(frame.options.begin(), frame.options.end(),
                             [](const OptionButton* option) { return option->value.get(); });
    };
    const Subscription watch =
        options[2].value.observe([&](bool) { EXPECT_LE(setCount(), 1) << "not even for an observer"; });
    for (OptionButton* option : {&options[0], &options[2], &single, &options[2], &options[1]}) {
        option->value = true;
        EXPECT_TRUE(option->value);
        EXPECT_EQ(setCount(), 1) << option->name;
    }
    options[1].value = false;
    EXPECT_EQ(setCount(), 0);
    EXPECT_TRUE(elsewhere.value) << "another frame, another group";
    EXPECT_EQ(options[2].name, "opt_2");
    EXPECT_THROW(options[3], std::out_of_range);
}

}  // namespace
}  // namespace vek
