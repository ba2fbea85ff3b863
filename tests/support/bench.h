#pragma once

#include <map>
#include <string>
#include <vector>

#include "modbus/modbusframe.h"
#include "platform/color.h"
#include "support/simulatedpeer.h"
#include "support/table.h"
#include "support/testprogram.h"

namespace vek {

/// The colour of an indicator as a letter: Red, Yellow, Green, Magenta, Cyan, White; - for grey.
char colorLetter(const Color& color);

/// A program on one of the buses with a simulated device of the type, both at address 3. The controls of its
/// open windows are used by name, as the user does.
class Bench {
  public:
    /// `line` takes the place of the fake one, on which alone requests are put down and replies prepared.
    Bench(int type, bool kdl, SerialControl* line = nullptr);

    TestProgram test;  ///< numbers as in Germany
    SimulatedPeer peer;
    sim::ParameterSet& parameters = peer.line.device().parameters();

    /// What went over the line: "r3005", "r9800x10" for several registers, "w3005=100"; on the KDL bus "r1",
    /// "w1=100" for a parameter by its number, ":CAN 1" for one that was selected only, and what does not go
    /// by a number as it is, such as ":MEM?". In front of them "12 " at an address other than 3.
    Texts requests;
    std::map<std::string, Bytes> replies;  ///< frames that come instead of the device's own
    std::string pulledAt;                  ///< the request at which the adapter is pulled out

    /// The control of this name in the window opened last that has one; throws when there is none.
    Control& control(const std::string& name);

    /// Types, clicks or chooses: a text, or "on" and "off".
    void set(const std::string& name, const std::string& value);

    /// Clicks a button, a menu item, or a button of the tool bar.
    void press(const std::string& name);

    /// A property of a control: of a text box its text, of what can be set "on" or "off", of all else its
    /// caption. "name.enabled", "name.visible", "name.caption", "name.toolTip" and the like tell more.
    std::string stateOf(const std::string& name);

    /// What a window shows: by name the values of its controls, but for those of its buttons, with a mark
    /// behind what is disabled or hidden.
    std::map<std::string, std::string> shown(Form& form) const;

  private:
    std::string requestIn(const Bytes& frame);

    std::map<std::string, Control*> found_;  // since a window was last opened or closed
    std::size_t windowEvents_ = 0;
};

}  // namespace vek
