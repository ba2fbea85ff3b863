#include "parameters/parametercodes.h"

#include <algorithm>

#include "platform/leadingnumber.h"

namespace vek {

namespace {

using C = ParameterControls;
using Option = ChoiceParameter::Option;

std::uint16_t codeOf(const Option& option, Bus bus) {
    return bus == Bus::Kdl ? option.kdlCode.value_or(option.code) : option.code;
}

std::uint16_t codeOf(const AlarmBoxes& boxes) {
    unsigned bits = 0;
    for (std::size_t number = 1; number <= AlarmBoxes::count; ++number) {
        bits |= (boxes[number].value ? 1U : 0U) << number;
    }
    return static_cast<std::uint16_t>(bits);
}

void show(AlarmBoxes& boxes, unsigned bits) {
    for (std::size_t number = 1; number <= AlarmBoxes::count; ++number) {
        boxes[number].decide((bits >> number & 1U) != 0);
    }
}

bool showOption(C& controls, const ChoiceParameter& choice, double code, Bus bus) {
    const auto found = std::find_if(choice.options.begin(), choice.options.end(),
                                    [&](const Option& option) { return codeOf(option, bus) == code; });
    if (found == choice.options.end()) {
        return false;
    }
    (controls.*found->button).value = true;
    return true;
}

}  // namespace

std::optional<std::uint16_t> shownCode(const C& controls, const ParameterRow& row, Bus bus) {
    if (const auto* flag = std::get_if<FlagParameter>(&row.kind)) {
        return (controls.*flag->box).value ? 1 : 0;
    }
    if (const auto* mask = std::get_if<AlarmMaskParameter>(&row.kind)) {
        return codeOf(controls.*mask->boxes);
    }
    const Option* option = selectedOption(controls, row);
    return option != nullptr ? std::optional(codeOf(*option, bus)) : std::nullopt;
}

bool showCode(C& controls, const ParameterRow& row, double code, Bus bus) {
    if (const auto* flag = std::get_if<FlagParameter>(&row.kind)) {
        const bool valid = code == 0 || code == 1;
        if (valid) {
            controls.check(controls.*flag->box, code == 1);
        }
        return valid;
    }
    if (const auto* mask = std::get_if<AlarmMaskParameter>(&row.kind)) {
        show(controls.*mask->boxes, static_cast<unsigned>(wholeNumber(code, 0, 0xFFFF)));
        return true;
    }
    return showOption(controls, std::get<ChoiceParameter>(row.kind), code, bus);
}

TextBox* numberBox(C& controls, const ParameterRow& row) {
    const auto* number = std::get_if<NumberParameter>(&row.kind);
    return number != nullptr ? &(controls.*number->box) : nullptr;
}

const Option* selectedOption(const C& controls, const ParameterRow& row) {
    const auto* choice = std::get_if<ChoiceParameter>(&row.kind);
    if (choice == nullptr) {
        return nullptr;
    }
    const auto found =
        std::find_if(choice->options.begin(), choice->options.end(),
                     [&](const Option& option) { return (controls.*option.button).value.get(); });
    return found == choice->options.end() ? nullptr : &*found;
}

const char* writeFailureOf(const C& controls, const ParameterRow& row) {
    const Option* option = selectedOption(controls, row);
    return option != nullptr && option->writeFailure != nullptr ? option->writeFailure : row.writeFailure;
}

}  // namespace vek
