#include "platform/property.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <optional>
#include <vector>

namespace vek {
namespace {

TEST(Property, NotifiesOnlyChangesAndAllWithTheValueThatHolds) {
    Property<int> value{1};
    std::vector<int> bound;
    std::vector<int> seen;
    const Subscription binding = value.bind([&](int v) { bound.push_back(v); });
    const Subscription clamp = value.observe([&](int v) { value = std::min(v, 100); });
    const Subscription observer = value.observe([&](int v) { seen.push_back(v); });
    for (const int next : {1, 2, 2, 250}) {
        value = next;
    }
    EXPECT_EQ(value.get(), 100);
    EXPECT_EQ(bound.front(), 1);
    EXPECT_EQ(bound.back(), 100);
    EXPECT_EQ(seen.front(), 2);
    EXPECT_EQ(seen.back(), 100);
    EXPECT_EQ(std::count(seen.begin(), seen.end(), 250), 0) << "a value that no longer holds";
}

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
