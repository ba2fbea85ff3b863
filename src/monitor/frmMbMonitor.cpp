#include "monitor/frmMbMonitor.h"

#include <string_view>

#include "devicemodel/faultposition.h"
#include "devicemodel/monitorrendering.h"
#include "devicemodel/slotnames.h"

namespace vek {

namespace {

constexpr std::uint8_t batteryType = 9;
constexpr int resistanceSlot = 0;
constexpr int faultPositionSlot = 6;

constexpr std::array<const char*, 5> headings = {"Beschreibung", "Messwert", "Range", "Einheit",
                                                 "Alarm-Meldung"};
constexpr std::array<const char*, 5> deviceTexts = {"Name", "SW-Nummer", "SW-Version", "SW-Datum",
                                                    "ModBus-Treiber"};
constexpr std::array<const char*, 3> sliderEnds = {"-100", "0", "+100"};

struct LegendRow {
    Color color;
    const char* text;
};
constexpr std::array<LegendRow, 5> legend = {{
    {colors::green, " => kein Alarm"},
    {colors::yellow, " => Voralarm"},
    {colors::magenta, " => Gerätefehler"},
    {colors::cyan, " => Warnung"},
    {colors::red, " => Alarm"},
}};

constexpr std::array<std::size_t, 6> switchedIndicators = {1, 4, 5, 6, 7, 8};

void asField(Label& label, int minimumCharacters, Align align) {
    label.sunken = true;
    label.minimumCharacters = minimumCharacters;
    label.align = align;
}

template <class Labels, class Texts>
void setCaptions(Labels& labels, const Texts& texts) {
    for (std::size_t index = 0; index < labels.size(); ++index) {
        labels[index].caption = texts[index];
    }
}

}  // namespace

frmMbMonitor::frmMbMonitor(Program& program) : ChildForm(program, "frmMbMonitor") {
    styleFields();
    cmdRunMonitor.click = [this] { runMonitor(); };
    cmdStop.click = [this] { program_.MonitorRunning = false; };
    cmdClose.click = [this] { close(); };
    cmdCal.click = [this] { runDeviceCommand(program_, DeviceCommand::Calibrate); };
    cmdTest.click = [this] { runDeviceCommand(program_, DeviceCommand::SelfTest); };
    cmdCLR.click = [this] { runDeviceCommand(program_, DeviceCommand::ClearFaults); };
    cmdFACT.click = [this] { runDeviceCommand(program_, DeviceCommand::FactorySettings); };
    cmdFACTall.click = [this] { runDeviceCommand(program_, DeviceCommand::FactorySettingsAll); };
}

void frmMbMonitor::styleFields() {
    for (std::size_t slot = 0; slot < slotCount; ++slot) {
        Label7[slot].minimumCharacters = 22;
        asField(lblMesswert[slot], 12, Align::Right);
        asField(lblRange[slot], 3, Align::Center);
        asField(lblEinheit[slot], 6, Align::Left);
        asField(lblMessName[slot], 24, Align::Left);
    }
    for (Label* label : {&lblDevName, &lblSwRegNr, &lblSwVer, &lblSwDate, &lblSwMb}) {
        asField(*label, 11, Align::Left);
    }
    lblDevName.minimumCharacters = 20;
    for (Label* label : {&lblRePos, &lblReNeg}) {
        asField(*label, 9, Align::Right);
    }
    asField(lblFehlerVorzeichen, 3, Align::Center);
    setCaptions(lblHeading_, headings);
    setCaptions(lblDeviceText_, deviceTexts);
    setCaptions(lblSliderEnd_, sliderEnds);
    for (std::size_t index = 0; index < legend.size(); ++index) {
        lblLegend_[index].caption = legend.at(index).text;
        shpLegend_[index].fillColor = legend.at(index).color;
    }
    for (Label& heading : lblHeading_) {
        heading.style = TextStyle::Bold;
    }
    lblHeading_[1].align = Align::Right;
}

void frmMbMonitor::load() {
    ChildForm::load();
    caption = program_.kdlActive() ? "KDL - Monitor" : "ModBus RTU - Monitor";
    showSlotNames();
    if (!program_.kdlActive()) {
        switchIndicators();
    }
    hideRowsFrom(program_.kdlActive() ? kdlRowCount : polledChannels);
    cmdCal.enabled = program_.DeviceType != batteryType;
}

void frmMbMonitor::unload() {
    program_.MonitorRunning = false;
    ChildForm::unload();
}

void frmMbMonitor::showSlotNames() {
    for (int slot = 0; slot < slotCount; ++slot) {
        const auto slotName = program_.kdlActive() ? kdlSlotName(slot, program_.DeviceType)
                                                   : std::optional(modbusSlotName(slot, program_.DeviceType));
        if (slotName) {
            Label7[static_cast<std::size_t>(slot)].caption = std::string(*slotName);
        }
    }
}

void frmMbMonitor::switchIndicators() {
    for (const std::size_t slot : switchedIndicators) {
        LED[slot].visible = program_.DeviceType != batteryType;
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
    const LineUse line(program_);
    if (!line) {
        return;
    }
    enableCommands(false);
    if (program_.kdlActive()) {
        KdlRunMonitor(program_, *this);
    } else {
        runModbusPoll(program_, *this);
    }
    enableCommands(true);
}

void frmMbMonitor::enableCommands(bool enabled) {
    for (Button* button : {&cmdFACT, &cmdFACTall, &cmdTest, &cmdRunMonitor, &cmdCLR, &cmdClose}) {
        button->enabled = enabled;
    }
    cmdCal.enabled = enabled && program_.DeviceType != batteryType;
}

ChannelRow frmMbMonitor::channelRow(int slot) {
    const auto index = static_cast<std::size_t>(slot);
    return {lblMesswert[index], lblRange[index], lblEinheit[index], lblMessName[index], LED[index]};
}

std::string frmMbMonitor::valueText(int slot, float value) {
    shownNumber(slot) = channelNumber(slot, program_.DeviceType, value);
    return channelValueText(slot, program_.DeviceType, value, program_.locale);
}

void frmMbMonitor::cycleDone() {
    showFaultPosition(faultPosition(shownNumber(faultPositionSlot), shownNumber(resistanceSlot).value_or(0),
                                    program_.DeviceType));
}

void frmMbMonitor::showFaultPosition(const FaultPosition& position) {
    Slider1.value = position.slider;
    lblFehlerVorzeichen.caption = std::string(position.sign);
    lblReNeg.caption = position.reNegative;
    lblRePos.caption = position.rePositive;
}

Box frmMbMonitor::channelTable() {
    Box table = grid(6, {}, {5});
    for (std::size_t column = 0; column < headings.size(); ++column) {
        const bool aboveIndicatorToo = column + 1 == headings.size();
        table.parts.push_back(spanning(aboveIndicatorToo ? 2 : 1, lblHeading_[column]));
    }
    for (std::size_t slot = 0; slot < slotCount; ++slot) {
        for (Control* control :
             std::initializer_list<Control*>{&Label7[slot], &lblMesswert[slot], &lblRange[slot],
                                             &lblEinheit[slot], &LED[slot], &lblMessName[slot]}) {
            table.parts.emplace_back(*control);
        }
    }
    return framed(fraMesswerte_, std::move(table));
}

Box frmMbMonitor::deviceFrame() {
    Box table = grid(5, {}, {0});
    for (Label& text : lblDeviceText_) {
        table.parts.emplace_back(text);
    }
    for (Label* label : {&lblDevName, &lblSwRegNr, &lblSwVer, &lblSwDate, &lblSwMb}) {
        table.parts.emplace_back(*label);
    }
    return framed(fraGeraet_, std::move(table));
}

Box frmMbMonitor::faultFrame() {
    return framed(
        fraFehlerort_,
        column({Slider1, row({lblSliderEnd_[0], stretch(), lblSliderEnd_[1], stretch(), lblSliderEnd_[2]}),
                row({lblReNegText_, lblReNeg, lblReNegUnit_, stretch(), lblFehlerVorzeichen, stretch(),
                     lblRePosText_, lblRePos, lblRePosUnit_})}));
}

Box frmMbMonitor::legendFrame() {
    Box table = grid(2, {}, {1});
    for (std::size_t index = 0; index < legend.size(); ++index) {
        table.parts.emplace_back(shpLegend_[index]);
        table.parts.emplace_back(lblLegend_[index]);
    }
    return framed(fraLegende_, std::move(table));
}

Box frmMbMonitor::commandFrame() {
    return framed(fraBefehle_, grid(2, {cmdCal, cmdTest, cmdCLR, cmdFACT, cmdFACTall}));
}

Box frmMbMonitor::layout() {
    const Box tests =
        framed(Frame2, grid(2, {LED_TEST_INTERN, lblTestIntern_, LED_TEST_EXTERN, lblTestExtern_}, {1}));
    return column(
        {deviceFrame(),
         row({column({channelTable(), faultFrame(), stretch()}),
              column({legendFrame(), tests, commandFrame(), stretch(), cmdRunMonitor, cmdStop, cmdClose})})});
}

}  // namespace vek
