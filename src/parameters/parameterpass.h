#pragma once

#include <array>
#include <cstddef>
#include <functional>
#include <variant>

#include "parameters/parametertable.h"
#include "program/program.h"

/// What reading and writing have in common over both protocols: the rows one by one, with their progress.
namespace vek {

using ParameterRows = std::vector<const ParameterRow*>;
using ParameterStep = std::function<void(const ParameterRow& row)>;

/// Reads row by row. Events are processed before each; ends early when `isOpen` then says that the editor has
/// been closed.
void readRows(Program& program, ParameterControls& controls, const ParameterRows& rows,
              const std::function<bool()>& isOpen, const ParameterStep& read);

/// Writes row by row what can be written: not what only counts beside an impedance measurement that is off,
/// nor, with the parameter's own "Write Error", what shows a 0 that nobody has read. No events are processed
/// between the rows.
void writeRows(Program& program, ParameterControls& controls, const ParameterRows& rows,
               const ParameterStep& write);

/// A parameter with more to its writing than its value.
template <typename Writing>
struct SpecialWrite {
    ParameterField field;
    void (*write)(const Writing&);
};

/// Writes a parameter in its own way, if it is one of the `specials`, else as all of its kind are written.
template <typename Kind, typename Writing, std::size_t count>
void writeParameter(const std::array<SpecialWrite<Writing>, count>& specials, const Writing& writing) {
    for (const SpecialWrite<Writing>& special : specials) {
        if (special.field == writing.row.field) {
            special.write(writing);
            return;
        }
    }
    std::visit(Kind{writing}, writing.row.kind);
}

}  // namespace vek
