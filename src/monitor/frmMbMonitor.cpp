#include "monitor/frmMbMonitor.h"

#include <array>
#include <string_view>

#include "devicemodel/devicetypes.h"
#include "devicemodel/slotnames.h"
#include "monitor/devicecommands.h"
#include "monitor/kdlmonitor.h"
#include "monitor/modbuspoll.h"

namespace vek {

namespace {

constexpr std::size_t resistanceSlot = 0;
constexpr std::size_t faultPositionSlot = 6;

constexpr std::array<const char*, 3> sliderEnds = {"-100", "0", "+100"};

constexpr std::array<std::size_t, 6> switchedIndicators = {1, 4, 5, 6, 7, 8};

}  // namespace

frmMbMonitor::frmMbMonitor(Program& program) : MonitorForm(program, "frmMbMonitor", slotCount, "Stop") {
    styleFields();
    explainCommands();
    cmdRunMonitor.click = [this] { useLine([this] { runMonitor(); }); };
    cmdCal.click = [this] { useLine([this] { runDeviceCommand(program_, DeviceCommand::Calibrate); }); };
    cmdTest.click = [this] { useLine([this] { runDeviceCommand(program_, DeviceCommand::SelfTest); }); };
    cmdCLR.click = [this] { useLine([this] { runDeviceCommand(program_, DeviceCommand::ClearFaults); }); };
    cmdFACT.click = [this] {
        useLine([this] { runDeviceCommand(program_, DeviceCommand::FactorySettings); });
    };
    cmdFACTall.click = [this] {
        useLine([this] { runDeviceCommand(program_, DeviceCommand::FactorySettingsAll); });
    };
}

void frmMbMonitor::styleFields() {
    for (Label* label : {&lblRePos, &lblReNeg}) {
        asField(*label, 9, Align::Right);
    }
    asField(lblFehlerVorzeichen, 3, Align::Center);
    for (std::size_t index = 0; index < sliderEnds.size(); ++index) {
        lblSliderEnd_[index].caption = sliderEnds.at(index);
    }
}

/// Who presses a command is to know what is lost with it.
void frmMbMonitor::explainCommands() {
    cmdCal.toolTip =
        "Kalibrier-Modus nach Rückfrage: Das Gerät überwacht so lange nicht, die bisherige "
        "Kalibrierung geht verloren.";
    cmdTest.toolTip = "Selbsttest: Das Gerät überwacht so lange nicht. Es geht nichts verloren.";
    cmdCLR.toolTip = "Fehlerspeicher löschen: Die gespeicherten Alarme gehen verloren.";
    cmdFACT.toolTip =
        "Werkseinstellung ohne Rückfrage: Alle Parameter außer denen der Schnittstelle gehen "
        "verloren.";
    cmdFACTall.toolTip =
        "Werkseinstellung ohne Rückfrage: Alle Parameter gehen verloren, auch Adresse, "
        "Baudrate und Parität.";
}

void frmMbMonitor::load() {
    ChildForm::load();
    caption = program_.kdlActive() ? "KDL - Monitor" : "ModBus RTU - Monitor";
    showSlotNames();
    if (!program_.kdlActive()) {
        switchIndicators();
    }
    hideRowsFrom(program_.kdlActive() ? kdlRowCount : polledChannels);
    cmdCal.enabled = program_.DeviceType != batteryDeviceType;
}

void frmMbMonitor::showSlotNames() {
    for (std::size_t slot = 0; slot < slotCount; ++slot) {
        const auto slotName = program_.kdlActive() ? kdlSlotName(slot, program_.DeviceType)
                                                   : std::optional(modbusSlotName(slot, program_.DeviceType));
        if (slotName) {
            Label7[slot].caption = std::string(*slotName);
        }
    }
}

void frmMbMonitor::switchIndicators() {
    for (const std::size_t slot : switchedIndicators) {
        LED[slot].visible = program_.DeviceType != batteryDeviceType;
    }
}

/// Rows that the protocol in use never fills would only take the others' place.
void frmMbMonitor::hideRowsFrom(std::size_t firstHidden) {
    for (std::size_t slot = firstHidden; slot < slotCount; ++slot) {
        for (Label* label :
             {&Label7[slot], &lblMesswert[slot], &lblRange[slot], &lblEinheit[slot], &lblMessName[slot]}) {
            label->visible = false;
        }
        LED[slot].visible = false;
    }
}

void frmMbMonitor::runMonitor() {
    if (program_.kdlActive()) {
        KdlRunMonitor(program_, *this);
    } else {
        runModbusPoll(program_, *this);
    }
}

/// Over the KDL bus a poll and a command both let the user's presses through.
void frmMbMonitor::useLine(const std::function<void()>& operation) {
    const LineUse line(program_);
    if (!line) {
        return;
    }
    enableCommands(false);
    operation();
    enableCommands(true);
}

void frmMbMonitor::enableCommands(bool enabled) {
    for (Button* button : {&cmdFACT, &cmdFACTall, &cmdTest, &cmdRunMonitor, &cmdCLR, &cmdClose}) {
        button->enabled = enabled;
    }
    cmdCal.enabled = enabled && program_.DeviceType != batteryDeviceType;
}

void frmMbMonitor::cycleDone() {
    showFaultPosition(
        faultPosition(shownNumber(faultPositionSlot), shownNumber(resistanceSlot), program_.DeviceType));
}

void frmMbMonitor::showFaultPosition(const FaultPosition& position) {
    Slider1.value = position.slider;
    lblFehlerVorzeichen.caption = std::string(position.sign);
    lblReNeg.caption = position.reNegative;
    lblRePos.caption = position.rePositive;
}

Box frmMbMonitor::faultFrame() {
    return framed(
        fraFehlerort_,
        column({Slider1, row({lblSliderEnd_[0], stretch(), lblSliderEnd_[1], stretch(), lblSliderEnd_[2]}),
                row({lblReNegText_, lblReNeg, lblReNegUnit_, stretch(), lblFehlerVorzeichen, stretch(),
                     lblRePosText_, lblRePos, lblRePosUnit_})}));
}

Box frmMbMonitor::commandFrame() {
    return framed(fraBefehle_,
                  column({grid(2, {cmdCal, cmdTest, cmdCLR}), gap(), gap(), grid(2, {cmdFACT, cmdFACTall})}));
}

Box frmMbMonitor::layout() {
    return column({deviceFrame(), row({column({channelTable(), faultFrame(), stretch()}),
                                       column({legendFrame(), testFrame(), commandFrame(), stretch(),
                                               cmdRunMonitor, cmdStop, cmdClose})})});
}

}  // namespace vek
