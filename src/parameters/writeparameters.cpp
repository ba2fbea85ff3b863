#include "parameters/writeparameters.h"

#include <optional>
#include <string>

#include "modbus/ModBus.h"
#include "parameters/ParamValueText.h"
#include "parameters/bussettings.h"
#include "parameters/parametercodes.h"
#include "parameters/readparameters.h"
#include "platform/leadingnumber.h"
#include "platform/numberlocale.h"

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

    bool reportFailure() const {
        showError(program, writeFailureOf(controls, row), writeErrorTitle);
        return false;
    }

    bool sendReported(std::uint16_t value) const { return send(value) || reportFailure(); }
};

std::uint16_t roundedValue(double value) {
    return static_cast<std::uint16_t>(wholeNumber(value, 0, 0xFFFF));
}

bool writeNumber(const Writing& writing, const NumberParameter& number) {
    TextBox& box = writing.controls.*number.box;
    const std::optional<double> value = leadingTextNumber(box.text.get());
    const NumberRange& range = rangeOf(number, writing.program.DeviceType);
    if (value && *value >= range.lowest && *value <= range.highest) {
        return writing.sendReported(roundedValue(*value));
    }
    refuse(writing.program, box, outOfRangeText(number, writing.program.DeviceType));
    return false;
}

/// A threshold that the editor has not shown yet, now that the measurement is on.
void fetchThreshold(const Writing& writing, ParameterField field, TextBox& box, Label& label) {
    if (box.text.get() == noValueText) {
        box.enabled = true;
        label.enabled = true;
        showReadNumber(box, MbReadRegisters(writing.program,
                                            registerOf(parameterRow(field), writing.program.DeviceType), 1));
    }
}

bool writeImpedanceSwitch(const Writing& writing) {
    C& controls = writing.controls;
    const bool on = controls.chkZe.value;
    if (!writing.send(on ? 1 : 0)) {
        return writing.reportFailure();
    }
    if (on) {
        fetchThreshold(writing, ParameterField::ZWarnung, controls.txtZWarnung, controls.lblZWarnung);
        fetchThreshold(writing, ParameterField::ZAlarm, controls.txtZAlarm, controls.lblZAlarm);
    } else {
        controls.txtZWarnung.text = noValueText;
        controls.txtZAlarm.text = noValueText;
    }
    return true;
}

/// Goes on at the program's new settings.
void reopenPort(Program& program) {
    ClosePort(program);
    OpenPort(program);
}

bool writeAddress(const Writing& writing) {
    Program& program = writing.program;
    TextBox& box = writing.controls.txtAdresse;
    const std::optional<double> value = leadingTextNumber(box.text.get());
    if (!value || !isDeviceAddress(*value)) {
        refuse(program, box, addressRefused);
        return false;
    }
    if (*value == program.DeviceAddress) {
        return true;
    }
    const std::uint16_t address = roundedValue(*value);
    if (!writing.send(address)) {
        return writing.reportFailure();
    }
    ClosePort(program);
    // What the device was told, not the box: their number rules differ in exponents and inner blanks.
    SetDeviceAddress(program, std::to_string(address));
    OpenPort(program);
    program.shell.addressPanel = "ModBus-Geräteadresse = " + std::to_string(program.DeviceAddress);
    return true;
}

/// Baud rate and parity count as written without a look at the reply; but a port that is closed, or whose
/// adapter has been pulled out, has asked nobody.
bool sendBusSetting(const Writing& writing, std::uint16_t code) {
    const bool sent =
        writing.program.RS485.isOpen() && writing.send(code) && writing.program.RS485.isConnected();
    writing.program.unansweredRequests = 0;  // the reply may come with the new setting already
    return sent;
}

bool writeParity(const Writing& writing) {
    Program& program = writing.program;
    const auto code = shownCode(writing.controls, writing.row, Bus::Modbus);
    if (program.FrameFormat == modbusFrameFormats.at(*code)) {
        return true;
    }
    if (!sendBusSetting(writing, *code)) {
        return writing.reportFailure();
    }
    program.FrameFormat = modbusFrameFormats.at(*code);
    reopenPort(program);
    showModbusPort(program);
    return true;
}

void endAfterSwitchToKdl(Program& program) {
    showNote(program, "Es wurde auf das KDL-Protokoll umgeschaltet, daher wird die Anwendung geschlossen");
    ClosePort(program);
    UnloadAllWindows(program);
}

bool writeBaudRate(const Writing& writing) {
    Program& program = writing.program;
    const auto code = shownCode(writing.controls, writing.row, Bus::Modbus);
    if (program.BaudRate == baudRateOfCode(*code)) {
        return true;
    }
    if (!sendBusSetting(writing, *code)) {
        return writing.reportFailure();
    }
    if (baudRateOfCode(*code) == 0) {
        endAfterSwitchToKdl(program);
        return true;
    }
    program.BaudRate = baudRateOfCode(*code);
    reopenPort(program);
    showModbusPort(program);
    return true;
}

bool writeParameter(const Writing& writing) {
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
    const auto* number = std::get_if<NumberParameter>(&writing.row.kind);
    return number != nullptr
               ? writeNumber(writing, *number)
               : writing.sendReported(shownCode(writing.controls, writing.row, Bus::Modbus).value());
}

}  // namespace

PassResult WriteParameters(Program& program, ParameterControls& controls) {
    OpenPort(program);
    const PassResult result =
        writeRows(program, controls, rowsInOrder(ParameterOrder::Write, program.DeviceType),
                  [&](const ParameterRow& row) {
                      return writeParameter({program, controls, row});
                  });
    ClosePort(program);
    return result;
}

}  // namespace vek
