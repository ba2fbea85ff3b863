#include "platform/property.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

namespace vek {
namespace {

TEST(Property, NotifiesOnlyChanges) {
    Property<std::string> caption{std::string("a")};
    std::string seen;
    std::string bound;
    const Subscription observer = caption.observe([&](const std::string& text) { seen += text + ','; });
    const Subscription binding = caption.bind([&](const std::string& text) { bound += text + ','; });
    for (const char* text : {"a", "b", "b", ""}) {
        caption = text;
    }
    EXPECT_EQ(seen, "b,,");
    EXPECT_EQ(bound, "a,b,,");
}

TEST(Property, ObserverThatClampsLeavesAllWithTheLastValue) {
    Property<int> value;
    std::vector<int> after;
    const Subscription clamp = value.observe([&](int v) { value = std::min(v, 100); });
    const Subscription last = value.observe([&](int v) { after.push_back(v); });
    value = 250;
    EXPECT_EQ(value.get(), 100);
    EXPECT_EQ(after.back(), 100);
    EXPECT_EQ(std::count(after.begin(), after.end(), 250), 0) << "a value that no longer holds";
}

TEST(Property, SubscriptionsMayComeAndGoInAnObserverAndOutliveTheProperty) {
    std::optional<Subscription> second;
    Subscription self;
    Subscription added;
    int secondCalls = 0;
    int selfCalls = 0;
    std::vector<int> heard;
    {
        Property<int> value;
        const Subscription dropper = value.observe([&](int) { second.reset(); });
        second = value.observe([&](int) { ++secondCalls; });
        self = value.observe([&](int) {
            ++selfCalls;
            added = value.observe([&heard](int next) { heard.push_back(next); });
            self.reset();
        });
        value = 1;
        EXPECT_TRUE(heard.empty()) << "hears the next change";
        value = 2;
        EXPECT_EQ(heard, std::vector<int>{2});
    }
    EXPECT_EQ(secondCalls, 0);
    EXPECT_EQ(selfCalls, 1);
}

}  // namespace
}  // namespace vek
