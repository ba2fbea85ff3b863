#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "platform/controls.h"
#include "platform/layout.h"

namespace vek {

/// Position and size of a window on the screen, frame included, in twips (1/1440 inch); 0 for width and
/// height = as large as its contents. A front end sets them when the user moves or resizes the window.
struct Geometry {
    Property<int> left{0};
    Property<int> top{0};
    Property<int> width{0};
    Property<int> height{0};
};

/// A window: its controls are members of the class derived from it, their events member functions.
class Form {
  public:
    enum class Kind {
        Main,    ///< multi-document frame with menu, tool bar and status bar
        Beside,  ///< stands beside the main window, hidden and shown but never closed
        Child,   ///< inside the main window
    };

    Form(std::string formName, Kind formKind) : name(std::move(formName)), kind(formKind) {}
    virtual ~Form() = default;
    Form(const Form&) = delete;
    Form& operator=(const Form&) = delete;

    const std::string name;
    const Kind kind;
    Property<std::string> caption;
    Property<bool> visible{true};
    Geometry geometry;

    /// The arrangement of the controls; asked once, when the window is shown first.
    virtual Box layout() = 0;

    /// The window has been opened and stands in the list of open windows.
    virtual void load() {}

    /// The window is being closed, by its close box or by code; it is already out of the list of open
    /// windows. The object stays until every handler that runs has returned.
    virtual void unload() {}

    /// The program ends without closing the window: what has been typed, and is to be there the next time, is
    /// stored.
    virtual void keepInput() {}

    /// The user has pressed the close box.
    virtual void closeBoxPressed() = 0;

    virtual std::vector<MenuItem*> menu() { return {}; }
    virtual ToolBar* toolBar() { return nullptr; }
    virtual StatusBar* statusBar() { return nullptr; }
    virtual std::vector<Timer*> timers() { return {}; }

    /// The buttons that Enter and Escape press; Escape closes the window when there is none, unless it must
    /// not.
    virtual Button* defaultButton() { return nullptr; }
    virtual Button* cancelButton() { return nullptr; }
    virtual bool escapeCloses() const { return true; }

    /// Gives a control of this window the keyboard, as long as the window stands on the screen; set by a
    /// front end.
    std::function<void(const Control& control)> giveKeyboard;
};

}  // namespace vek
