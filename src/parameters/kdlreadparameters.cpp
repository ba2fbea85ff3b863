#include "parameters/kdlreadparameters.h"

#include <algorithm>
#include <string>

#include "kdl/KDLBusLink.h"
#include "kdl/kdlparametervalue.h"
#include "parameters/ParamValueText.h"
#include "parameters/parameterpass.h"
#include "parameters/parametertable.h"
#include "parameters/unreadparameters.h"
#include "platform/textcodec.h"

namespace vek {

namespace {

using C = ParameterControls;

std::string readRequest(const ParameterRow& row, std::uint8_t deviceType) {
    return row.kdl.query != nullptr
               ? row.kdl.query
               : ":TRSH? " + std::to_string(rowOfType(row.kdl.numbers, deviceType)->number);
}

/// Shows the value text of one parameter.
struct ShowValue {
    Program& program;
    C& controls;
    const ParameterRow& row;
    const std::string& text;

    void reportInvalid(const char* message) const {
        noteAnswer(controls, row, false);
        showError(program, row.kdl.invalidValue != nullptr ? row.kdl.invalidValue : message);
    }

    void operator()(const NumberParameter& number) const { (controls.*number.box).text = text; }

    void operator()(const FlagParameter& flag) const {
        const double value = ParamValueText(text);
        CheckBox& box = controls.*flag.box;
        if (row.kdl.flag == KdlFlag::NotOff) {
            controls.check(box, text != kdlOffText);
        } else if (row.kdl.flag == KdlFlag::NotZero || value == 0 || value == 1) {
            controls.check(box, value != 0);
        } else {
            reportInvalid(flag.invalidValue);
        }
    }

    void operator()(const ChoiceParameter& choice) const {
        const double value = ParamValueText(text);
        const auto found =
            std::find_if(choice.options.begin(), choice.options.end(),
                         [&](const auto& option) { return option.kdlCode.value_or(option.code) == value; });
        if (found != choice.options.end()) {
            (controls.*found->button).value = true;
        } else {
            reportInvalid(choice.invalidValue);
        }
    }

    /// The bus has no alarm assignment.
    void operator()(const AlarmMaskParameter& /*mask*/) const {}
};

/// One number tells whether the impedance measurement is on and at which mains frequency.
void showImpedanceMeasurement(const ShowValue& value) {
    C& controls = value.controls;
    const auto& frequency =
        std::get<ChoiceParameter>(parameterRow(ParameterField::Netzfrequenz).kind).options;
    const auto found = std::find_if(frequency.begin(), frequency.end(), [&](const auto& option) {
        return std::to_string(option.code) == value.text;
    });
    if (found != frequency.end()) {
        controls.check(controls.chkZe, true);
        (controls.*found->button).value = true;
    } else if (value.text == kdlOffText) {
        controls.check(controls.chkZe, false);
    } else {
        value.reportInvalid(std::get<FlagParameter>(value.row.kind).invalidValue);
    }
}

/// What only counts beside the impedance measurement is not asked for while that is off.
void showOff(C& controls, const ParameterRow& row) {
    if (const auto* number = std::get_if<NumberParameter>(&row.kind)) {
        (controls.*number->box).text = kdlOffText;
    }
}

void readParameter(Program& program, C& controls, const ParameterRow& row) {
    if (row.needsImpedance != NeedsImpedance::Never && !controls.chkZe.value) {
        showOff(controls, row);
        return;
    }
    const std::string text = utf8FromWindows1252(
        KdlParameterValueText(KdlTransact(program, readRequest(row, program.DeviceType))));
    noteAnswer(controls, row, !text.empty());
    const ShowValue value{program, controls, row, text};
    if (row.field == ParameterField::ZeAktiv) {
        showImpedanceMeasurement(value);
    } else {
        std::visit(value, row.kind);
    }
}

}  // namespace

void KdlReadParameters(Program& program, ParameterControls& controls, const std::function<bool()>& isOpen) {
    KdlOpenPort(program);
    readRows(program, controls, kdlRowsInOrder(kdlReadOrder(), program.DeviceType), isOpen,
             [&](const ParameterRow& row) { readParameter(program, controls, row); });
    KdlClosePort(program);
}

}  // namespace vek
