#include "platform/controls.h"

#include <gtest/gtest.h>

namespace vek {
namespace {

TEST(Controls, ArraysNameTheirElements) {
    ControlArray<Label, 16> labels{"lblMesswert"};
    EXPECT_EQ(labels[0].name, "lblMesswert_0");
    EXPECT_EQ(labels[15].name, "lblMesswert_15");
    EXPECT_THROW(labels[16], std::out_of_range);
    Frame frame{"Port", "Serial Port"};
    OptionArray<3> options{frame, "optCom"};
    EXPECT_EQ(options[2].name, "optCom_2");
    EXPECT_THROW(options[3], std::out_of_range);
}

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
    EXPECT_EQ(setCount(), 0);
    int largest = 0;
    const Subscription watch =
        options[2].value.observe([&](bool) { largest = std::max(largest, static_cast<int>(setCount())); });
    for (OptionButton* option : {&options[0], &options[2], &single, &options[2], &options[1]}) {
        option->value = true;
        EXPECT_TRUE(option->value);
        EXPECT_EQ(setCount(), 1) << option->name;
    }
    EXPECT_EQ(largest, 1) << "never two, not even for an observer";
    options[1].value = false;
    EXPECT_EQ(setCount(), 0);
    EXPECT_TRUE(elsewhere.value) << "another frame, another group";
}

}  // namespace
}  // namespace vek
