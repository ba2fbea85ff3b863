#include "parameters/readparameters.h"

#include <algorithm>

#include "modbus/ModBus.h"
#include "parameters/ParamValueText.h"
#include "parameters/editorlayout.h"
#include "parameters/parameterpass.h"
#include "parameters/parametertable.h"
#include "parameters/unreadparameters.h"
#include "platform/leadingnumber.h"

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

/// Shows the reply to the read of one parameter.
struct ShowReply {
    Program& program;
    C& controls;
    const ParameterRow& row;
    const Bytes& reply;

    void reportInvalid(const char* message) const {
        noteAnswer(controls, row, false);
        showError(program, message);
    }

    void operator()(const NumberParameter& number) const { (controls.*number.box).text = reply; }

    void operator()(const FlagParameter& flag) const {
        const double value = ParamValueText(reply);
        if (value == 0 || value == 1) {
            controls.check(controls.*flag.box, value == 1);
        } else {
            reportInvalid(flag.invalidValue);
        }
    }

    void operator()(const ChoiceParameter& choice) const {
        const double value = ParamValueText(reply);
        const auto found =
            std::find_if(choice.options.begin(), choice.options.end(),
                         [&](const ChoiceParameter::Option& option) { return option.code == value; });
        if (found != choice.options.end()) {
            (controls.*found->button).value = true;
        } else {
            reportInvalid(choice.invalidValue);
        }
    }

    void operator()(const AlarmMaskParameter& mask) const {
        const auto bits = static_cast<unsigned>(wholeNumber(ParamValueText(reply), 0, 0xFFFF));
        for (std::size_t number = 1; number <= AlarmBoxes::count; ++number) {
            (controls.*mask.boxes)[number].value = (bits >> number & 1U) != 0;
        }
    }
};

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
    std::visit(ShowReply{program, controls, row, reply}, row.kind);
}

}  // namespace

void ReadParameters(Program& program, ParameterControls& controls, const std::function<bool()>& isOpen) {
    OpenPort(program);
    applyTypeLayout(controls, program.DeviceType);
    readRows(program, controls, rowsInOrder(readOrder(), program.DeviceType), isOpen,
             [&](const ParameterRow& row) { readParameter(program, controls, row); });
    ClosePort(program);
}

}  // namespace vek
