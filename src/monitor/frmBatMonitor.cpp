#include "monitor/frmBatMonitor.h"

#include <array>

#include "devicemodel/devicetypes.h"
#include "devicemodel/slotnames.h"
#include "monitor/modbuspoll.h"
#include "platform/leadingnumber.h"
#include "program/settings.h"

namespace vek {

namespace {

constexpr std::size_t resistanceSlot = 0;
constexpr std::size_t stringVoltageSlot = 2;
constexpr std::size_t capacitanceSlot = 3;
constexpr std::size_t voltagePlusSlot = 4;
constexpr std::size_t voltageMinusSlot = 5;
constexpr std::size_t counterSlot = 8;

/// What stands for a capacitance beyond the device's range, in µF.
constexpr const char* highestCapacitance = "1,600";

constexpr std::array<std::size_t, 5> hiddenIndicators = {1, 4, 5, 6, 7};

}  // namespace

frmBatMonitor::frmBatMonitor(Program& program)
    : MonitorForm(program, "frmBatMonitor", polledChannels, "Stop Monitor") {
    Label25.minimumCharacters = 20;
    asField(Label28, 22, Align::Center);
    for (Label* label : {&Label33, &Label35, &Label34}) {
        asField(*label, 9, Align::Right);
    }
    cmdRunMonitor.click = [this] { runMonitor(); };
}

void frmBatMonitor::load() {
    ChildForm::load();
    readBatteryData();
    if (!program_.kdlActive()) {
        caption = "ModBus RTU - Monitor";
        for (const std::size_t slot : hiddenIndicators) {
            LED[slot].visible = false;
        }
        showSlotNames();
    }
}

void frmBatMonitor::unload() {
    MonitorForm::unload();
    for (const std::size_t slot : hiddenIndicators) {
        LED[slot].visible = true;
    }
    writeBatteryData();
    program_.ProfilePath.clear();
}

void frmBatMonitor::readBatteryData() {
    txtAnzBatModul.text = settingText(program_, moduleCountSetting);
    txtBatVoltage.text = settingText(program_, moduleVoltageSetting);
    txtModBer.text = settingText(program_, moduleRangeSetting);
    txtRoffVal.text = settingText(program_, offsetSetting);
    chkRoffset.value = leadingNumber(settingText(program_, offsetOnSetting)) != 0;
}

void frmBatMonitor::writeBatteryData() {
    storeSettings(program_,
                  {moduleCountSetting.with(txtAnzBatModul.text),
                   moduleVoltageSetting.with(txtBatVoltage.text), moduleRangeSetting.with(txtModBer.text),
                   offsetSetting.with(txtRoffVal.text), offsetOnSetting.with(chkRoffset.value ? "1" : "0")});
}

void frmBatMonitor::showSlotNames() {
    for (std::size_t slot = 0; slot < polledChannels; ++slot) {
        Label7[slot].caption = std::string(modbusSlotName(slot, batteryDeviceType));
    }
    Label7[stringVoltageSlot].caption = "Netzspannung";
}

void frmBatMonitor::runMonitor() {
    const LineUse line(program_);
    if (!line) {
        return;
    }
    cmdRunMonitor.enabled = false;
    cmdClose.enabled = false;
    if (!program_.kdlActive()) {
        runModbusPoll(program_, *this);
    }
    cmdRunMonitor.enabled = true;
    cmdClose.enabled = true;
}

void frmBatMonitor::statusShown(std::size_t slot, RangeState range) {
    if (slot == counterSlot) {
        LED[slot].visible = false;
    } else if (slot == capacitanceSlot && range == RangeState::above) {
        lblMesswert[slot].caption = highestCapacitance;
        LED[slot].fillColor = colors::red;
    }
}

void frmBatMonitor::cycleDone() {
    if (program_.DeviceType != batteryDeviceType) {
        for (Label* label : {&Label33, &Label34, &Label35}) {
            label->caption = std::string();
        }
        return;
    }
    showString(superviseString(stringValues(), batteryData(), program_.locale));
}

BatteryData frmBatMonitor::batteryData() const {
    return {.moduleVoltage = batteryNumber(txtBatVoltage.text.get()),
            .moduleCount = batteryNumber(txtAnzBatModul.text.get()),
            .positionLimit = batteryNumber(txtModBer.text.get()),
            .offsetResistance =
                chkRoffset.value ? std::optional(batteryNumber(txtRoffVal.text.get())) : std::nullopt};
}

StringValues frmBatMonitor::stringValues() const {
    return {.resistance = shownNumber(resistanceSlot),
            .stringVoltage = shownNumber(stringVoltageSlot),
            .voltagePlus = shownNumber(voltagePlusSlot),
            .voltageMinus = shownNumber(voltageMinusSlot),
            .stringIndicator = LED[stringVoltageSlot].fillColor,
            .plusIndicator = LED[voltagePlusSlot].fillColor};
}

void frmBatMonitor::showString(const StringState& state) {
    Label28.caption = state.status;
    Label28.backColor = state.statusColor;
    Label33.caption = state.cellVoltage;
    Label25.caption = state.countCaption.value_or(Label25.caption.get());
    Label35.caption = state.moduleNumber;
    Label34.caption = state.moduleCount.value_or(Label34.caption.get());
}

Box frmBatMonitor::batteryFrame() {
    return framed(fraBatterie_, grid(3,
                                     {lblBatVoltage_, txtBatVoltage, lblBatVoltageUnit_,  //
                                      lblAnzBatModul_, txtAnzBatModul, gap(),             //
                                      lblModBer_, txtModBer, lblModBerUnit_,              //
                                      chkRoffset, txtRoffVal, lblRoffUnit_},
                                     {1}));
}

Box frmBatMonitor::resultFrame() {
    return framed(fraErgebnis_, grid(3,
                                     {Label27, Label28, gap(),   //
                                      Label3, Label33, Label38,  //
                                      Label4, Label35, gap(),    //
                                      Label25, Label34, gap()},
                                     {1}));
}

Box frmBatMonitor::layout() {
    return column({deviceFrame(),
                   row({column({channelTable(), row({batteryFrame(), resultFrame()}), stretch()}),
                        column({legendFrame(), testFrame(), stretch(), cmdRunMonitor, cmdStop, cmdClose})})});
}

}  // namespace vek
