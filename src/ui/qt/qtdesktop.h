#pragma once

#include <QEventLoop>
#include <QString>

#include "platform/desktop.h"
#include "platform/numberlocale.h"
#include "platform/seams/serialcontrol.h"

namespace vek {

class Dispatcher;

/// Message boxes, file dialogs, events and time from Qt.
class QtDesktop : public Desktop {
  public:
    explicit QtDesktop(const Dispatcher& dispatcher) : dispatcher_(dispatcher) {}

    MessageAnswer messageBox(const MessageBox& box) override;
    std::optional<std::string> chooseFile(const FileDialog& dialog) override;
    void processEvents() override;
    void waitForEvents(TimePoint until = TimePoint::max()) override;
    void holdInput(bool held) override;
    TimePoint now() const override { return Clock::now(); }
    std::string timeOfDay() const override;

    /// The line whose bytes wake waitForEvents(); it outlives the desktop's last wait.
    void watchLine(SerialControl& line) { line_ = &line; }

  private:
    QEventLoop::ProcessEventsFlags handledEvents() const;

    const Dispatcher& dispatcher_;
    SerialControl* line_ = nullptr;
    bool inputHeld_ = false;
    QString lastFolder_;  // of the file chosen last
};

/// How the user's system writes numbers, whether or not its locale is installed.
NumberLocale systemNumberLocale();

}  // namespace vek
