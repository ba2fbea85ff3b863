#include "app/frmAbout.h"

#include <string>

#include "program/version.h"

namespace vek {

frmAbout::frmAbout(Program& program) : ChildForm(program, "frmAbout") {
    lblTitle.style = TextStyle::Title;
    cmdOK.click = [this] { close(); };
}

void frmAbout::load() {
    ChildForm::load();
    caption = std::string("Info zu ") + programTitle;
    lblVersion.caption = std::string("Version ") + versionText;
    lblTitle.caption = programTitle;
    lblDescription.caption = "MODBUS-RTU / KDL Testtool für die vekXX731 Geräteserie";
    lblDisclaimer.caption =
        "Diese Software ist nur für den internen Gebrauch und zu Testzwecken bestimmt.\n"
        "Sie darf nicht an Dritte weitergegeben werden.";
}

Box frmAbout::layout() {
    return column({row({picIcon, gap(), column({lblTitle, lblVersion, gap(), lblDescription})}), gap(),
                   row({lblDisclaimer, stretch(), cmdOK})});
}

}  // namespace vek
