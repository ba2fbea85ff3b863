#include "parameters/knownparameters.h"

#include <algorithm>

#include "parameters/parametercodes.h"

namespace vek {

namespace {

using C = ParameterControls;

bool isKnown(const AlarmBoxes& boxes) {
    const bool clickable =
        std::any_of(boxes.begin(), boxes.end(), [](const CheckBox& box) { return box.enabled.get(); });
    return std::none_of(boxes.begin(), boxes.end(),
                        [&](const CheckBox& box) { return box.unknown && (box.enabled || !clickable); });
}

bool showsValue(const C& controls, const ParameterRow& row) {
    if (const auto* number = std::get_if<NumberParameter>(&row.kind)) {
        return !(controls.*number->box).unknown;
    }
    if (const auto* flag = std::get_if<FlagParameter>(&row.kind)) {
        return !(controls.*flag->box).unknown;
    }
    const auto* mask = std::get_if<AlarmMaskParameter>(&row.kind);
    return mask != nullptr ? isKnown(controls.*mask->boxes) : selectedOption(controls, row) != nullptr;
}

void forget(C& controls, CheckBox& box) {
    controls.check(box, false);
    box.unknown = true;
}

std::string shownState(const CheckBox& box) {
    return box.unknown ? "?" : box.value ? "1" : "0";
}

}  // namespace

bool isKnown(const C& controls, const ParameterRow& row) {
    return showsValue(controls, row) &&
           (row.needsImpedance == NeedsImpedance::Never || !controls.chkZe.unknown);
}

void forget(C& controls, const ParameterRow& row) {
    if (TextBox* box = numberBox(controls, row)) {
        box->text = "";
        box->unknown = true;
    } else if (const auto* flag = std::get_if<FlagParameter>(&row.kind)) {
        forget(controls, controls.*flag->box);
    } else if (const auto* mask = std::get_if<AlarmMaskParameter>(&row.kind)) {
        for (CheckBox& bit : controls.*mask->boxes) {
            forget(controls, bit);
        }
    } else {
        for (const ChoiceParameter::Option& option : std::get<ChoiceParameter>(row.kind).options) {
            (controls.*option.button).value = false;
        }
    }
}

std::string shownState(const C& controls, const ParameterRow& row) {
    if (const auto* number = std::get_if<NumberParameter>(&row.kind)) {
        return (controls.*number->box).text;
    }
    if (const auto* flag = std::get_if<FlagParameter>(&row.kind)) {
        return shownState(controls.*flag->box);
    }
    const auto* mask = std::get_if<AlarmMaskParameter>(&row.kind);
    if (mask == nullptr) {
        const ChoiceParameter::Option* option = selectedOption(controls, row);
        return option != nullptr ? option->fileKey : "";
    }
    std::string states;
    for (const CheckBox& box : controls.*mask->boxes) {
        states += shownState(box);
    }
    return states;
}

}  // namespace vek
