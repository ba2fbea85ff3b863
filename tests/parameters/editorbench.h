#pragma once

#include "parameters/frmMbParameter.h"
#include "support/bench.h"

namespace vek {

/// A Bench with the parameter editor, which is opened, and reads the device, at its first use.
class EditorBench : public Bench {
  public:
    using Bench::Bench;

    frmMbParameter& editor() {
        if (editor_ == nullptr) {
            test.open<LastWindow>();
            editor_ = &test.open<frmMbParameter>();
        }
        return *editor_;
    }

    Texts click(Button& button) {
        button.click();
        return test.desktop.takeBoxes();
    }
    Texts read() { return click(editor().cmdReadPara); }
    Texts write() { return click(editor().cmdWritePara); }

  private:
    frmMbParameter* editor_ = nullptr;
};

}  // namespace vek
