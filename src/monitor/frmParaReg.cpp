#include "monitor/frmParaReg.h"

#include <algorithm>
#include <array>
#include <limits>
#include <string>
#include <vector>

#include "modbus/ModBus.h"
#include "platform/hextext.h"
#include "platform/leadingnumber.h"
#include "platform/textcodec.h"

namespace vek {

namespace {

constexpr std::int64_t highestRegister = 9999;
constexpr std::size_t bytesPerRegister = 2;

/// This tool is for registers that the user names himself, so it tells of missing ones, too.
constexpr ExceptionTexts writeExceptions = {.access = "Unzulässiger Datenzugriff",
                                            .value = "Unzulässiger Datenwert"};

constexpr std::array<const char*, 4> headings = {"", "Hex", "Dezimal", "ASCII"};

/// The whole number that the text begins with; nothing when there is none within lowest..highest.
std::optional<std::int64_t> typedNumber(const std::string& text, std::int64_t lowest, std::int64_t highest) {
    const std::int64_t outside = highest + 1;
    const auto typed = numberAtBegin(text);
    const std::int64_t number = typed ? wholeNumber(*typed, lowest, highest, outside) : outside;
    return number == outside ? std::nullopt : std::optional(number);
}

}  // namespace

frmParaReg::frmParaReg(Program& program) : ChildForm(program, "frmParaReg") {
    caption = "Parameter-Register";
    styleTable();
    cmdRead.click = [this] { readRegisters(); };
    cmdWrite.click = [this] { writeRegister(); };
}

void frmParaReg::styleTable() {
    for (std::size_t column = 0; column < headings.size(); ++column) {
        lblHeading_[column].caption = headings.at(column);
        lblHeading_[column].style = TextStyle::Bold;
        lblHeading_[column].align = Align::Center;
    }
    for (std::size_t index = 0; index < rowCount; ++index) {
        lblRowNumber_[index].caption = std::to_string(index + 1);
        lblRowNumber_[index].align = Align::Right;
        for (Label* label : {&lblHexVal[index], &lblDezVal[index], &lblChr[index]}) {
            label->sunken = true;
            label->minimumCharacters = 10;
            label->align = Align::Center;
            label->style = TextStyle::FixedWidth;
        }
        lblDezVal[index].align = Align::Right;
    }
}

void frmParaReg::load() {
    ChildForm::load();
    std::vector<std::string> counts;
    for (std::size_t count = 1; count <= rowCount; ++count) {
        counts.push_back(std::to_string(count));
    }
    cmbRegAnz.items = std::move(counts);
    cmbRegAnz.text = std::string("1");
}

void frmParaReg::clearTable() {
    for (auto* column : {&lblHexVal, &lblDezVal, &lblChr}) {
        for (Label& label : *column) {
            label.caption = std::string();
        }
    }
}

std::optional<std::int64_t> frmParaReg::startRegister() const {
    return typedNumber(txtParaReg.text, 0, highestRegister);
}

std::optional<std::int64_t> frmParaReg::registerCount() const {
    return typedNumber(cmbRegAnz.text, 1, rowCount);
}

/// A register's bits: negative numbers go out as their two's complement.
std::optional<std::int64_t> frmParaReg::valueToWrite() const {
    return typedNumber(txtRegVal.text, std::numeric_limits<std::int16_t>::min(),
                       std::numeric_limits<std::uint16_t>::max());
}

void frmParaReg::refuse() {
    showError(program_, "Ungültiges Parameter-Register.");
}

void frmParaReg::readRegisters() {
    const LineUse line(program_);
    if (!line) {
        return;
    }
    clearTable();
    const auto start = startRegister();
    const auto count = registerCount();
    if (!start || !count) {
        refuse();
        return;
    }
    OpenPort(program_);
    const Bytes reply = SendReadRequest(program_, program_.DeviceAddress, static_cast<std::uint16_t>(*start),
                                        static_cast<std::uint16_t>(*count));
    if (isGoodReply(program_, reply)) {
        showRegisters(readReplyData(reply), static_cast<std::size_t>(*count));
    }
    ClosePort(program_);
}

void frmParaReg::showRegisters(const Bytes& data, std::size_t count) {
    const std::size_t arrived = std::min(count, data.size() / bytesPerRegister);
    for (std::size_t index = 0; index < arrived; ++index) {
        const Bytes word = data.substr(index * bytesPerRegister, bytesPerRegister);
        lblHexVal[index].caption = ToHexText(word);
        lblDezVal[index].caption = std::to_string(BytesToWord(word));
        lblChr[index].caption = withoutControls(utf8FromWindows1252(word));
    }
    if (arrived < count) {
        showNote(program_, "Das Gerät hat nur " + std::to_string(arrived) + " von " + std::to_string(count) +
                               " Registern geliefert.");
    }
}

void frmParaReg::writeRegister() {
    const LineUse line(program_);
    if (!line) {
        return;
    }
    clearTable();
    const auto start = startRegister();
    const auto value = valueToWrite();
    if (!start || cmbRegAnz.text.get().empty()) {
        refuse();
        return;
    }
    if (!value) {
        showError(program_, "Ungültiger Register-Wert.");
        return;
    }
    OpenPort(program_);
    const Bytes reply =
        SendWriteRequest(program_, program_.DeviceAddress, static_cast<std::uint16_t>(*start), 1,
                         bytesPerRegister, WordToBytes(static_cast<std::uint16_t>(*value)));
    if (isGoodReply(program_, reply, writeExceptions)) {
        showNote(program_, "Parameter erfolgreich geschrieben!");
    }
    ClosePort(program_);
}

Box frmParaReg::layout() {
    Box table = grid(4, {}, {1, 2, 3});
    for (Label& heading : lblHeading_) {
        table.parts.emplace_back(heading);
    }
    for (std::size_t index = 0; index < rowCount; ++index) {
        for (Label* label : {&lblRowNumber_[index], &lblHexVal[index], &lblDezVal[index], &lblChr[index]}) {
            table.parts.emplace_back(*label);
        }
    }
    const Box request = grid(3,
                             {lblParaReg_, txtParaReg, stretch(),  //
                              lblRegAnz_, cmbRegAnz, cmdRead,      //
                              lblRegVal_, txtRegVal, cmdWrite},
                             {1});
    return column({request, framed(fraRegister_, std::move(table))});
}

}  // namespace vek
