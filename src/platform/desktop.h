#pragma once

#include <optional>
#include <string>

#include "platform/clock.h"

namespace vek {

/// Thrown to end the program from anywhere: nothing more is sent, shown or written while it unwinds. Only a
/// front end's dispatcher catches it.
struct ProgramEnd {};

enum class MessageIcon { None, Information, Stop };
enum class MessageButtons { Ok, OkCancel };
enum class MessageAnswer { Ok, Cancel };

struct MessageBox {
    std::string text;
    std::string title;
    MessageIcon icon = MessageIcon::None;
    MessageButtons buttons = MessageButtons::Ok;
    MessageAnswer escape =
        MessageAnswer::Cancel;  ///< what Escape and the close box answer, if there is Cancel
};

struct FileDialog {
    enum class Purpose { Open, Save };

    std::string title;
    std::string fileName;     ///< proposed
    std::string filterName;   ///< what the pattern stands for
    std::string filePattern;  ///< such as "*.GPM"
    Purpose purpose = Purpose::Open;
};

/// What the program asks of the desktop that it runs on. All of it but now() handles events, so it
/// may call back into the program, and it throws ProgramEnd when the program was ended meanwhile.
class Desktop {
  public:
    virtual ~Desktop() = default;

    /// Shows the box and waits for the answer.
    virtual MessageAnswer messageBox(const MessageBox& box) = 0;

    /// Full path of the file that the user chose, nothing when cancelled.
    virtual std::optional<std::string> chooseFile(const FileDialog& dialog) = 0;

    /// Handles the events that wait, without waiting for one.
    virtual void processEvents() = 0;

    /// Handles the events that wait; when there is none, sleeps until there is one, until bytes arrive on the
    /// line that nobody has taken yet, or until that time. The line keeps them for its readInput().
    virtual void waitForEvents(TimePoint until = TimePoint::max()) = 0;

    /// While held, processEvents() and waitForEvents() leave keys, mouse and window buttons for later;
    /// message boxes and file dialogs are answered all the same.
    virtual void holdInput(bool held) = 0;

    /// A clock that never goes back.
    virtual TimePoint now() const = 0;

    /// What the user's clock shows, such as "08:11".
    virtual std::string timeOfDay() const = 0;
};

/// Keeps the user's hands off while something must not be left half done.
class InputHold {
  public:
    explicit InputHold(Desktop& desktop) : desktop_(desktop) { desktop_.holdInput(true); }
    InputHold(const InputHold&) = delete;
    InputHold& operator=(const InputHold&) = delete;
    ~InputHold() { desktop_.holdInput(false); }

  private:
    Desktop& desktop_;
};

}  // namespace vek
