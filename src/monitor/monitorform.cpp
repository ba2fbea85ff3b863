#include "monitor/monitorform.h"

#include <array>
#include <utility>

#include "devicemodel/monitorrendering.h"

namespace vek {

namespace {

constexpr std::array<const char*, 5> headings = {"Beschreibung", "Messwert", "Range", "Einheit",
                                                 "Alarm-Meldung"};
constexpr std::array<const char*, 5> deviceTexts = {"Name", "SW-Nummer", "SW-Version", "SW-Datum",
                                                    "ModBus-Treiber"};

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

}  // namespace

MonitorForm::MonitorForm(Program& program, std::string formName, std::size_t slotCount,
                         std::string stopCaption)
    : ChildForm(program, std::move(formName)),
      Label7("Label7", slotCount),
      lblMesswert("lblMesswert", slotCount),
      lblRange("lblRange", slotCount),
      lblEinheit("lblEinheit", slotCount),
      lblMessName("lblMessName", slotCount),
      LED("LED", slotCount),
      cmdStop("cmdStop", std::move(stopCaption), 't'),
      shownNumbers_(slotCount) {
    styleTables();
    cmdStop.click = [this] { program_.MonitorRunning = false; };
    cmdClose.click = [this] { close(); };
}

void MonitorForm::styleTables() {
    for (std::size_t column = 0; column < headings.size(); ++column) {
        lblHeading_[column].caption = headings.at(column);
        lblHeading_[column].style = TextStyle::Bold;
        lblDeviceText_[column].caption = deviceTexts.at(column);
    }
    lblHeading_[1].align = Align::Right;
    for (std::size_t slot = 0; slot < LED.size(); ++slot) {
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
    for (std::size_t index = 0; index < legend.size(); ++index) {
        lblLegend_[index].caption = legend.at(index).text;
        shpLegend_[index].fillColor = legend.at(index).color;
    }
}

void MonitorForm::unload() {
    program_.MonitorRunning = false;
    ChildForm::unload();
}

void MonitorForm::showValue(std::size_t slot, std::optional<float> value) {
    const std::uint8_t type = program_.DeviceType;
    shownNumbers_.at(slot) = value ? channelNumber(slot, type, *value) : std::nullopt;
    lblMesswert[slot].caption = value ? channelValueText(slot, type, *value, program_.locale) : noValueText;
}

Box MonitorForm::channelTable() {
    Box table = grid(6, {}, {5});
    for (std::size_t column = 0; column < headings.size(); ++column) {
        const bool aboveIndicatorToo = column + 1 == headings.size();
        table.parts.push_back(spanning(aboveIndicatorToo ? 2 : 1, lblHeading_[column]));
    }
    for (std::size_t slot = 0; slot < LED.size(); ++slot) {
        table.parts.insert(table.parts.end(), {Label7[slot], lblMesswert[slot], lblRange[slot],
                                               lblEinheit[slot], LED[slot], lblMessName[slot]});
    }
    return framed(fraMesswerte_, std::move(table));
}

Box MonitorForm::deviceFrame() {
    Box table = grid(5, {}, {0});
    for (Label& text : lblDeviceText_) {
        table.parts.emplace_back(text);
    }
    for (Label* label : {&lblDevName, &lblSwRegNr, &lblSwVer, &lblSwDate, &lblSwMb}) {
        table.parts.emplace_back(*label);
    }
    return framed(fraGeraet_, std::move(table));
}

Box MonitorForm::legendFrame() {
    Box table = grid(2, {}, {1});
    for (std::size_t index = 0; index < legend.size(); ++index) {
        table.parts.emplace_back(shpLegend_[index]);
        table.parts.emplace_back(lblLegend_[index]);
    }
    return framed(fraLegende_, std::move(table));
}

Box MonitorForm::testFrame() {
    return framed(Frame2, grid(2, {LED_TEST_INTERN, lblTestIntern_, LED_TEST_EXTERN, lblTestExtern_}, {1}));
}

void asField(Label& label, int minimumCharacters, Align align) {
    label.sunken = true;
    label.minimumCharacters = minimumCharacters;
    label.align = align;
}

}  // namespace vek
