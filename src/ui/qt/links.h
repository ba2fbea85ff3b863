#pragma once

#include <QObject>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include "platform/property.h"
#include "program/dispatcher.h"

namespace vek {

/// What ties the widgets of one window to its controls, in both directions. With this object all ties are
/// cut, whichever side lives longer; cutting them from within a handler of theirs is safe.
class Links {
  public:
    explicit Links(Dispatcher& dispatcher) : dispatcher_(dispatcher) {}

    Dispatcher& dispatcher() const { return dispatcher_; }

    /// Cuts the ties before this object goes; no new ones can be made afterwards.
    void cut() {
        subscriptions_.clear();
        context_.reset();
    }

    /// `show` draws the value, now and after each change.
    template <class T, class Show>
    void show(Property<T>& property, Show&& show) {
        subscriptions_.push_back(property.bind(std::forward<Show>(show)));
    }

    /// Connects a widget's signal to a function of the front end.
    template <class Sender, class Signal, class Slot>
    void on(const Sender* sender, Signal signal, Slot&& slot) {
        QObject::connect(sender, signal, context_.get(), std::forward<Slot>(slot));
    }

    /// Calls a handler of the program, if there is one.
    void call(const std::function<void()>& handler) const {
        if (handler) {
            dispatcher_.run(handler);
        }
    }

    /// A change by the user: sets the property, then calls the handler. A value that the property has already
    /// (the widget only echoes what the program has set) is no change.
    template <class T>
    void change(Property<T>& property, T value, const std::function<void()>& handler = nullptr) const {
        if (value == property.get()) {
            return;
        }
        dispatcher_.run([&] {
            property = std::move(value);
            if (handler) {
                handler();
            }
        });
    }

  private:
    Dispatcher& dispatcher_;
    std::unique_ptr<QObject> context_ = std::make_unique<QObject>();
    std::vector<Subscription> subscriptions_;
};

}  // namespace vek
