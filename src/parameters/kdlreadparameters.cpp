#include "parameters/kdlreadparameters.h"

#include <string>

#include "kdl/KDLBusLink.h"
#include "parameters/ParamValueText.h"
#include "parameters/kdlparametervalue.h"
#include "parameters/parametercodes.h"
#include "platform/textcodec.h"

namespace vek {

namespace {

using C = ParameterControls;

std::string readRequest(const ParameterRow& row, std::uint8_t deviceType) {
    return row.kdl.query != nullptr ? row.kdl.query
                                    : ":TRSH? " + std::to_string(row.kdl.numbers.of(deviceType).value());
}

/// The code that a value text stands for. A threshold tells by its own value whether it is on.
double codeInText(const ParameterRow& row, const std::string& text) {
    switch (row.kdl.flag) {
        case KdlFlag::NotOff:
            return text != kdlOffText ? 1 : 0;
        case KdlFlag::NotZero:
            return ParamValueText(text) != 0 ? 1 : 0;
        case KdlFlag::ZeroOrOne:
            break;
    }
    return ParamValueText(text);
}

/// One number tells whether the impedance measurement is on and at which mains frequency.
bool showImpedanceMeasurement(C& controls, const std::string& text) {
    const bool off = text == kdlOffText;
    const auto& frequency = std::get<ChoiceParameter>(parameterRow(ParameterField::Netzfrequenz).kind);
    for (const ChoiceParameter::Option& option : frequency.options) {
        if (std::to_string(option.code) == text) {
            controls.check(controls.chkZe, true);
            (controls.*option.button).value = true;
            return true;
        }
    }
    if (off) {
        controls.check(controls.chkZe, false);
    }
    return off;
}

bool showValue(Program& program, C& controls, const ParameterRow& row, const std::string& text) {
    if (TextBox* box = numberBox(controls, row)) {
        box->text = text;
        return true;
    }
    const bool shown = row.field == ParameterField::ZeAktiv
                           ? showImpedanceMeasurement(controls, text)
                           : showCode(controls, row, codeInText(row, text), Bus::Kdl);
    if (!shown) {
        showError(program, row.kdl.invalidValue != nullptr ? row.kdl.invalidValue : row.invalidValue);
    }
    return shown;
}

/// What only counts beside the impedance measurement is not asked for while that is off.
void showOff(C& controls, const ParameterRow& row) {
    if (TextBox* box = numberBox(controls, row)) {
        box->text = kdlOffText;
    }
}

bool readParameter(Program& program, C& controls, const ParameterRow& row) {
    if (row.needsImpedance != NeedsImpedance::Never && !controls.chkZe.value) {
        if (!controls.chkZe.unknown) {
            showOff(controls, row);
        }
        return !controls.chkZe.unknown;
    }
    const std::string text = utf8FromWindows1252(
        KdlParameterValueText(KdlTransact(program, readRequest(row, program.DeviceType))));
    return !text.empty() && showValue(program, controls, row, text);
}

}  // namespace

PassResult KdlReadParameters(Program& program, ParameterControls& controls,
                             const std::function<bool()>& isOpen) {
    const bool portOpen = KdlPortOpened(program);
    const PassResult result = readRows(
        program, controls, rowsInOrder(ParameterOrder::KdlRead, program.DeviceType), isOpen,
        [&](const ParameterRow& row) { return readParameter(program, controls, row); }, portOpen);
    KdlClosePort(program);
    return result;
}

}  // namespace vek
