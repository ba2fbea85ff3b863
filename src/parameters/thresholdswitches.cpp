#include "parameters/thresholdswitches.h"

#include <string>

#include "parameters/ParamValueText.h"
#include "parameters/kdlparametervalue.h"
#include "parameters/parameterorders.h"

namespace vek {

namespace {

TextBox& boxOf(ParameterControls& controls, const ParameterRow& row) {
    return controls.*std::get<NumberParameter>(row.kind).box;
}

CheckBox& checkOf(ParameterControls& controls, const ParameterRow& row) {
    return controls.*row.kdl.onOff;
}

}  // namespace

void ThresholdSwitches::tie(std::uint8_t deviceType) {
    for (const ParameterRow* row : rowsInOrder(ParameterOrder::KdlWrite, deviceType)) {
        if (row->kdl.onOff == nullptr) {
            continue;
        }
        rows_.push_back(row);
        texts_.push_back(boxOf(controls_, *row).text.observe([this, row](const std::string& /*text*/) {
            checkFollows(*row);
        }));
        checkOf(controls_, *row).click = [this, row] {
            if (!paused_) {
                textFollows(*row);
            }
        };
        // With the impedance measurement the check boxes of the resistances appear.
        texts_.push_back(
            checkOf(controls_, *row).visible.observe([this, row](bool /*visible*/) { checkFollows(*row); }));
    }
}

void ThresholdSwitches::textsFollow() {
    for (const ParameterRow* row : rows_) {
        textFollows(*row);
    }
}

/// A check box that is hidden, or of which nobody knows the state, switches nothing.
void ThresholdSwitches::textFollows(const ParameterRow& row) {
    const CheckBox& check = checkOf(controls_, row);
    if (!check.visible || check.unknown) {
        return;
    }
    TextBox& box = boxOf(controls_, row);
    if (!check.value) {
        box.text = kdlOffText;
    } else if (box.text.get() == kdlOffText) {
        box.text = "";
    }
}

/// An empty box says nothing yet.
void ThresholdSwitches::checkFollows(const ParameterRow& row) {
    const std::string text = boxOf(controls_, row).text;
    CheckBox& check = checkOf(controls_, row);
    if (paused_ || !check.visible || text.empty()) {
        return;
    }
    check.decide(text != kdlOffText && !(row.kdl.zeroIsOff && wholeTextNumber(text) == 0.0));
}

}  // namespace vek
