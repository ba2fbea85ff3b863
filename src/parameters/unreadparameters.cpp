#include "parameters/unreadparameters.h"

#include <algorithm>

#include "modbus/modbusframe.h"

namespace vek {

namespace {

using C = ParameterControls;

/// Whether the controls stand for 0.
struct ShowsZero {
    const C& controls;

    bool operator()(const NumberParameter& /*number*/) const { return false; }

    bool operator()(const FlagParameter& flag) const { return !(controls.*flag.box).value; }

    bool operator()(const ChoiceParameter& choice) const {
        const ChoiceParameter::Option* option = selectedOption(controls, choice);
        return option != nullptr && option->code == 0;
    }

    bool operator()(const AlarmMaskParameter& mask) const {
        const AlarmBoxes& boxes = controls.*mask.boxes;
        return std::none_of(boxes.begin(), boxes.end(), [](const CheckBox& box) { return box.value.get(); });
    }
};

}  // namespace

bool isErrorText(std::string_view text) {
    return text == crcTimeout || text.starts_with(exceptionPrefix);
}

void noteAnswer(ParameterControls& controls, const ParameterRow& row, bool answered) {
    controls.unread.set(static_cast<std::size_t>(row.field), !answered);
}

bool showsUnread(const ParameterControls& controls, const ParameterRow& row) {
    return controls.unread.test(static_cast<std::size_t>(row.field)) &&
           std::visit(ShowsZero{controls}, row.kind);
}

}  // namespace vek
