#include "monitor/frmMessReg.h"

#include <array>
#include <string>

#include "devicemodel/descriptiontexts.h"
#include "modbus/ModBusLink1.h"
#include "monitor/measurementreading.h"
#include "platform/leadingnumber.h"

namespace vek {

namespace {

constexpr std::int64_t lowestRegister = 1000;
constexpr std::int64_t highestRegister = 32764;  // the last of the channel's four is then 32767

constexpr std::array<const char*, 6> headings = {"Messwert", "Test",    "Alarm",
                                                 "Range",    "Einheit", "Beschreibung"};

/// The register number that the text names; nothing when no channel can start there.
std::optional<std::uint16_t> startRegister(const std::string& text) {
    const std::int64_t number = wholeNumber(leadingNumber(text), lowestRegister, highestRegister);
    return number == 0 ? std::nullopt : std::optional(static_cast<std::uint16_t>(number));
}

/// One field of the status word, as its number and in words.
template <class State>
void showField(Label& number, Label& text, State state) {
    number.caption = std::to_string(static_cast<unsigned>(state));
    text.caption = std::string(toolText(state));
}

void showNothing(std::initializer_list<Label*> labels) {
    for (Label* label : labels) {
        label->caption = noValueText;
    }
}

}  // namespace

frmMessReg::frmMessReg(Program& program) : ChildForm(program, "frmMessReg") {
    caption = "Messwert-Register";
    for (std::size_t index = 0; index < headings.size(); ++index) {
        lblHeading_[index].caption = headings.at(index);
    }
    for (Label* number :
         {&lblMessVal, &lblMessTest, &lblMessAlarm, &lblMessRange, &lblMessEinheit, &lblMessBeschreibung}) {
        number->sunken = true;
        number->minimumCharacters = 16;
        number->align = Align::Right;
    }
    for (Label* text : {&lblTestTxt, &lblAlarmTxt, &lblRangeTxt, &lblEinheitTxt, &lblBezTxt}) {
        text->sunken = true;
        text->minimumCharacters = 24;
    }
    lblMessVal.minimumCharacters = 40;  // the longest values, so that none moves the columns
    cmdMessRegRead.click = [this] { read(); };
}

void frmMessReg::read() {
    const LineUse line(program_);
    if (!line) {
        return;
    }
    const auto start = startRegister(txtMessRegNr.text);
    if (!start) {
        clearFields();
        showError(program_, "Keine gültige Registeradresse vorhanden.");
        return;
    }
    OpenPort(program_);
    const MeasurementChannel channel = readChannel(program_, *start);
    showValue(channel.Value);
    showStatus(channel.status);
    showDescription(channel.DescriptionCode);
    ClosePort(program_);
}

void frmMessReg::clearFields() {
    for (Label* label : {&lblMessVal, &lblMessTest, &lblTestTxt, &lblMessAlarm, &lblAlarmTxt, &lblMessRange,
                         &lblRangeTxt, &lblMessEinheit, &lblEinheitTxt, &lblMessBeschreibung, &lblBezTxt}) {
        label->caption = std::string();
    }
}

void frmMessReg::showValue(const std::optional<float>& value) {
    lblMessVal.caption = value ? program_.locale.plain(*value) : noValueText;
}

void frmMessReg::showStatus(const std::optional<ChannelStatus>& status) {
    if (!status) {
        showNothing({&lblMessTest, &lblTestTxt, &lblMessAlarm, &lblAlarmTxt, &lblMessRange, &lblRangeTxt,
                     &lblMessEinheit, &lblEinheitTxt});
        return;
    }
    showField(lblMessTest, lblTestTxt, status->test);
    showField(lblMessAlarm, lblAlarmTxt, status->alarm);
    showField(lblMessRange, lblRangeTxt, status->range);
    showField(lblMessEinheit, lblEinheitTxt, status->unit);
}

void frmMessReg::showDescription(const std::optional<std::uint16_t>& code) {
    if (!code) {
        showNothing({&lblMessBeschreibung, &lblBezTxt});
        return;
    }
    lblMessBeschreibung.caption = std::to_string(*code);
    lblBezTxt.caption = std::string(descriptionText(*code));
}

Box frmMessReg::layout() {
    Box table = grid(3,
                     {lblHeading_[0], spanning(2, lblMessVal),          //
                      lblHeading_[1], lblMessTest, lblTestTxt,          //
                      lblHeading_[2], lblMessAlarm, lblAlarmTxt,        //
                      lblHeading_[3], lblMessRange, lblRangeTxt,        //
                      lblHeading_[4], lblMessEinheit, lblEinheitTxt,    //
                      lblHeading_[5], lblMessBeschreibung, lblBezTxt},  //
                     {2});
    return column({row({lblMessRegNr_, txtMessRegNr, stretch(), cmdMessRegRead}),
                   framed(fraMesskanal_, std::move(table))});
}

}  // namespace vek
