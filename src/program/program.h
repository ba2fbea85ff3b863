#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

#include "platform/controls.h"
#include "platform/desktop.h"
#include "platform/logstore.h"
#include "platform/numberlocale.h"
#include "platform/property.h"
#include "platform/seams/folders.h"
#include "platform/seams/profilefiles.h"
#include "platform/seams/serialcontrol.h"
#include "program/windows.h"

namespace vek {

/// FrameFormats that select Modbus RTU: 8 data bits, 1 stop bit, and the parity.
inline constexpr const char* noParityFrame = ",n,8,1";
inline constexpr const char* oddParityFrame = ",o,8,1";
inline constexpr const char* evenParityFrame = ",e,8,1";

/// The same in the order in which devices number their parity from 0.
inline constexpr std::array<std::string_view, 3> modbusFrameFormats = {noParityFrame, oddParityFrame,
                                                                       evenParityFrame};

/// FrameFormat that selects the KDL protocol: 7 data bits, even parity, 1 stop bit.
inline constexpr const char* kdlFrameFormat = ",e,7,1";

/// KdlAddressPrefix while no KDL device is chosen.
inline constexpr const char* blankKdlPrefix = "     ";

/// A reply that missed its time and may still come. It is waited for once in a silence: when the wait has
/// brought nothing, the next one comes only after a byte has come again.
struct LateReply {
    TimePoint limit;  ///< until then; in the past when none is waited for
    bool waitedInVain = false;

    void await(TimePoint until) { limit = waitedInVain ? TimePoint{} : until; }
    void waited(bool came) {
        waitedInVain = !came && (waitedInVain || limit != TimePoint{});
        limit = {};
    }
    void replied(bool came) { waitedInVain = waitedInVain && !came; }
};

/// What other windows show in or take from the main window.
struct Shell {
    Property<std::string> caption;       ///< of the main window
    Property<std::string> portPanel;     ///< status bar panel 1: the port settings
    Property<std::string> addressPanel;  ///< status bar panel 2: the device address
    Property<std::string> activity;  ///< status bar panel 3, which is there only meanwhile: what takes time

    /// False while a dialog, monitor, tool or editor is open: the tool bar is hidden, the menus are disabled.
    Property<bool> commandsAvailable{true};
};

/// What the platform gives to the program. All of it outlives the Program.
struct Platform {
    Desktop& desktop;
    FormHost& formHost;
    SerialControl& serial;
    ProfileFiles& profileFiles;
    Folders& folders;
    NumberLocale locale;
};

/// The program's shared variables, its open windows and the platform it runs on: one object, made at the
/// start.
struct Program {
    explicit Program(const Platform& platform)
        : desktop(platform.desktop),
          RS485(platform.serial),
          profileFiles(platform.profileFiles),
          folders(platform.folders),
          locale(platform.locale),
          windows(platform.formHost) {
        Timer1.tick = [this] {
            Timer1.enabled = false;
            DelayElapsed = true;
        };
        TimeOut.tick = [this] {
            TimeOut.enabled = false;
            TimeOutElapsed = true;
        };
    }
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    std::int16_t ComPort = 0;        ///< 1 to 16; 0 = not configured
    std::int32_t BaudRate = 0;       ///< 1200 to 115200; 0 = not configured
    std::string FrameFormat;         ///< one of those above; with any other text as for Modbus RTU
    std::uint8_t DeviceAddress = 0;  ///< 0 = no device chosen
    std::string KdlAddressPrefix = blankKdlPrefix;  ///< ":;" and three digits, or five blanks
    std::string DeviceName;           ///< as the device last found named itself, Windows-1252 shown as UTF-8
    std::uint8_t DeviceType = 0;      ///< 1 to 10; 0 before the first search
    std::string settingsPath;         ///< the settings file, from the start to the end
    std::string ProfilePath;          ///< file that GetProfileValue and SetProfileValue act on
    bool MonitorRunning = false;      ///< true while a monitor polls; set false to end the poll
    bool DelayElapsed = false;        ///< set by the tick of Timer1
    bool TimeOutElapsed = false;      ///< set by the tick of TimeOut
    LateReply lateReply;              ///< of either bus
    bool lineInUse = false;           ///< see LineUse
    unsigned messagesShown = 0;       ///< so far, by ask() and what calls it
    unsigned unansweredRequests = 0;  ///< in a row, up to the last one, on either bus

    Desktop& desktop;
    SerialControl& RS485;
    ProfileFiles& profileFiles;
    Folders& folders;
    const NumberLocale locale;
    LogStore terminalLog;
    Timer Timer1;   ///< one-shot, of the pause before a KDL request; lives on the main window
    Timer TimeOut;  ///< one-shot, of the wait for a KDL reply; lives on the main window
    Shell shell;
    Windows windows;  ///< last, so that the windows go before what they use

    bool kdlActive() const { return FrameFormat == kdlFrameFormat; }

    /// Shows a message box and waits for the answer.
    MessageAnswer ask(const MessageBox& box) {
        ++messagesShown;
        return desktop.messageBox(box);
    }
};

/// The right to use the line, held for one user operation. Whoever does not get it does nothing: another
/// operation is under way and has let a click through.
class LineUse {
  public:
    explicit LineUse(Program& program)
        : program_(program), granted_(!std::exchange(program.lineInUse, true)) {}
    LineUse(const LineUse&) = delete;
    LineUse& operator=(const LineUse&) = delete;
    ~LineUse() {
        if (granted_) {
            program_.lineInUse = false;
            program_.shell.commandsAvailable = !program_.windows.hasChild();
        }
    }

    explicit operator bool() const { return granted_; }

  private:
    Program& program_;
    const bool granted_;
};

/// The message boxes of the program: title, icon and an OK button.
void showError(Program& program, const std::string& text, const std::string& title = "Fehler");
void showNote(Program& program, const std::string& text, const std::string& title = "Hinweis");

}  // namespace vek
