#pragma once

#include <deque>
#include <functional>
#include <list>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/controls.h"
#include "platform/desktop.h"
#include "platform/form.h"
#include "program/windows.h"
#include "support/fakeclock.h"

namespace vek {

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

    // What the test looks at.

    std::vector<std::string> boxes;  ///< "title|icon|buttons|text", see boxText()
    std::vector<FileDialog> dialogs;
    int eventRounds = 0;

    /// The boxes since the last call.
    std::vector<std::string> takeBoxes() { return std::exchange(boxes, {}); }

    MessageAnswer messageBox(const MessageBox& box) override;
    std::optional<std::string> chooseFile(const FileDialog& dialog) override;
    void processEvents() override;
    void waitForEvents(TimePoint until = TimePoint::max()) override;
    void holdInput(bool held) override { inputHeld_ = held; }
    TimePoint now() const override { return clock_.now(); }

    /// Has waitForEvents() run the timer on the fake clock.
    void run(Timer& timer);

    /// When the next byte arrives on the line; wakes waitForEvents().
    std::function<std::optional<TimePoint>()> nextInput;

  private:
    struct RunningTimer {
        Timer* timer;
        TimePoint due;
        Subscription enabled;
    };

    TimePoint wakeTime(TimePoint until) const;
    void tickDueTimers();

    FakeClock& clock_;
    std::list<RunningTimer> timers_;
    bool inputHeld_ = false;
};

/// A box as one text: "Fehler|stop|ok|Datei-Pfad nicht gefunden".
std::string boxText(const MessageBox& box);

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

    void shown(Form& form) override;
    void closed(Form& form) override;
};

}  // namespace vek
