#include "parameters/kdlwriteparameters.h"

#include <algorithm>
#include <string>
#include <string_view>

#include "kdl/KDLBusLink.h"
#include "modbus/ModBus.h"
#include "parameters/ParamValueText.h"
#include "parameters/bussettings.h"
#include "parameters/kdlparametervalue.h"
#include "parameters/parametercodes.h"
#include "parameters/parameterpass.h"
#include "platform/leadingnumber.h"

namespace vek {

namespace {

using C = ParameterControls;

/// What a device says to a value.
enum class Answer : std::uint8_t { Acknowledged, Refused, None };

struct Writing {
    Program& program;
    C& controls;
    const ParameterRow& row;

    /// The device acknowledges with an empty reply.
    Answer transact(const std::string& command) const {
        const Bytes reply = KdlTransact(program, command);
        return reply.empty() ? Answer::Acknowledged
                             : (reply == kdlTimeOutError ? Answer::None : Answer::Refused);
    }

    /// No value follows a number whose selection is not acknowledged: it would go to the one selected before.
    Answer send(std::string_view value) const {
        const int number = row.kdl.numbers.of(program.DeviceType).value();
        if (transact(":CAN " + std::to_string(number)) != Answer::Acknowledged) {
            return Answer::Refused;
        }
        return transact(":TRSH " + std::string(value));
    }

    void reportFailure() const { showError(program, writeFailureOf(controls, row), writeErrorTitle); }

    void report(Answer answer) const {
        if (answer != Answer::Acknowledged) {
            reportFailure();
        }
    }

    void sendReported(std::string_view value) const { report(send(value)); }

