#include "parameters/parameterpass.h"

#include "parameters/knownparameters.h"
#include "parameters/parametercodes.h"

namespace vek {

namespace {

constexpr unsigned silenceThatEnds = 2;  // requests in a row

/// A pass over the rows and what the editor shows of it.
class Pass {
  public:
    Pass(Program& program, ProgressBar& bar, std::size_t rows, const char* word)
        : program_(program), bar_(bar), total_(std::to_string(rows)), word_(word) {
        program.unansweredRequests = 0;
        bar.done = 0;
        bar.total = static_cast<int>(rows);
        show();
    }

    /// False when there is no use in going on, of which the user is told.
    bool step(bool good) {
        ++(good ? result_.done : result_.failed);
        show();
        const bool over = result_.done + result_.failed == bar_.total;
        if (over || program_.unansweredRequests < silenceThatEnds) {
            return true;
        }
        showNote(program_, "Das Gerät antwortet nicht mehr: " + std::to_string(result_.done) + " von " +
                               total_ + " " + word_);
        return false;
    }

    PassResult result() const { return result_; }

  private:
    void show() {
        const int failed = result_.failed;
        bar_.text = std::to_string(result_.done) + " von " + total_ +
                    (failed == 0 ? "" : ", " + std::to_string(failed) + " nicht " + word_);
        bar_.failed = failed > 0;
        bar_.done = result_.done + failed;
    }

    Program& program_;
    ProgressBar& bar_;
    const std::string total_;
    const std::string word_;
    PassResult result_;
};

/// What the device keeps as it is because nobody knows what to write. Where the link itself shows the
/// setting, nothing would be written as a rule, and nothing is missing.
bool leaveAlone(Program& program, const ParameterControls& controls, const ParameterRow& row) {
    const bool linkShowsIt = row.field == ParameterField::Paritaet ||
                             (row.field == ParameterField::BaudCode && program.kdlActive());
    const auto* choice = std::get_if<ChoiceParameter>(&row.kind);
    if (choice != nullptr && choice->noneSelected != nullptr) {
        showError(program, choice->noneSelected, choice->noneSelectedTitle);
    } else if (const char* failure = writeFailureOf(controls, row); failure != nullptr && !linkShowsIt) {
        showError(program, failure, writeErrorTitle);
    }
    return linkShowsIt;
}

bool writeRow(Program& program, ParameterControls& controls, const ParameterRow& row,
              const ParameterStep& write) {
    const bool off = !controls.chkZe.value && !controls.chkZe.unknown;
    if (row.needsImpedance != NeedsImpedance::Never && off) {
        return true;
    }
    return isKnown(controls, row) ? write(row) : leaveAlone(program, controls, row);
}

}  // namespace

PassResult readRows(Program& program, ParameterControls& controls, const ParameterRows& rows,
                    const std::function<bool()>& isOpen, const ParameterStep& read, bool portOpen) {
    for (const ParameterRow* row : rows) {
        forget(controls, *row);
    }
    Pass pass(program, controls.prgFortschritt, rows.size(), "gelesen");
    for (const ParameterRow* row : rows) {
        program.desktop.processEvents();
        if (!isOpen() || !portOpen || !pass.step(read(*row))) {
            break;
        }
    }
    return pass.result();
}

PassResult writeRows(Program& program, ParameterControls& controls, const ParameterRows& rows,
                     const ParameterStep& write, bool portOpen) {
    for (const ParameterRow* row : rows) {
        if (TextBox* box = numberBox(controls, *row)) {
            box->refused = false;
        }
    }
    Pass pass(program, controls.prgFortschritt, rows.size(), "gesetzt");
    for (const ParameterRow* row : rows) {
        if (!portOpen || !pass.step(writeRow(program, controls, *row, write))) {
            break;
        }
    }
    return pass.result();
}

void refuse(Program& program, TextBox& box, const std::string& message) {
    box.refused = true;
    showError(program, message);
}

}  // namespace vek
