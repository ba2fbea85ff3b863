#include "parameters/writeparameters.h"

#include <algorithm>
#include <array>
#include <string>
#include <string_view>

#include "modbus/ModBus.h"
#include "parameters/ParamValueText.h"
#include "parameters/bussettings.h"
#include "parameters/parameterpass.h"
#include "parameters/parametertable.h"
#include "parameters/unreadparameters.h"
#include "platform/leadingnumber.h"

namespace vek {

namespace {

using C = ParameterControls;

struct Writing {
    Program& program;
    C& controls;
    const ParameterRow& row;

    bool send(std::uint16_t value) const {
        return MbWriteRegisters(program, registerOf(row, program.DeviceType), 1, 2, WordToBytes(value));
    }

    void reportFailure(const char* text) const { showError(program, text, writeErrorTitle); }

    void sendReported(std::uint16_t value) const {
        if (!send(value)) {
            reportFailure(row.writeFailure);
        }
    }
};

std::uint16_t roundedValue(double value) {
    return static_cast<std::uint16_t>(wholeNumber(value, 0, 0xFFFF));
}

/// Writes a parameter from its controls.
struct WriteKind : Writing {
    void operator()(const NumberParameter& number) const {
        const std::string text = (controls.*number.box).text;
        const double value = ParamValueText(text);
        const NumberRange& range = rangeOf(number, program.DeviceType);
        if (value >= range.lowest && value <= range.highest && !isErrorText(text)) {
            sendReported(roundedValue(value));
        } else {
            showError(program, outOfRangeText(number, program.DeviceType));
        }
    }

    void operator()(const FlagParameter& flag) const { sendReported((controls.*flag.box).value ? 1 : 0); }

    void operator()(const ChoiceParameter& choice) const {
        const ChoiceParameter::Option* option = selectedOption(controls, choice);
        if (option == nullptr) {
            if (choice.noneSelected != nullptr) {
                showError(program, choice.noneSelected, choice.noneSelectedTitle);
            }
        } else if (!send(option->code)) {
            reportFailure(writeFailureOf(controls, row));
        }
    }

    void operator()(const AlarmMaskParameter& mask) const {
        unsigned bits = 0;
        for (std::size_t number = 1; number <= AlarmBoxes::count; ++number) {
            bits |= ((controls.*mask.boxes)[number].value ? 1U : 0U) << number;
        }
        sendReported(static_cast<std::uint16_t>(bits));
    }
};

/// A threshold that the editor has not shown yet, now that the measurement is on.
void fetchThreshold(const Writing& writing, ParameterField field, TextBox& box, Label& label) {
    if (box.text.get() == noParameterText) {
        box.enabled = true;
        label.enabled = true;
        box.text =
            MbReadRegisters(writing.program, registerOf(parameterRow(field), writing.program.DeviceType), 1);
    }
}

void writeImpedanceSwitch(const Writing& writing) {
    C& controls = writing.controls;
    const bool on = controls.chkZe.value;
    if (!writing.send(on ? 1 : 0)) {
        writing.reportFailure(writing.row.writeFailure);
    } else if (on) {
        fetchThreshold(writing, ParameterField::ZWarnung, controls.txtZWarnung, controls.lblZWarnung);
        fetchThreshold(writing, ParameterField::ZAlarm, controls.txtZAlarm, controls.lblZAlarm);
    } else {
        controls.txtZWarnung.text = noParameterText;
        controls.txtZAlarm.text = noParameterText;
    }
}

/// Goes on at the program's new settings.
void reopenPort(Program& program) {
    ClosePort(program);
    OpenPort(program);
}

void writeAddress(const Writing& writing) {
    Program& program = writing.program;
    const auto& number = std::get<NumberParameter>(writing.row.kind);
    const std::string text = (writing.controls.*number.box).text;
    const double value = ParamValueText(text);
    if (!isDeviceAddress(value) || isErrorText(text)) {
        showError(program, addressRefused);
        return;
    }
    if (value == program.DeviceAddress) {
        return;
    }
    const std::uint16_t address = roundedValue(value);
    if (!writing.send(address)) {
        writing.reportFailure(writing.row.writeFailure);
        return;
    }
    ClosePort(program);
    // What the device was told, not the box: their number rules differ in exponents and inner blanks.
    SetDeviceAddress(program, std::to_string(address));
    OpenPort(program);
    program.shell.addressPanel = "ModBus-Geräteadresse = " + std::to_string(program.DeviceAddress);
}

/// Baud rate and parity count as written without a look at the reply; but a port that is closed, or whose
/// adapter has been pulled out, has asked nobody.
bool sendBusSetting(const Writing& writing, std::uint16_t code) {
    return writing.program.RS485.isOpen() && writing.send(code) && writing.program.RS485.isConnected();
}

/// In the order of the codes.

void writeParity(const Writing& writing) {
    Program& program = writing.program;
    const auto* option = selectedOption(writing.controls, std::get<ChoiceParameter>(writing.row.kind));
    if (option == nullptr || program.FrameFormat == modbusFrameFormats.at(option->code)) {
        return;
    }
    if (!sendBusSetting(writing, option->code)) {
        writing.reportFailure(writing.row.writeFailure);
        return;
    }
    program.FrameFormat = modbusFrameFormats.at(option->code);
    reopenPort(program);
    showModbusPort(program);
}

void endAfterSwitchToKdl(Program& program) {
    showNote(program, "Es wurde auf das KDL-Protokoll umgeschaltet, daher wird die Anwendung geschlossen");
    ClosePort(program);
    UnloadAllWindows(program);
}

void writeBaudRate(const Writing& writing) {
    Program& program = writing.program;
    const auto* option = selectedOption(writing.controls, std::get<ChoiceParameter>(writing.row.kind));
    if (option == nullptr || program.BaudRate == baudRateOfCode(option->code)) {
        return;
    }
    if (!sendBusSetting(writing, option->code)) {
        writing.reportFailure(writing.row.writeFailure);
        return;
    }
    if (baudRateOfCode(option->code) == 0) {
        endAfterSwitchToKdl(program);
        return;
    }
    program.BaudRate = baudRateOfCode(option->code);
    reopenPort(program);
    showModbusPort(program);
}

constexpr std::array<SpecialWrite<Writing>, 4> specialWrites = {{
    {ParameterField::ZeAktiv, writeImpedanceSwitch},
    {ParameterField::Adresse, writeAddress},
    {ParameterField::Paritaet, writeParity},
    {ParameterField::BaudCode, writeBaudRate},
}};

}  // namespace

void WriteParameters(Program& program, ParameterControls& controls) {
    OpenPort(program);
    writeRows(program, controls, rowsInOrder(writeOrder(), program.DeviceType), [&](const ParameterRow& row) {
        writeParameter<WriteKind>(specialWrites, Writing{program, controls, row});
    });
    ClosePort(program);
}

}  // namespace vek
