#pragma once

#include <algorithm>
#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "platform/controls.h"
#include "platform/desktop.h"
#include "platform/form.h"
#include "platform/seams/serialcontrol.h"
#include "program/windows.h"
#include "support/fakeclock.h"

namespace vek {

/// A box as one text: "Fehler|stop|ok|Datei-Pfad nicht gefunden".
inline std::string boxText(const MessageBox& box) {
    constexpr const char* icons[] = {"|-", "|info", "|stop"};
    const char* buttons = box.buttons == MessageButtons::Ok ? "|ok|" : "|ok+cancel|";
    return box.title + icons[static_cast<int>(box.icon)] + buttons + box.text;
}

/// A desktop without a screen: it writes down every message box and file dialog, and answers at once.
class FakeDesktop final : public Desktop {
  public:
    explicit FakeDesktop(FakeClock& clock) : clock_(clock) {}

    // What the test prepares.

    std::deque<MessageAnswer> answers;  ///< to the next boxes; Ok when there are none left
    std::deque<std::optional<std::string>>
        files;                       ///< chosen in the next file dialogs; nothing when none left
    std::function<void()> onEvents;  ///< what the user does while events are processed and input is not held
    std::function<void()> onMessageBox;  ///< what happens while a box is open
    /// Wakes waitForEvents().
    SerialControl* line = nullptr;
    /// When its next byte arrives.
    std::function<std::optional<TimePoint>()> nextInput = [] { return std::nullopt; };

    // What the test looks at.

    std::vector<std::string> boxes;  ///< "title|icon|buttons|text", see boxText()
    std::vector<FileDialog> dialogs;
    int eventRounds = 0;

    /// The boxes since the last call.
    std::vector<std::string> takeBoxes() { return std::exchange(boxes, {}); }

    MessageAnswer messageBox(const MessageBox& box) override {
        boxes.push_back(boxText(box));
        if (onMessageBox) {
            onMessageBox();
        }
        return takeFirst(answers, MessageAnswer::Ok);
    }

    std::optional<std::string> chooseFile(const FileDialog& dialog) override {
        dialogs.push_back(dialog);
        return takeFirst(files, std::optional<std::string>{});
    }

    void processEvents() override {
        for (auto& [timer, due] : due_) {
            if (due <= clock_.now()) {
                due = clock_.now() + Milliseconds{timer->interval.get()};
                timer->tick();
            }
        }
        ++eventRounds;
        if (onEvents && !inputHeld_) {
            onEvents();
        }
    }

    void waitForEvents(TimePoint until = TimePoint::max()) override {
        if (line != nullptr && line->takeReceived()) {
            until = clock_.now();
        }
        for (const auto& [timer, due] : due_) {
            until = std::min(until, due);
        }
        until = std::min(until, nextInput().value_or(until));
        if (until == TimePoint::max()) {
            throw std::logic_error("a wait that nothing would end");
        }
        clock_.advanceTo(until);
        processEvents();
    }

    void holdInput(bool held) override { inputHeld_ = held; }
    TimePoint now() const override { return clock_.now(); }
    std::string timeOfDay() const override { return "08:11"; }

    /// Has waitForEvents() run the timer on the fake clock.
    void run(Timer& timer) {
        enabled_.push_back(timer.enabled.bind([this, &timer](bool enabled) {
            due_[&timer] = enabled ? clock_.now() + Milliseconds{timer.interval.get()} : TimePoint::max();
        }));
    }

  private:
    template <class Prepared, class Answer>
    static Answer takeFirst(Prepared& prepared, Answer otherwise) {
        if (!prepared.empty()) {
            otherwise = std::move(prepared.front());
            prepared.pop_front();
        }
        return otherwise;
    }

    FakeClock& clock_;
    std::map<Timer*, TimePoint> due_;  // of all timers that run here; never while one is disabled
    std::vector<Subscription> enabled_;
    bool inputHeld_ = false;
};

/// The box after a request without an answer, and the one after its Cancel.
inline const std::string crcDialog =
    "MODBUS-Fehler|-|ok+cancel|CRC-Fehler:\n\n"
    "Ok                ->  Programm fortsetzen\n"
    "Abbrechen  ->  Programm beenden";
inline const std::string farewell = "Hinweis|info|ok|MODBUS RTU Monitor wird beendet!";

/// Writes down the windows that come and go.
class FakeFormHost final : public FormHost {
  public:
    std::vector<std::string> log;  ///< "+name" for a window shown, "-name" for one closed
    std::vector<Form*> open;       ///< in the order of their opening
    std::string keyboard;          ///< the control that it was given to last

    void shown(Form& form) override {
        log.push_back("+" + form.name);
        open.push_back(&form);
        form.giveKeyboard = [this](const Control& control) { keyboard = control.name; };
    }
    void closed(Form& form) override {
        log.push_back("-" + form.name);
        std::erase(open, &form);
    }
};

}  // namespace vek
