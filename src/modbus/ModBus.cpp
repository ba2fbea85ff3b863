#include "modbus/ModBus.h"

#include <array>

namespace vek {

namespace {

constexpr const char* errorTitle = "MODBUS-Fehler";
constexpr std::uint16_t deviceTextRegisters = 10;

/// Not every device has every register.
constexpr ExceptionTexts silentAboutMissing = {.access = ""};

/// Message for an exception code as it stands in the token.
std::string exceptionText(const std::string& code, const ExceptionTexts& texts) {
    const std::array<const char*, 6> known = {"Unzulässige Funktion",
                                              texts.access,
                                              texts.value,
                                              "Interner Fehler",
                                              "Annahmebestätigung (Antwort kommt zeitverzögert",
                                              "Anfrage nicht angenommen"};
    const std::size_t index = std::stoul(code) - 1;
    return index < known.size() ? known.at(index) : "Unbekannter Fehler (Ausnahme-Code " + code + ")";
}

/// Asks after a request without a valid reply whether to go on; returns when the user wants to.
void askAfterTimeOut(Program& program) {
    const MessageAnswer answer = program.ask(
        {"CRC-Fehler:\n\nOk                ->  Programm fortsetzen\nAbbrechen  ->  Programm beenden",
         errorTitle, MessageIcon::None, MessageButtons::OkCancel, MessageAnswer::Ok});
    if (answer == MessageAnswer::Cancel) {
        showNote(program, "MODBUS RTU Monitor wird beendet!");
        ClosePort(program);
        UnloadAllWindows(program);
    }
}

/// One read with its messages.
struct ReadResult {
    bool good;
    Bytes bytes;  // the data, else the token
};

ReadResult readReported(Program& program, std::uint16_t startRegister, std::uint16_t count) {
    Bytes reply = SendReadRequest(program, program.DeviceAddress, startRegister, count);
    // A frame without even one register in it is no valid reply either.
    if (CheckCrc(reply) && readReplyData(reply).size() < 2) {
        reply = crcTimeout;
    }
    const bool good = isGoodReply(program, reply, silentAboutMissing);
    return {good, good ? readReplyData(reply) : reply};
}

}  // namespace

bool isGoodReply(Program& program, const Bytes& result, const ExceptionTexts& texts) {
    if (result == crcTimeout) {
        askAfterTimeOut(program);
        return false;
    }
    if (!result.starts_with(exceptionPrefix)) {
        return true;
    }
    const std::string text = exceptionText(result.substr(std::string_view(exceptionPrefix).size()), texts);
    if (!text.empty()) {
        showError(program, text, errorTitle);
    }
    return false;
}

Bytes MbReadRegisters(Program& program, std::uint16_t startRegister, std::uint16_t count) {
    const auto [good, bytes] = readReported(program, startRegister, count);
    return !good || bytes.size() >= 3 ? bytes : std::to_string(BytesToWord(bytes));
}

bool MbWriteRegisters(Program& program, std::uint16_t startRegister, std::uint8_t count,
                      std::uint8_t byteCount, std::string_view data) {
    const Bytes reply =
        SendWriteRequest(program, program.DeviceAddress, startRegister, count, byteCount, data);
    return startRegister == 3016 || startRegister == 3017 || isGoodReply(program, reply);
}

Bytes ReadDeviceText(Program& program, std::uint16_t startRegister) {
    OpenPort(program);
    const Bytes result = MbReadRegisters(program, startRegister, deviceTextRegisters);
    ClosePort(program);
    return result == crcTimeout ? result : result.substr(0, result.find('\0'));
}

std::optional<Bytes> readData(Program& program, std::uint16_t startRegister, std::uint16_t count) {
    const auto [good, bytes] = readReported(program, startRegister, count);
    return good && bytes.size() == 2 * std::size_t{count} ? std::optional(bytes) : std::nullopt;
}

std::optional<std::uint16_t> readRegister(Program& program, std::uint16_t number) {
    const std::optional<Bytes> data = readData(program, number, 1);
    return data ? std::optional(BytesToWord(*data)) : std::nullopt;
}

void UnloadAllWindows(Program& program) {
    program.windows.closeAll();
}

}  // namespace vek
