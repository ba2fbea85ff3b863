#include "parameters/parameterpass.h"

#include "parameters/parametercodes.h"
#include "parameters/unreadparameters.h"

namespace vek {

namespace {

void beginProgress(ParameterControls& controls, const ParameterRows& rows) {
    controls.prgFortschritt.done = 0;
    controls.prgFortschritt.total = static_cast<int>(rows.size());
}

void advanceProgress(ParameterControls& controls) {
    controls.prgFortschritt.done = controls.prgFortschritt.done + 1;
}

void writeRow(Program& program, ParameterControls& controls, const ParameterRow& row,
              const ParameterStep& write) {
    if (row.needsImpedance != NeedsImpedance::Never && !controls.chkZe.value) {
        return;
    }
    if (showsUnread(controls, row)) {
        showError(program, writeFailureOf(controls, row), writeErrorTitle);
        return;
    }
    // From here on it is what the user has chosen.
    noteAnswer(controls, row, true);
    write(row);
}

}  // namespace

void readRows(Program& program, ParameterControls& controls, const ParameterRows& rows,
              const std::function<bool()>& isOpen, const ParameterStep& read) {
    beginProgress(controls, rows);
    for (const ParameterRow* row : rows) {
        program.desktop.processEvents();
        if (!isOpen()) {
            return;
        }
        read(*row);
        advanceProgress(controls);
    }
}

void reportNoneSelected(Program& program, const ParameterRow& row) {
    const auto& choice = std::get<ChoiceParameter>(row.kind);
    if (choice.noneSelected != nullptr) {
        showError(program, choice.noneSelected, choice.noneSelectedTitle);
    }
}

void writeRows(Program& program, ParameterControls& controls, const ParameterRows& rows,
               const ParameterStep& write) {
    beginProgress(controls, rows);
    for (const ParameterRow* row : rows) {
        writeRow(program, controls, *row, write);
        advanceProgress(controls);
    }
}

}  // namespace vek
