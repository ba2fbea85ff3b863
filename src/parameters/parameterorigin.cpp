#include "parameters/parameterorigin.h"

#include <algorithm>

#include "parameters/knownparameters.h"
#include "parameters/parametercodes.h"

namespace vek {

void ParameterOrigin::watch(const ParameterRows& rows, ParameterControls& controls) {
    const auto changed = [this](const auto& /*value*/) { count(); };
    const auto watchBox = [&](CheckBox& box) {
        changes_.push_back(box.value.observe(changed));
        changes_.push_back(box.unknown.observe(changed));
    };
    for (const ParameterRow* row : rows) {
        before_[row] = "";
        if (TextBox* box = numberBox(controls, *row)) {
            changes_.push_back(box->text.observe(changed));
        } else if (const auto* flag = std::get_if<FlagParameter>(&row->kind)) {
            watchBox(controls.*flag->box);
        } else if (const auto* mask = std::get_if<AlarmMaskParameter>(&row->kind)) {
            std::ranges::for_each(controls.*mask->boxes, watchBox);
        } else {
            for (const auto& option : std::get<ChoiceParameter>(row->kind).options) {
                changes_.push_back((controls.*option.button).value.observe(changed));
            }
        }
    }
}

void ParameterOrigin::set(const std::string& origin) {
    paused_ = false;
    origin_ = origin;
    for (auto& [row, state] : before_) {
        state = shownState(controls_, *row);
    }
    count();
}

void ParameterOrigin::count() {
    if (paused_) {
        return;
    }
    const auto changed = std::ranges::count_if(
        before_, [this](const auto& each) { return shownState(controls_, *each.first) != each.second; });
    label_.caption = origin_ + (changed == 0 ? "" : ", " + std::to_string(changed) + " geändert");
}

}  // namespace vek