    void sendReported(std::uint16_t code) const {
        report(row.kdl.query != nullptr ? transact(row.kdl.orders.at(code)) : send(std::to_string(code)));
    }
};

/// Whether the text can stand in a request, whose end is marked by "&", and says something.
bool isSendable(std::string_view text) {
    return text.find_first_not_of(' ') != std::string_view::npos &&
           std::all_of(text.begin(), text.end(), [](char c) { return c >= ' ' && c <= '~' && c != '&'; });
}

/// The text goes out as it is: one that can be read in two ways ("1 00", "1e2") is in no range.
bool isInRange(std::string_view text, const NumberRange& range) {
    const double value = ParamValueText(text);
    return value >= range.lowest && value <= range.highest && value == leadingNumber(text);
}

/// Whether a 0 switches a resistance threshold off: while its check box is shown, which is beside an
/// impedance measurement. A value out of range is refused there too, and so is a text without a number:
/// nobody expects that a slip of the finger takes an alarm away.
bool switchesResistanceOff(const C& controls, const ParameterRow& row, std::string_view text) {
    return (controls.*row.kdl.onOff).visible && wholeTextNumber(text) == 0.0;
}

/// Whether a box switches its threshold off. An empty box, such as a read without a reply leaves behind, does
/// not.
bool switchesOff(const C& controls, const ParameterRow& row, std::string_view text) {
    if (row.kdl.onOff == nullptr || !isSendable(text)) {
        return false;
    }
    return text == kdlOffText ||
           (row.kdl.zeroIsOff ? ParamValueText(text) == 0 : switchesResistanceOff(controls, row, text));
}

/// The box decides; the check box follows.
void showState(const Writing& writing, TextBox& box, bool on) {
    if (writing.row.kdl.onOff == nullptr) {
        return;
    }
    CheckBox& onOff = writing.controls.*writing.row.kdl.onOff;
    onOff.value = on && onOff.visible;
    if (!on) {
        box.text = kdlOffText;
    }
}

void writeNumber(const Writing& writing, const NumberParameter& number) {
    const ParameterRow& row = writing.row;
    const std::uint8_t deviceType = writing.program.DeviceType;
    TextBox& box = writing.controls.*number.box;
    const std::string text = box.text;
    if (switchesOff(writing.controls, row, text)) {
        showState(writing, box, false);
        writing.sendReported("0");
    } else if (!isSendable(text) || (row.kdl.hasRange && !isInRange(text, rangeOf(number, deviceType)))) {
        showError(writing.program,
                  row.kdl.outOfRange != nullptr ? row.kdl.outOfRange : outOfRangeText(number, deviceType));
    } else {
        showState(writing, box, true);
        writing.sendReported(text);
    }
}

/// One number says whether the impedance measurement is on and at which mains frequency.
void writeImpedanceMeasurement(const Writing& writing) {
    C& controls = writing.controls;
    const ParameterRow& frequency = parameterRow(ParameterField::Netzfrequenz);
    if (controls.chkZe.value) {
        const std::uint16_t lowest = std::get<ChoiceParameter>(frequency.kind).options.front().code;
        writing.sendReported(shownCode(controls, frequency, Bus::Kdl).value_or(lowest));
    } else {
        writing.sendReported("0");
        controls.chkRWarnung.value = false;
        controls.chkRAlarm.value = false;
    }
}

/// The address as the link can take it: up to three digits between blanks; empty for any other text.
std::string_view addressDigits(std::string_view text) {
    const std::size_t first = std::min(text.find_first_not_of(' '), text.size());
    const std::string_view digits = text.substr(first, text.find_last_not_of(' ') + 1 - first);
    constexpr std::size_t longestAddress = 3;
    const bool valid =
        digits.size() <= longestAddress && digits.find_first_not_of("0123456789") == std::string_view::npos;
    return valid ? digits : std::string_view();
}

void follow(Program& program, const std::string& address) {
    KdlClosePort(program);
    KdlSetAddress(program, address);
    KdlOpenPort(program);
}

bool isThere(Program& program) {
    return KdlTransact(program, ":TRSH? 14") != kdlTimeOutError;
}

/// The device is asked at its new address from here on; whether one that said nothing has moved, it must show
/// there. An address that the link cannot take would end the program in the middle of the set, so that it is
/// refused before the device hears of it.
void writeAddress(const Writing& writing) {
    Program& program = writing.program;
    const std::string address(addressDigits(writing.controls.txtAdresse.text.get()));
    if (address.empty() || !isDeviceAddress(ParamValueText(address))) {
        showError(program, addressRefused);
        return;
    }
    const Answer answer = writing.send(address);
    if (answer == Answer::Refused) {
        writing.reportFailure();
        return;
    }
    const std::string before = program.KdlAddressPrefix.substr(2);
    follow(program, address);
    if (answer == Answer::None && !isThere(program)) {
        follow(program, before);
        writing.reportFailure();
        return;
    }
    program.shell.addressPanel = "KDL-Geräteadresse = " + address;
}

void endAfterSwitchToModbus(Program& program, std::int32_t baudRate) {
    program.FrameFormat = evenParityFrame;
    program.BaudRate = baudRate;
    showNote(program, "Es wurde auf das ModBus-Protokoll mit " + std::to_string(baudRate) +
                          "Baud (Parität = E,8,1)umgeschaltet, anschließend wird die Parameter-Eingabe "
                          "beendet. Es muss sichergestellt sein, dass die Parität am ZEPHYRON "
                          "dementsprechend eingestellt ist!");
    showModbusPort(program);
    KdlClosePort(program);
    UnloadAllWindows(program);
}

/// A Modbus rate other than the present one takes the device off the KDL bus, perhaps before it has said so.
void writeBaudRate(const Writing& writing) {
    Program& program = writing.program;
    const std::uint16_t code = shownCode(writing.controls, writing.row, Bus::Kdl).value_or(0);
    const std::int32_t baudRate = baudRateOfCode(code);
    if (baudRate == 0 || baudRate == program.BaudRate) {
        return;
    }
    const Answer answer = writing.send(std::to_string(code));
    const bool asked = answer == Answer::Acknowledged || program.RS485.isConnected();
    if (answer == Answer::Refused || !asked) {
        writing.reportFailure();
    } else {
        endAfterSwitchToModbus(program, baudRate);
    }
}

void writeParameter(const Writing& writing) {
    switch (writing.row.field) {
        case ParameterField::ZeAktiv:
            return writeImpedanceMeasurement(writing);
        case ParameterField::Adresse:
            return writeAddress(writing);
        case ParameterField::BaudCode:
            return writeBaudRate(writing);
        default:
            break;
    }
    if (const auto* number = std::get_if<NumberParameter>(&writing.row.kind)) {
        writeNumber(writing, *number);
    } else if (const auto code = shownCode(writing.controls, writing.row, Bus::Kdl)) {
        writing.sendReported(*code);
    } else {
        reportNoneSelected(writing.program, writing.row);
    }
}

}  // namespace

void KdlWriteParameters(Program& program, ParameterControls& controls) {
    KdlOpenPort(program);
    writeRows(program, controls, rowsInOrder(ParameterOrder::KdlWrite, program.DeviceType),
              [&](const ParameterRow& row) {
                  writeParameter({program, controls, row});
              });
    KdlClosePort(program);
}

}  // namespace vek
