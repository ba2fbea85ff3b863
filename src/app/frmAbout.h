#pragma once

#include "program/childform.h"

namespace vek {

/// The about box.
class frmAbout : public ChildForm {
  public:
    explicit frmAbout(Program& program);

    Picture picIcon{"picIcon"};
    Label lblTitle{"lblTitle"};
    Label lblVersion{"lblVersion"};
    Label lblDescription{"lblDescription"};
    Label lblDisclaimer{"lblDisclaimer"};
    Button cmdOK{"cmdOK", "OK", 'O'};

    Box layout() override;
    void load() override;
    Button* defaultButton() override { return &cmdOK; }
    Button* cancelButton() override { return &cmdOK; }
};

}  // namespace vek
