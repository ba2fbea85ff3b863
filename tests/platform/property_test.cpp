#include "platform/property.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

namespace vek {
namespace {

TEST(Property, NotifiesOnlyChanges) {
    Property<std::string> caption{std::string("a")};
    std::vector<std::string> seen;
    const Subscription observer = caption.observe([&](const std::string& text) { seen.push_back(text); });
    caption = "a";
    caption = "b";
    caption = "b";
    caption = caption.get();
    caption = "";
    EXPECT_EQ(seen, (std::vector<std::string>{"b", ""}));

    std::vector<std::string> bound;
    const Subscription binding = caption.bind([&](const std::string& text) { bound.push_back(text); });
    caption = "c";
    EXPECT_EQ(bound, (std::vector<std::string>{"", "c"}));
}

TEST(Property, ObserverThatClampsLeavesAllWithTheLastValue) {
    Property<int> value;
    std::vector<int> before;
    std::vector<int> after;
    const Subscription first = value.observe([&](int v) { before.push_back(v); });
    const Subscription clamp = value.observe([&](int v) { value = std::min(v, 100); });
    const Subscription last = value.observe([&](int v) { after.push_back(v); });
    value = 250;
    EXPECT_EQ(value.get(), 100);
    EXPECT_EQ(before, (std::vector<int>{250, 100}));
    EXPECT_EQ(after.back(), 100);
    EXPECT_EQ(std::count(after.begin(), after.end(), 250), 0) << "a value that no longer holds";
}

TEST(Property, SubscriptionsMayBeDroppedByAnObserverAndOutliveTheProperty) {
    std::optional<Subscription> second;
    Subscription self;
    int secondCalls = 0;
    int selfCalls = 0;
    {
        Property<int> value;
        const Subscription dropper = value.observe([&](int) { second.reset(); });
        second = value.observe([&](int) { ++secondCalls; });
        self = value.observe([&](int) {
            ++selfCalls;
            self.reset();
        });
        value = 1;
        value = 2;
        EXPECT_EQ(secondCalls, 0);
        EXPECT_EQ(selfCalls, 1);

        second = value.observe([&](int) { ++secondCalls; });
        Subscription moved = std::move(*second);
        second = value.observe([&](int) {});
        *second = std::move(moved);
    }
    second.reset();
    self.reset();
    EXPECT_EQ(secondCalls, 0);
}

TEST(Property, AnObserverAddedWhileNotifyingHearsTheNextChange) {
    Property<int> value;
    std::optional<Subscription> added;
    std::vector<int> seen;
    const Subscription adder = value.observe([&](int) {
        if (!added) {
            added = value.observe([&](int v) { seen.push_back(v); });
        }
    });
    value = 1;
    EXPECT_TRUE(seen.empty());
    value = 2;
    EXPECT_EQ(seen, std::vector<int>{2});
}

}  // namespace
}  // namespace vek
