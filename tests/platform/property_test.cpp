#include "platform/property.h"

#include <gtest/gtest.h>

#include <optional>
#include <vector>

namespace vek {
namespace {

TEST(Property, SubscriptionsMayComeAndGoInAnObserverAndOutliveTheProperty) {
    std::optional<Subscription> second;
    Subscription self;
    Subscription added;
    int secondCalls = 0;
    std::vector<int> heard;
    {
        Property<int> value;
        const Subscription dropper = value.observe([&](int) { second.reset(); });
        second = value.observe([&](int) { ++secondCalls; });
        self = value.observe([&](int) {
            added = value.observe([&heard](int next) { heard.push_back(next); });
            self.reset();
        });
        value = 1;
        EXPECT_TRUE(heard.empty()) << "hears the next change";
        value = 2;
        EXPECT_EQ(heard, std::vector<int>{2});
    }
    EXPECT_EQ(secondCalls, 0);
}

}  // namespace
}  // namespace vek
