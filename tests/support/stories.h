#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>

#include "support/bench.h"

/// What the program does for a user with a device, told as text. One line an operation and what must come of
/// it:
///
///     operation        | requests | message boxes | states
///     set txtTab 100   |          |               |
///     press cmdWrite   | ...w3020=0 | E:Ungültiger Ansprechwert. Tab = 0...99s. | txtTab=100; 3020=0
///
/// - device TYPE BUS [REGISTER=VALUE ...]: a new program with a device of the type, no window open yet.
/// - set CONTROL VALUE, press CONTROL, close WINDOW; "file NAME" is chosen in the next file dialog, "cancel"
///   answers the next box with Abbrechen.
/// - fault KIND[=AMOUNT][,LIMIT...]: as the simulated device has them; "well" ends them. "store REGISTER
///   VALUE" in the device. "reply REQUEST = VALUE": in place of the device's own reply, of a register its
///   number or texts in quotation marks, "!2" an exception, on the KDL bus the payload. "pull REQUEST": the
///   adapter goes at it. "port N ERROR": it is not there, in use or not permitted.
/// - content NAME = TEXT: of a file, \n for its line ends. edit NAME LINE => LINE.
/// - requests: as Bench has them; "-" = none; not looked at when empty.
/// - boxes: " // " between two; E: and W: are errors with the title "Fehler" and "Write Error", R: a W: after
///   the one of a device that refuses, I: a note; CRC is the question after a failed request, BYE the
///   farewell; END means that the program ends. An empty cell: no box.
/// - states: as Bench::stateOf() has them, by its number of a register in the device, or of what else has a
///   name in the file's own program. "..." stands for any text, in all cells. Text behind # is for the
///   reader.
namespace vek {

class Stories {
  public:
    using Operation = std::function<void(Bench& bench, const std::string& operand)>;
    using State = std::function<std::string(Bench& bench)>;

    Stories();

    std::map<std::string, Operation> operations;  ///< those of each folder are added to the common ones
    std::map<std::string, State> states;

    /// Does what the file says, and looks after each line that the port is closed.
    void tell(const std::string& file);

  private:
    void tellLine(Texts cells);
    std::string stateOf(const std::string& name);

    std::unique_ptr<Bench> bench_;
};

}  // namespace vek
