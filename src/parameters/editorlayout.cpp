#include "parameters/editorlayout.h"

#include <vector>

#include "parameters/alarmassignment.h"
#include "parameters/parametertable.h"
#include "parameters/typeset.h"

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
    std::vector<ControlOf> controls;
};

const std::vector<GroupRow>& groups() {
    static const std::vector<GroupRow> table = {
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
    };
    return table;
}

/// Controls that are shown for some types, hidden for others, and left alone for the rest.
struct VisibilityRow {
    TypeSet shown;
    TypeSet hidden;
    std::vector<ControlOf> controls;
};

const std::vector<VisibilityRow>& visibilities() {
    static const std::vector<VisibilityRow> table = {
        {typeSet(8),
         allBut(typeSet(8)),
         {control<&C::opt20uF>, control<&C::opt30uF>, control<&C::opt40uF>, control<&C::opt50uF>}},
        {0, allBut(impedanceTypes), {control<&C::chkRWarnung>, control<&C::chkRAlarm>}},
    };
    return table;
}

constexpr std::array<TextBox C::*, 8> thresholdBoxes = {&C::txtUnterSpg, &C::txtUeberSpg, &C::txtBattH,
                                                        &C::txtBattL,    &C::txtCrossH,   &C::txtCrossL,
                                                        &C::txtZWarnung, &C::txtZAlarm};

/// The frame that some types use for the mains frequency and one for the capacitance of the installation.
struct FrequencyRow {
    TypeSet types;
    const char* frame;
    const char* first;
    const char* second;
};

constexpr std::array<FrequencyRow, 3> frequencyCaptions = {{
    {impedanceTypes, "Netzfrequenz für Z-Messung", "50 Hz", "60 Hz"},
    {typeSet(8), "Netzableitkapazität", "1 µF", "10 µF"},
    {allTypes, "Netzableitkapazität", "50 Hz", "60 Hz"},
}};

struct DelayBox {
    bool visible = true;
    bool enabled = true;
};

struct DelayRow {
    TypeSet types;
    DelayBox tan, tan1, tan2;
};

constexpr DelayBox shown = {true, true};
constexpr DelayBox disabled = {true, false};
constexpr DelayBox hidden = {false, true};

constexpr std::array<DelayRow, 3> delayBoxes = {{
    {typeSet(1, 2, 5), shown, disabled, hidden},
    {batteryType, hidden, shown, shown},
    {allTypes, shown, hidden, disabled},
}};

void apply(const DelayBox& state, Control& control) {
    control.visible = state.visible;
    control.enabled = state.enabled;
}

/// A box comes and goes with the label that names it.
void applyDelayBoxes(C& controls, std::uint8_t deviceType) {
    const DelayRow& row = *rowOfType(delayBoxes, deviceType);
    apply(row.tan, controls.txtTan);
    apply(row.tan1, controls.Label1);
    apply(row.tan1, controls.txtTan1);
    apply(row.tan2, controls.Label2);
    apply(row.tan2, controls.txtTan2);
}

void applyAlarmCaptions(AlarmBoxes& boxes, std::size_t relay, std::uint8_t deviceType) {
    for (std::size_t number = 1; number <= AlarmBoxes::count; ++number) {
        const std::string caption = alarmMeaning(deviceType, number).captions.at(relay);
        boxes[number].caption = caption;
        boxes[number].enabled = caption != "-";
    }
}

void enableGroups(C& controls, std::uint8_t deviceType) {
    for (const GroupRow& group : groups()) {
        for (const ControlOf member : group.controls) {
            if (contains(group.on, deviceType)) {
                member(controls).enabled = true;
                member(controls).visible = true;
            } else if (contains(group.off, deviceType)) {
                member(controls).enabled = false;
            }
        }
    }
}

void showGroups(C& controls, std::uint8_t deviceType) {
    for (const VisibilityRow& row : visibilities()) {
        const bool shownByType = contains(row.shown, deviceType);
        if (shownByType || contains(row.hidden, deviceType)) {
            for (const ControlOf member : row.controls) {
                member(controls).visible = shownByType;
            }
        }
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
    const ParameterRow& baudRate = parameterRow(ParameterField::BaudCode);
    controls.Frame8.enabled = rowOfType(baudRate.kdl.numbers, deviceType) != nullptr;
}

void applyTypeLayout(ParameterControls& controls, std::uint8_t deviceType) {
    enableGroups(controls, deviceType);
    showGroups(controls, deviceType);
    const FrequencyRow& captions = *rowOfType(frequencyCaptions, deviceType);
    controls.Frame12.caption = captions.frame;
    controls.opt50Hz_1uF.caption = captions.first;
    controls.opt60Hz_10uF.caption = captions.second;
    for (TextBox C::*box : thresholdBoxes) {
        (controls.*box).text = noParameterText;
    }
    if (contains(impedanceTypes, deviceType)) {
        controls.followImpedanceMeasurement();
    }
}

void applyRangeCaptions(ParameterControls& controls, std::uint8_t deviceType) {
    for (const ParameterRow* row : rowsInOrder(writeOrder(), deviceType)) {
        const auto* number = std::get_if<NumberParameter>(&row->kind);
        if (number != nullptr && number->rangeCaption != nullptr) {
            number->rangeCaption(controls) = rangeOf(*number, deviceType).caption;
        }
    }
}

}  // namespace vek
