#pragma once

#include <functional>
#include <map>
#include <memory>
#include <vector>

#include "program/dispatcher.h"
#include "program/windows.h"
#include "ui/qt/germantexts.h"
#include "ui/qt/qtdesktop.h"

namespace vek {

class EndSignals;
class FormWindow;
class MainWindow;

/// The windows of the program on a desktop with Qt. One object, made after the QApplication and before the
/// program, which it outlives.
class FrontEnd : public FormHost {
  public:
    FrontEnd();
    ~FrontEnd() override;
    FrontEnd(const FrontEnd&) = delete;
    FrontEnd& operator=(const FrontEnd&) = delete;

    /// To serve the program before exec().
    Dispatcher& dispatcher() { return dispatcher_; }
    QtDesktop& desktop() { return desktop_; }

    /// Calls `start`, which opens the first windows, and handles events until the program ends. Returns the
    /// exit status of the process. All windows are gone afterwards.
    int exec(const std::function<void()>& start);

    void shown(Form& form) override;
    void closed(Form& form) override;

  private:
    void showMain(Form& form);
    void paintMain();
    void showBeside(Form& form);
    void makeBeside(Form& form);
    void showChild(Form& form);
    void discardAll();
    void requestEnd();
    static void leave();

    GermanTexts texts_;
    Dispatcher dispatcher_{leave};
    QtDesktop desktop_{dispatcher_};
    std::unique_ptr<EndSignals> endSignals_;
    std::map<const Form*, FormWindow*> windows_;
    MainWindow* mainWindow_ = nullptr;
    std::vector<Form*> waiting_;  ///< opened before the main window that they stand beside
};

}  // namespace vek
