#include "parameters/readparameters.h"

#include <algorithm>

#include "modbus/ModBus.h"
#include "parameters/ParamValueText.h"
#include "parameters/editorlayout.h"
#include "parameters/parametercodes.h"
#include "parameters/parameterpass.h"
#include "parameters/unreadparameters.h"

namespace vek {

namespace {

using C = ParameterControls;

constexpr const char* registerMissing = "EXCEP_2";

void showImpedanceSwitch(C& controls, bool present) {
    controls.chkZe.enabled = present;
    controls.Frame11.enabled = present;
}

void showFrequency(C& controls, bool present) {
    controls.opt50Hz_1uF.enabled = present;
    controls.opt60Hz_10uF.enabled = present;
    if (!present) {
        controls.Frame12.enabled = false;
    }
}

void showWarningSwitch(C& controls, bool present) {
    controls.chkRWarnung.visible = present && controls.chkZe.value;
}

void showAlarmSwitch(C& controls, bool present) {
    controls.chkRAlarm.visible = present && controls.chkZe.value;
}

/// Parameters that not every device of a type has.
struct OptionalParameter {
    ParameterField field;
    void (*show)(C& controls, bool present);
};

constexpr std::array<OptionalParameter, 5> optionalParameters = {{
    {ParameterField::ZeAktiv, showImpedanceSwitch},
    {ParameterField::Netzfrequenz, showFrequency},
    {ParameterField::Kapazitaet, showFrequency},
    {ParameterField::RWarnungAktiv, showWarningSwitch},
    {ParameterField::RAlarmAktiv, showAlarmSwitch},
}};

const OptionalParameter* optionalParameter(ParameterField field) {
    const auto* const found = std::find_if(optionalParameters.begin(), optionalParameters.end(),
                                           [&](const OptionalParameter& row) { return row.field == field; });
    return found == optionalParameters.end() ? nullptr : found;
}

/// A number is shown as it came, a text that is none as well.
void showReply(Program& program, C& controls, const ParameterRow& row, const Bytes& reply) {
    if (TextBox* box = numberBox(controls, row)) {
        box->text = reply;
    } else if (!showCode(controls, row, ParamValueText(reply), Bus::Modbus)) {
        noteAnswer(controls, row, false);
        showError(program, row.invalidValue);
    }
}

/// The thresholds of the impedance measurement can be typed in before it is switched on. False when there is
/// nothing to read.
bool prepareThreshold(C& controls, ParameterField field) {
    const bool warning = field == ParameterField::ZWarnung;
    TextBox& box = warning ? controls.txtZWarnung : controls.txtZAlarm;
    box.enabled = true;
    (warning ? controls.lblZWarnung : controls.lblZAlarm).enabled = true;
    if (!controls.chkZe.value) {
        box.text = noParameterText;
    }
    return controls.chkZe.value;
}

void readParameter(Program& program, C& controls, const ParameterRow& row) {
    if (row.needsImpedance == NeedsImpedance::ToReadAndWrite && !prepareThreshold(controls, row.field)) {
        return;
    }
    const Bytes reply = MbReadRegisters(program, registerOf(row, program.DeviceType), 1);
    noteAnswer(controls, row, !isErrorText(reply));
    controls.lacking.set(static_cast<std::size_t>(row.field), reply == registerMissing);
    if (const OptionalParameter* optional = optionalParameter(row.field)) {
        const bool present = reply != registerMissing;
        optional->show(controls, present);
        if (!present) {
            return;
        }
    }
    showReply(program, controls, row, reply);
}

}  // namespace

void ReadParameters(Program& program, ParameterControls& controls, const std::function<bool()>& isOpen) {
    OpenPort(program);
    applyTypeLayout(controls, program.DeviceType);
    readRows(program, controls, rowsInOrder(ParameterOrder::Read, program.DeviceType), isOpen,
             [&](const ParameterRow& row) { readParameter(program, controls, row); });
    ClosePort(program);
}

}  // namespace vek
