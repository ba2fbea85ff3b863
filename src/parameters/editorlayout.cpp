#include "parameters/editorlayout.h"

#include <array>

#include "parameters/parameterorders.h"
#include "parameters/parametertypes.h"
#include "parameters/typeset.h"
#include "platform/numberlocale.h"

namespace vek {

namespace {

using C = ParameterControls;
using ControlOf = Control& (*)(C&);

template <auto member>
Control& control(C& controls) {
    return controls.*member;
}

/// Controls that are enabled and visible for some types, disabled for others, and left alone for the rest.
struct GroupRow {
    TypeSet on;
    TypeSet off;
    std::array<ControlOf, 6> controls;  ///< as many as there are; the rest is null
};

constexpr std::array<GroupRow, 9> groups = {{
    {0, allBut(impedanceTypes), {control<&C::Frame11>, control<&C::chkZe>}},
    {typeSet(8),
     allBut(typeSet(1, 2, 8)),
     {control<&C::Frame12>, control<&C::opt50Hz_1uF>, control<&C::opt60Hz_10uF>}},
    {0,
     allBut(impedanceTypes),
     {control<&C::Frame4>, control<&C::lblZWarnung>, control<&C::lblZAlarm>, control<&C::txtZWarnung>,
      control<&C::txtZAlarm>}},
    {allBut(typeSet(8)), typeSet(8), {control<&C::Frame13>, control<&C::chkAnkop>}},
    {allBut(batteryType),
     batteryType,
     {control<&C::Frame5>, control<&C::chkUnterspg>, control<&C::chkUeberSpg>, control<&C::txtUnterSpg>,
      control<&C::txtUeberSpg>}},
    {batteryType,
     allBut(batteryType),
     {control<&C::Frame19>, control<&C::lblBattH>, control<&C::lblBattL>, control<&C::txtBattH>,
      control<&C::txtBattL>}},
    {batteryType,
     allBut(batteryType),
     {control<&C::Frame20>, control<&C::lblCrossH>, control<&C::lblCrossL>, control<&C::txtCrossH>,
      control<&C::txtCrossL>}},
    {batteryType,
     allBut(batteryType),
     {control<&C::Frame21>, control<&C::optAuto_08s>, control<&C::optAuto_2s>, control<&C::opt_08s>,
      control<&C::opt_2s>, control<&C::opt_8s>}},
    {typeSet(10),
     allBut(typeSet(10)),
     {control<&C::Frame22>, control<&C::optGENmode>, control<&C::optDCmode>}},
}};

constexpr std::array<TextBox C::*, 8> thresholdBoxes = {&C::txtUnterSpg, &C::txtUeberSpg, &C::txtBattH,
                                                        &C::txtBattL,    &C::txtCrossH,   &C::txtCrossL,
                                                        &C::txtZWarnung, &C::txtZAlarm};

void apply(const BoxState& state, Control& control) {
    control.visible = state.visible;
    control.enabled = state.enabled;
}

/// A box comes and goes with the label that names it.
void applyDelayBoxes(C& controls, std::uint8_t deviceType) {
    const DelayBoxes& row = *parameterType(deviceType).delays;
    apply(row.tan, controls.txtTan);
    apply(row.tan1, controls.Label1);
    apply(row.tan1, controls.txtTan1);
    apply(row.tan2, controls.Label2);
    apply(row.tan2, controls.txtTan2);
}

void applyAlarmCaptions(AlarmBoxes& boxes, std::size_t relay, std::uint8_t deviceType) {
    const AlarmAssignment& meanings = *parameterType(deviceType).alarms;
    for (std::size_t number = 1; number <= AlarmBoxes::count; ++number) {
        const std::string caption = meanings.at(number - 1).captions.at(relay);
        boxes[number].caption = caption;
        boxes[number].enabled = caption != "-";
    }
}

void applyGroup(C& controls, const GroupRow& group, std::uint8_t deviceType) {
    const bool on = contains(group.on, deviceType);
    for (const ControlOf member : group.controls) {
        if (member == nullptr || !(on || contains(group.off, deviceType))) {
            return;
        }
        member(controls).enabled = on;
        if (on) {
            member(controls).visible = true;
        }
    }
}

/// What depends on the impedance measurement of types 1 and 2 follows its check box.
void applyVisibility(C& controls, std::uint8_t deviceType) {
    for (OptionButton* capacitance :
         {&controls.opt20uF, &controls.opt30uF, &controls.opt40uF, &controls.opt50uF}) {
        capacitance->visible = contains(typeSet(8), deviceType);
    }
    if (contains(impedanceTypes, deviceType)) {
        controls.followImpedanceMeasurement();
    } else {
        controls.chkRWarnung.visible = false;
        controls.chkRAlarm.visible = false;
    }
}

}  // namespace

void applyModbusLayout(ParameterControls& controls, std::uint8_t deviceType) {
    applyAlarmCaptions(controls.chkR1_Bit, 0, deviceType);
    applyAlarmCaptions(controls.chkR2_Bit, 1, deviceType);
    applyDelayBoxes(controls, deviceType);
}

void applyKdlLayout(ParameterControls& controls, std::uint8_t deviceType) {
    applyDelayBoxes(controls, deviceType);
    for (AlarmBoxes* boxes : {&controls.chkR1_Bit, &controls.chkR2_Bit}) {
        for (CheckBox& box : *boxes) {
            box.enabled = false;
        }
    }
    for (Control* unreachable : std::initializer_list<Control*>{
             &controls.Frame16, &controls.Frame17, &controls.Frame14, &controls.chkCalTest, &controls.Frame9,
             &controls.optNo, &controls.optOdd, &controls.optEven, &controls.Label2, &controls.txtTan2}) {
        unreachable->enabled = false;
    }
    controls.Frame8.enabled = isOnKdlBus(parameterRow(ParameterField::BaudCode), deviceType);
}

void applyTypeLayout(ParameterControls& controls, std::uint8_t deviceType) {
    for (const GroupRow& group : groups) {
        applyGroup(controls, group, deviceType);
    }
    applyVisibility(controls, deviceType);
    const FrequencyCaptions& captions = *parameterType(deviceType).frequency;
    controls.Frame12.caption = captions.frame;
    controls.opt50Hz_1uF.caption = captions.first;
    controls.opt60Hz_10uF.caption = captions.second;
    for (TextBox C::*box : thresholdBoxes) {
        (controls.*box).text = noValueText;
    }
}

void applyRangeCaptions(ParameterControls& controls, std::uint8_t deviceType) {
    for (const ParameterRow* row : rowsInOrder(ParameterOrder::Write, deviceType)) {
        const auto* number = std::get_if<NumberParameter>(&row->kind);
        if (number != nullptr && number->rangeCaption != nullptr) {
            number->rangeCaption(controls) = rangeOf(*number, deviceType).caption;
        }
    }
}

}  // namespace vek
