#pragma once

#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace vek {

/// An observer's handle: the observer is gone when the handle is. It may outlive the property.
class Subscription {
  public:
    Subscription() = default;
    explicit Subscription(std::function<void()> unsubscribe) : unsubscribe_(std::move(unsubscribe)) {}
    Subscription(Subscription&& other) noexcept : unsubscribe_(std::exchange(other.unsubscribe_, nullptr)) {}
    Subscription& operator=(Subscription&& other) noexcept {
        if (this != &other) {
            reset();
            unsubscribe_ = std::exchange(other.unsubscribe_, nullptr);
        }
        return *this;
    }
    Subscription(const Subscription&) = delete;
    Subscription& operator=(const Subscription&) = delete;
    ~Subscription() { reset(); }

    void reset() {
        if (unsubscribe_) {
            std::exchange(unsubscribe_, nullptr)();
        }
    }

  private:
    std::function<void()> unsubscribe_;
};

/// A value that tells its observers when it changes, and only then. Assigning compares, stores, notifies; an
/// observer may assign the same property again (clamping): every observer then ends with the last value.
template <class T>
class Property {
  public:
    using Observer = std::function<void(const T&)>;

    Property() = default;
    explicit Property(T initial) : value_(std::move(initial)) {}
    Property(const Property&) = delete;
    Property& operator=(const Property&) = delete;

    const T& get() const { return value_; }
    operator const T&() const { return value_; }

    Property& operator=(T value) {
        if (value == value_) {
            return *this;
        }
        value_ = std::move(value);
        notify();
        return *this;
    }

    /// `observer` is called after each change, not for the present value.
    [[nodiscard]] Subscription observe(Observer observer) {
        auto entry = std::make_shared<Entry>(Entry{std::move(observer)});
        entries_->push_back(entry);
        return Subscription([entry, list = std::weak_ptr<Entries>(entries_)] {
            entry->alive = false;
            if (const auto entries = list.lock()) {
                std::erase(*entries, entry);
            }
        });
    }

    /// Calls `observer` with the present value, then after each change.
    [[nodiscard]] Subscription bind(Observer observer) {
        observer(value_);
        return observe(std::move(observer));
    }

  private:
    struct Entry {
        Observer observer;
        bool alive = true;
    };
    using Entries = std::vector<std::shared_ptr<Entry>>;

    void notify() {
        // A copy, since an observer may subscribe, or drop any subscription.
        const Entries entries = *entries_;
        for (const auto& entry : entries) {
            if (entry->alive) {
                entry->observer(value_);
            }
        }
    }

    T value_{};
    std::shared_ptr<Entries> entries_ = std::make_shared<Entries>();
};

}  // namespace vek
