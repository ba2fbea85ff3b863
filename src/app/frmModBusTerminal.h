#pragma once

#include <functional>

#include "platform/form.h"
#include "program/program.h"

namespace vek {

/// The terminal window: every frame sent and received. It stands at the left edge of the main window.
class frmModBusTerminal : public Form {
  public:
    /// Twips: wide enough for the frames of a poll, narrow enough for the main window beside it on a small
    /// screen.
    static constexpr int standardWidth = 4950;

    explicit frmModBusTerminal(Program& program)
        : Form("frmModBusTerminal", Kind::Beside), RichTextBox1("RichTextBox1", program.terminalLog) {
        caption = "Terminal";
        geometry.width = standardWidth;
    }

    Log RichTextBox1;

    /// What the close box does: the window is only hidden, its log lives as long as the program.
    std::function<void()> hideRequested;

    Box layout() override { return RichTextBox1; }
    void closeBoxPressed() override { hideRequested(); }
};

}  // namespace vek
