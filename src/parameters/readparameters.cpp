#include "parameters/readparameters.h"

#include <algorithm>

#include "modbus/ModBus.h"
#include "parameters/ParamValueText.h"
#include "parameters/editorlayout.h"
#include "parameters/parametercodes.h"

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
    const auto found = std::find_if(optionalParameters.begin(), optionalParameters.end(),
                                    [&](const OptionalParameter& row) { return row.field == field; });
    return found == optionalParameters.end() ? nullptr : &*found;
}

bool showReply(Program& program, C& controls, const ParameterRow& row, const Bytes& reply) {
    if (TextBox* box = numberBox(controls, row)) {
        return showReadNumber(*box, reply);
    }
    const std::optional<double> code = wholeTextNumber(reply);
    if (code && !showCode(controls, row, *code, Bus::Modbus)) {
        showError(program, row.invalidValue);
        return false;
    }
    return code.has_value();
}

/// The thresholds of the impedance measurement can be typed in before it is switched on. False when there is
/// nothing to read.
bool prepareThreshold(C& controls, ParameterField field) {
    const bool warning = field == ParameterField::ZWarnung;
    TextBox& box = warning ? controls.txtZWarnung : controls.txtZAlarm;
    box.enabled = true;
    (warning ? controls.lblZWarnung : controls.lblZAlarm).enabled = true;
    if (!controls.chkZe.value && !controls.chkZe.unknown) {
        box.text = noValueText;
    }
    return controls.chkZe.value;
}

bool readParameter(Program& program, C& controls, const ParameterRow& row) {
    if (row.needsImpedance == NeedsImpedance::ToReadAndWrite && !prepareThreshold(controls, row.field)) {
        return !controls.chkZe.unknown;
    }
    const Bytes reply = MbReadRegisters(program, registerOf(row, program.DeviceType), 1);
    const bool missing = reply == registerMissing;
    const OptionalParameter* optional = optionalParameter(row.field);
    if (optional != nullptr) {
        optional->show(controls, !missing);
    }
    return (optional != nullptr && missing) || showReply(program, controls, row, reply);
}

}  // namespace

bool showReadNumber(TextBox& box, const Bytes& reply) {
    const bool isNumber = wholeTextNumber(reply).has_value();
    const bool isToken = reply == crcTimeout || reply.starts_with(exceptionPrefix);
    box.text = isNumber || isToken ? reply : Bytes();
    box.unknown = !isNumber;
    return isNumber;
}

PassResult ReadParameters(Program& program, ParameterControls& controls,
                          const std::function<bool()>& isOpen) {
    OpenPort(program);
    applyTypeLayout(controls, program.DeviceType);
    const PassResult result =
        readRows(program, controls, rowsInOrder(ParameterOrder::Read, program.DeviceType), isOpen,
                 [&](const ParameterRow& row) { return readParameter(program, controls, row); });
    ClosePort(program);
    return result;
}

}  // namespace vek
