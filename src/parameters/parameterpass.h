#pragma once

#include <functional>

#include "parameters/parameterorders.h"
#include "program/program.h"

/// What reading and writing have in common over both protocols: the rows one by one, with their progress.
namespace vek {

using ParameterStep = std::function<void(const ParameterRow& row)>;

/// Reads row by row. Events are processed before each; ends early when `isOpen` then says that the editor has
/// been closed.
void readRows(Program& program, ParameterControls& controls, const ParameterRows& rows,
              const std::function<bool()>& isOpen, const ParameterStep& read);

/// Tells the user, where the parameter has a message for it, that no option is set and nothing is written.
void reportNoneSelected(Program& program, const ParameterRow& row);

/// Writes row by row what can be written: not what only counts beside an impedance measurement that is off,
/// nor, with the parameter's own "Write Error", what shows a 0 that nobody has read. No events are processed
/// between the rows.
void writeRows(Program& program, ParameterControls& controls, const ParameterRows& rows,
               const ParameterStep& write);

}  // namespace vek
