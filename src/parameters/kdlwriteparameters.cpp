#include "parameters/kdlwriteparameters.h"

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>

#include "kdl/KDLBusLink.h"
#include "modbus/ModBus.h"
#include "parameters/ParamValueText.h"
#include "parameters/bussettings.h"
#include "parameters/kdlparametervalue.h"
#include "parameters/parametercodes.h"
#include "platform/leadingnumber.h"
#include "platform/trimmed.h"

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

    bool reportFailure() const {
        showError(program, writeFailureOf(controls, row), writeErrorTitle);
        return false;
    }

    bool report(Answer answer) const { return answer == Answer::Acknowledged || reportFailure(); }

    bool sendReported(std::string_view value) const { return report(send(value)); }

    bool sendReported(std::uint16_t code) const {
        return report(row.kdl.query != nullptr ? transact(row.kdl.orders.at(code))
                                               : send(std::to_string(code)));
    }
};

/// The text goes out as it is: one that is not a number as a whole, or that can be read in two ways ("1 00",
/// "1e2"), is none.
std::optional<double> sendableNumber(std::string_view text) {
    const bool printable = std::all_of(text.begin(), text.end(), [](char c) { return c >= ' ' && c <= '~'; });
    const std::optional<double> value = wholeTextNumber(text);
    return printable && value == leadingNumber(text) ? value : std::nullopt;
}

bool isInRange(double value, const NumberRange& range) {
    return value >= range.lowest && value <= range.highest;
}

/// Whether the text switches its threshold off: a resistance by the number 0 only while its check box is
/// shown, which is beside an impedance measurement.
bool switchesOff(const C& controls, const ParameterRow& row, std::string_view text) {
    if (row.kdl.onOff == nullptr) {
        return false;
    }
    const bool zeroIsOff = row.kdl.zeroIsOff || (controls.*row.kdl.onOff).visible;
    return text == kdlOffText || (zeroIsOff && wholeTextNumber(text) == 0.0);
}

/// The box decides; the check box follows.
void showState(const Writing& writing, TextBox& box, bool on) {
    if (writing.row.kdl.onOff == nullptr) {
        return;
    }
    CheckBox& onOff = writing.controls.*writing.row.kdl.onOff;
    onOff.decide(on && onOff.visible);
    if (!on) {
        box.text = kdlOffText;
    }
}

bool writeNumber(const Writing& writing, const NumberParameter& number) {
    const ParameterRow& row = writing.row;
    const std::uint8_t deviceType = writing.program.DeviceType;
    TextBox& box = writing.controls.*number.box;
    const std::string text = box.text;
    if (switchesOff(writing.controls, row, text)) {
        showState(writing, box, false);
        return writing.sendReported("0");
    }
    const std::optional<double> value = sendableNumber(text);
    if (!value || (row.kdl.hasRange && !isInRange(*value, rangeOf(number, deviceType)))) {
        refuse(writing.program, box,
               row.kdl.outOfRange != nullptr ? row.kdl.outOfRange : outOfRangeText(number, deviceType));
        return false;
    }
    showState(writing, box, true);
    return writing.sendReported(text);
}

/// One number says whether the impedance measurement is on and at which mains frequency.
bool writeImpedanceMeasurement(const Writing& writing) {
    C& controls = writing.controls;
    const ParameterRow& frequency = parameterRow(ParameterField::Netzfrequenz);
    if (controls.chkZe.value) {
        const std::uint16_t lowest = std::get<ChoiceParameter>(frequency.kind).options.front().code;
        return writing.sendReported(shownCode(controls, frequency, Bus::Kdl).value_or(lowest));
    }
    const bool sent = writing.sendReported("0");
    controls.chkRWarnung.decide(false);
    controls.chkRAlarm.decide(false);
    return sent;
}

/// The address as the link can take it: up to three digits between blanks; empty for any other text.
std::string_view addressDigits(std::string_view text) {
    const std::string_view digits = trimmed(text);
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
bool writeAddress(const Writing& writing) {
    Program& program = writing.program;
    TextBox& box = writing.controls.txtAdresse;
    const std::string address(addressDigits(box.text.get()));
    if (address.empty() || !isDeviceAddress(ParamValueText(address))) {
        refuse(program, box, addressRefused);
        return false;
    }
    const Answer answer = writing.send(address);
    if (answer == Answer::Refused) {
        return writing.reportFailure();
    }
    const std::string before = program.KdlAddressPrefix.substr(2);
    follow(program, address);
    if (answer == Answer::None && !isThere(program)) {
        follow(program, before);
        program.unansweredRequests = 0;  // at the address that it had not taken
        return writing.reportFailure();
    }
    program.shell.addressPanel = "KDL-Geräteadresse = " + address;
    return true;
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
bool writeBaudRate(const Writing& writing) {
    Program& program = writing.program;
    const std::uint16_t code = shownCode(writing.controls, writing.row, Bus::Kdl).value();
    const std::int32_t baudRate = baudRateOfCode(code);
    if (baudRate == 0 || baudRate == program.BaudRate) {
        return true;
    }
    const Answer answer = writing.send(std::to_string(code));
    const bool asked = answer == Answer::Acknowledged || program.RS485.isConnected();
    if (answer == Answer::Refused || !asked) {
        return writing.reportFailure();
    }
    endAfterSwitchToModbus(program, baudRate);
    return true;
}

bool writeParameter(const Writing& writing) {
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
    const auto* number = std::get_if<NumberParameter>(&writing.row.kind);
    return number != nullptr
               ? writeNumber(writing, *number)
               : writing.sendReported(shownCode(writing.controls, writing.row, Bus::Kdl).value());
}

}  // namespace

PassResult KdlWriteParameters(Program& program, ParameterControls& controls) {
    const bool portOpen = KdlPortOpened(program);
    const PassResult result = writeRows(
        program, controls, rowsInOrder(ParameterOrder::KdlWrite, program.DeviceType),
        [&](const ParameterRow& row) {
            return writeParameter({program, controls, row});
        },
        portOpen);
    KdlClosePort(program);
    return result;
}

}  // namespace vek
