#include "modbus/ModBus.h"

#include <utility>

namespace vek {

namespace {

constexpr const char* errorTitle = "MODBUS-Fehler";
constexpr std::uint16_t deviceTextRegisters = 10;

constexpr ExceptionTexts readExceptions = {"Unzulässige Funktion",
                                           "",  // not every device has every register
                                           "Unzulässige Datenwert",
                                           "Interner Fehler",
                                           "Annahmebestätigung (Antwort kommt zeitverzögert",
                                           "Anfrage nicht angenommen"};
constexpr ExceptionTexts writeExceptions = {"Unzulässige Funktion",
                                            "Unzulässige Datenzugriff",
                                            "Unzulässige Datenwert",
                                            "Interner Fehler",
                                            "Annahmebestätigung (Antwort kommt zeitverzögert",
                                            "Anfrage nicht angenommen"};

/// Message for an exception code as it stands in the token.
std::string exceptionText(std::string_view code, const ExceptionTexts& texts) {
    for (std::size_t index = 0; index < texts.size(); ++index) {
        if (code == std::to_string(index + 1)) {
            return texts.at(index);
        }
    }
    return "Unbekannter Fehler (Ausnahme-Code " + std::string(code) + ")";
}

/// One read with its messages: the data, or the token as result of the other kind.
struct ReadResult {
    std::optional<Bytes> data;
    Bytes token;
};

ReadResult readReported(Program& program, std::uint16_t startRegister, std::uint16_t count) {
    Bytes reply = SendReadRequest(program, program.DeviceAddress, startRegister, count);
    if (isExceptionToken(reply)) {
        showException(program, reply, readExceptions);
        return {std::nullopt, std::move(reply)};
    }
    if (reply != crcTimeout) {
        Bytes data = readReplyData(reply);
        if (data.size() >= 2) {
            return {std::move(data), {}};
        }
    }
    // A reply without even one register in it is no valid reply either.
    askAfterTimeOut(program);
    return {std::nullopt, crcTimeout};
}

}  // namespace

Bytes MbReadRegisters(Program& program, std::uint16_t startRegister, std::uint16_t count) {
    const ReadResult result = readReported(program, startRegister, count);
    if (!result.data) {
        return result.token;
    }
    return result.data->size() >= 3 ? *result.data : std::to_string(BytesToWord(*result.data));
}

bool MbWriteRegisters(Program& program, std::uint16_t startRegister, std::uint8_t count,
                      std::uint8_t byteCount, std::string_view data) {
    const Bytes reply =
        SendWriteRequest(program, program.DeviceAddress, startRegister, count, byteCount, data);
    if (startRegister == 3016 || startRegister == 3017) {
        return true;
    }
    if (isExceptionToken(reply)) {
        showException(program, reply, writeExceptions);
        return false;
    }
    if (reply == crcTimeout) {
        askAfterTimeOut(program);
        return false;
    }
    return true;
}

Bytes ReadDeviceText(Program& program, std::uint16_t startRegister) {
    OpenPort(program);
    const Bytes result = MbReadRegisters(program, startRegister, deviceTextRegisters);
    ClosePort(program);
    return result == crcTimeout ? result : result.substr(0, result.find('\0'));
}

std::optional<Bytes> readData(Program& program, std::uint16_t startRegister, std::uint16_t count) {
    const ReadResult result = readReported(program, startRegister, count);
    const bool complete = result.data && result.data->size() == 2 * std::size_t{count};
    return complete ? result.data : std::nullopt;
}

std::optional<std::uint16_t> readRegister(Program& program, std::uint16_t number) {
    const std::optional<Bytes> data = readData(program, number, 1);
    return data ? std::optional(BytesToWord(*data)) : std::nullopt;
}

bool isExceptionToken(std::string_view result) {
    return result.starts_with(exceptionPrefix);
}

void showException(Program& program, std::string_view token, const ExceptionTexts& texts) {
    token.remove_prefix(std::string_view(exceptionPrefix).size());
    const std::string text = exceptionText(token, texts);
    if (!text.empty()) {
        showError(program, text, errorTitle);
    }
}

void askAfterTimeOut(Program& program) {
    const MessageAnswer answer = program.desktop.messageBox(
        {"CRC-Fehler:\n\nOk                ->  Programm fortsetzen\nAbbrechen  ->  Programm beenden",
         errorTitle, MessageIcon::None, MessageButtons::OkCancel});
    if (answer == MessageAnswer::Cancel) {
        showNote(program, "MODBUS RTU Monitor wird beendet!");
        ClosePort(program);
        UnloadAllWindows(program);
    }
}

void UnloadAllWindows(Program& program) {
    program.windows.closeAll();
}

}  // namespace vek
