#pragma once

#include <functional>
#include <string>

#include "parameters/parameterorders.h"
#include "program/program.h"

/// What reading and writing have in common over both protocols: the rows one by one, with their progress.
namespace vek {

/// Reads or writes one parameter; false when that failed, of which the user has been told.
using ParameterStep = std::function<bool(const ParameterRow& row)>;

/// What came of a pass over the parameters.
struct PassResult {
    int done = 0;    ///< read or set
    int failed = 0;  ///< not read or not set
};

/// Reads row by row, unless the port is closed; all of them are forgotten first. Events are processed before
/// each; ends early when `isOpen` then says that the editor has been closed, and when the device has not
/// answered twice in a row.
PassResult readRows(Program& program, ParameterControls& controls, const ParameterRows& rows,
                    const std::function<bool()>& isOpen, const ParameterStep& read, bool portOpen = true);

/// Writes row by row what can be written: not what only counts beside an impedance measurement that is off,
/// nor, with the parameter's own message, what nobody knows. No events are processed between the rows. Ends
/// early when the device has not answered twice in a row.
PassResult writeRows(Program& program, ParameterControls& controls, const ParameterRows& rows,
                     const ParameterStep& write, bool portOpen = true);

/// Marks the box and tells the user why its text is not accepted.
void refuse(Program& program, TextBox& box, const std::string& message);

}  // namespace vek
