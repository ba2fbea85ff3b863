#include "parameters/writeparameters.h"

#include <string>
#include <string_view>

#include "modbus/ModBus.h"
#include "parameters/ParamValueText.h"
#include "parameters/bussettings.h"
#include "parameters/parametercodes.h"
#include "parameters/parameterpass.h"
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

    void reportFailure() const { showError(program, writeFailureOf(controls, row), writeErrorTitle); }

    void sendReported(std::uint16_t value) const {
        if (!send(value)) {
            reportFailure();
        }
    }
};

std::uint16_t roundedValue(double value) {
    return static_cast<std::uint16_t>(wholeNumber(value, 0, 0xFFFF));
}

void writeNumber(const Writing& writing, const NumberParameter& number) {
    const std::string text = (writing.controls.*number.box).text;
    const double value = ParamValueText(text);
    const NumberRange& range = rangeOf(number, writing.program.DeviceType);
    if (value >= range.lowest && value <= range.highest && !isErrorText(text)) {
        writing.sendReported(roundedValue(value));
    } else {
        showError(writing.program, outOfRangeText(number, writing.program.DeviceType));
    }
}

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
        writing.reportFailure();
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
    const std::string text = writing.controls.txtAdresse.text;
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
        writing.reportFailure();
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

void writeParity(const Writing& writing) {
    Program& program = writing.program;
    const auto code = shownCode(writing.controls, writing.row, Bus::Modbus);
    if (!code || program.FrameFormat == modbusFrameFormats.at(*code)) {
        return;
    }
    if (!sendBusSetting(writing, *code)) {
        writing.reportFailure();
        return;
    }
    program.FrameFormat = modbusFrameFormats.at(*code);
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
    const auto code = shownCode(writing.controls, writing.row, Bus::Modbus);
    if (!code || program.BaudRate == baudRateOfCode(*code)) {
        return;
    }
    if (!sendBusSetting(writing, *code)) {
        writing.reportFailure();
        return;
    }
    if (baudRateOfCode(*code) == 0) {
        endAfterSwitchToKdl(program);
        return;
    }
    program.BaudRate = baudRateOfCode(*code);
    reopenPort(program);
    showModbusPort(program);
}

void writeParameter(const Writing& writing) {
    switch (writing.row.field) {
        case ParameterField::ZeAktiv:
            return writeImpedanceSwitch(writing);
        case ParameterField::Adresse:
            return writeAddress(writing);
        case ParameterField::Paritaet:
            return writeParity(writing);
        case ParameterField::BaudCode:
            return writeBaudRate(writing);
        default:
            break;
    }
    if (const auto* number = std::get_if<NumberParameter>(&writing.row.kind)) {
        writeNumber(writing, *number);
    } else if (const auto code = shownCode(writing.controls, writing.row, Bus::Modbus)) {
        writing.sendReported(*code);
    } else {
        reportNoneSelected(writing.program, writing.row);
    }
}

}  // namespace

void WriteParameters(Program& program, ParameterControls& controls) {
    OpenPort(program);
    writeRows(program, controls, rowsInOrder(ParameterOrder::Write, program.DeviceType),
              [&](const ParameterRow& row) {
                  writeParameter({program, controls, row});
              });
    ClosePort(program);
}

}  // namespace vek
