#include "parameters/frmMbParameter.h"

#include "parameters/editorlayout.h"
#include "parameters/kdlreadparameters.h"
#include "parameters/kdlwriteparameters.h"
#include "parameters/knownparameters.h"
#include "parameters/parametercodes.h"
#include "parameters/parameterfiles.h"
#include "parameters/readparameters.h"
#include "parameters/writeparameters.h"

namespace vek {

namespace {

/// Room for the longest value, a threshold of four digits.
constexpr int boxCharacters = 4;

/// For "teilweise in Gerät gesetzt 23:59, 12 geändert".
constexpr int originCharacters = 40;

Box alarmList(AlarmBoxes& boxes) {
    Box list = grid(1, {});
    for (CheckBox& box : boxes) {
        list.parts.emplace_back(box);
    }
    return list;
}

}  // namespace

frmMbParameter::frmMbParameter(Program& program) : ChildForm(program, "frmMbParameter") {
    caption = "Parameter";
    for (TextBox* box :
         {&txtRWarnung, &txtRAlarm, &txtZWarnung, &txtZAlarm, &txtUnterSpg, &txtUeberSpg, &txtBattH,
          &txtBattL, &txtCrossH, &txtCrossL, &txtTein, &txtTan, &txtTan1, &txtTan2, &txtTab, &txtAdresse}) {
        box->minimumCharacters = boxCharacters;
    }
    cmdReadPara.toolTip = "Alle Geräteparameter auslesen";
    cmdWritePara.toolTip = "Geräteparameter neu setzen";
    lblHerkunft.minimumCharacters = originCharacters;
    cmdReadPara.click = [this] {
        useDevice(&frmMbParameter::readDevice);
        giveKeyboardTo(cmdReadPara);
    };
    cmdWritePara.click = [this] {
        useDevice(&frmMbParameter::writeDevice);
        giveKeyboardTo(keyboardAfterWriting());
    };
    cmd_Para_File_open.click = [this] { loadFile(); };
    cmd_Para_File_Save.click = [this] { saveFile(); };
    cmdClose.click = [this] { close(); };
}

void frmMbParameter::load() {
    ChildForm::load();
    for (const ParameterOrder order : {ParameterOrder::File, ParameterOrder::Read}) {
        for (const ParameterRow* row : rowsInOrder(order, program_.DeviceType)) {
            forget(*this, *row);
        }
    }
    if (program_.kdlActive()) {
        applyTypeLayout(*this, program_.DeviceType);
        applyKdlLayout(*this, program_.DeviceType);
        switches_.tie(program_.DeviceType);
    } else {
        applyModbusLayout(*this, program_.DeviceType);
    }
    applyRangeCaptions(*this, program_.DeviceType);
    origin_.watch(rowsInOrder(program_.kdlActive() ? ParameterOrder::KdlWrite : ParameterOrder::Write,
                              program_.DeviceType),
                  *this);
    readBeforeShown();
}

/// Nobody can type into a box that is about to be filled; the main window tells how far it is.
void frmMbParameter::readBeforeShown() {
    Property<std::string>& activity = program_.shell.activity;
    const Subscription progress = prgFortschritt.text.observe(
        [&activity](const std::string& text) { activity = "Parameter werden gelesen: " + text; });
    useDevice(&frmMbParameter::readDevice);
    activity = "";
}

void frmMbParameter::useDevice(void (frmMbParameter::*operation)()) {
    const LineUse line(program_);
    if (!line) {
        return;
    }
    Button* const buttons[] = {&cmdReadPara, &cmdWritePara, &cmd_Para_File_open, &cmd_Para_File_Save};
    for (Button* button : buttons) {
        button->enabled = false;
    }
    (this->*operation)();
    for (Button* button : buttons) {
        button->enabled = true;
    }
}

void frmMbParameter::readDevice() {
    const auto stillOpen = [this] { return isOpen(); };
    origin_.pause();
    const PassResult result = program_.kdlActive() ? KdlReadParameters(program_, *this, stillOpen)
                                                   : ReadParameters(program_, *this, stillOpen);
    origin_.set(result.done > 0 ? "aus Gerät gelesen " + program_.desktop.timeOfDay() : "nicht gelesen");
}

/// What the user does meanwhile waits for the end: a value typed halfway must not be written, nor a set be
/// left half written by the closing of a window. It is heard before the buttons can be pressed again, so that
/// a second press meanwhile writes no second time.
void frmMbParameter::writeDevice() {
    {
        const InputHold hold(program_.desktop);
        const PassResult result =
            program_.kdlActive() ? KdlWriteParameters(program_, *this) : WriteParameters(program_, *this);
        if (result.done > 0) {
            origin_.set((result.failed > 0 ? "teilweise in Gerät gesetzt " : "in Gerät gesetzt ") +
                        program_.desktop.timeOfDay());
        }
    }
    program_.desktop.processEvents();
}

void frmMbParameter::loadFile() {
    switches_.pause();
    if (LoadParameterFile(program_, *this)) {
        switches_.textsFollow();
        const std::string& path = program_.ProfilePath;
        origin_.set("aus Datei " + path.substr(path.find_last_of(program_.folders.separator()) + 1));
    }
    switches_.resume();
    giveKeyboardTo(cmd_Para_File_open);
}

void frmMbParameter::saveFile() {
    SaveParameterFile(program_, *this);
    giveKeyboardTo(cmd_Para_File_Save);
}

/// The first box that was refused, else the button.
const Control& frmMbParameter::keyboardAfterWriting() {
    for (const ParameterRow* row : rowsInOrder(ParameterOrder::Write, program_.DeviceType)) {
        const TextBox* const box = numberBox(*this, *row);
        if (box != nullptr && box->refused) {
            return *box;
        }
    }
    return cmdWritePara;
}

void frmMbParameter::giveKeyboardTo(const Control& control) {
    if (giveKeyboard && isOpen()) {
        giveKeyboard(control);
    }
}

Box frmMbParameter::thresholds() {
    return column({
        framed(Frame3,
               grid(3, {chkRWarnung, lblRWarnung, txtRWarnung, chkRAlarm, lblRAlarm, txtRAlarm}, {1})),
        row({framed(Frame4, grid(2, {lblZWarnung, txtZWarnung, lblZAlarm, txtZAlarm}, {0})),
             framed(Frame11, chkZe)}),
        framed(Frame5, grid(2, {chkUnterspg, txtUnterSpg, chkUeberSpg, txtUeberSpg}, {0})),
        framed(Frame19, grid(2, {lblBattH, txtBattH, lblBattL, txtBattL}, {0})),
        framed(Frame20, grid(2, {lblCrossH, txtCrossH, lblCrossL, txtCrossL}, {0})),
        framed(Frame10, column({grid(2, {lblTein, txtTein}, {0}),
                                grid(6, {lblTan, Label1, txtTan1, Label2, txtTan2, txtTan}, {0}),
                                grid(2, {lblTab, txtTab}, {0})})),
        stretch(),
        prgFortschritt,
        lblHerkunft,
    });
}

Box frmMbParameter::relays() {
    const Box first = column({
        framed(Frame1, grid(1, {optR1no, optR1nc})),
        framed(Frame16, alarmList(chkR1_Bit)),
        framed(Frame12, grid(2, {opt50Hz_1uF, opt60Hz_10uF, opt20uF, opt30uF, opt40uF, opt50uF})),
        framed(Frame13, chkAnkop),
        framed(Frame15, chkStopMod),
        stretch(),
    });
    const Box second = column({
        framed(Frame2, grid(1, {optR2no, optR2nc})),
        framed(Frame17, alarmList(chkR2_Bit)),
        framed(Frame21, grid(1, {optAuto_08s, optAuto_2s, opt_08s, opt_2s, opt_8s})),
        framed(Frame22, row({optGENmode, optDCmode})),
        stretch(),
    });
    return row({first, second});
}

Box frmMbParameter::lineSettings() {
    return column({
        framed(Frame7, row({lblAdresse, txtAdresse})),
        framed(Frame8, grid(1, {optBaud0, optBaud1200, optBaud2400, optBaud4800, optBaud9600, optBaud19200,
                                optBaud38400, optBaud57600, optBaud115200})),
        framed(Frame9, grid(1, {optNo, optOdd, optEven})),
        framed(Frame14, chkCalTest),
        framed(Frame18, row({optSelfTestOff, optSelfTest1h, optSelfTest24h})),
        framed(Frame6, chkMemory),
        stretch(),
    });
}

Box frmMbParameter::layout() {
    return column({row({thresholds(), relays(), lineSettings()}),
                   row({cmdReadPara, cmdWritePara, stretch(), cmd_Para_File_open, cmd_Para_File_Save,
                        stretch(), cmdClose})});
}

}  // namespace vek
