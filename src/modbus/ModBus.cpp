#include "modbus/ModBus.h"

#include <algorithm>
#include <array>
#include <utility>

namespace vek {

namespace {

constexpr const char* errorTitle = "MODBUS-Fehler";
constexpr std::uint16_t deviceTextRegisters = 10;
constexpr std::size_t dataOffset = 3;
constexpr std::size_t frameOverhead = 5;

/// Exception codes of the Modbus protocol with their messages; "" = silent.
struct ExceptionMessage {
    std::string_view token;
    const char* onRead;
    const char* onWrite;
};

constexpr std::array<ExceptionMessage, 6> exceptionMessages = {{
    {"EXCEP_1", "Unzulässige Funktion", "Unzulässige Funktion"},
    {"EXCEP_2", "", "Unzulässige Datenzugriff"},
    {"EXCEP_3", "Unzulässige Datenwert", "Unzulässige Datenwert"},
    {"EXCEP_4", "Interner Fehler", "Interner Fehler"},
    {"EXCEP_5", "Annahmebestätigung (Antwort kommt zeitverzögert",
     "Annahmebestätigung (Antwort kommt zeitverzögert"},
    {"EXCEP_6", "Anfrage nicht angenommen", "Anfrage nicht angenommen"},
}};

/// Message for an exception token; a code that the protocol leaves to the device is named by its number.
std::string exceptionText(std::string_view token, const char* ExceptionMessage::*column) {
    const auto* found = std::find_if(exceptionMessages.begin(), exceptionMessages.end(),
                                     [&](const ExceptionMessage& row) { return row.token == token; });
    if (found != exceptionMessages.end()) {
        return (*found).*column;
    }
    token.remove_prefix(std::string_view(exceptionPrefix).size());
    return "Unbekannter Fehler (Ausnahme-Code " + std::string(token) + ")";
}

void reportException(Program& program, std::string_view token, const char* ExceptionMessage::*column) {
    const std::string text = exceptionText(token, column);
    if (!text.empty()) {
        showError(program, text, errorTitle);
    }
}

/// Returns when the user goes on; otherwise ends the program.
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

bool isExceptionToken(std::string_view result) {
    return result.starts_with(exceptionPrefix);
}

/// The reply's data, never more of it than has arrived.
Bytes replyData(const Bytes& reply) {
    const std::size_t arrived = reply.size() - frameOverhead;
    const std::size_t byteCount = static_cast<unsigned char>(reply[2]);
    return reply.substr(dataOffset, std::min(byteCount, arrived));
}

std::uint16_t wordFromBytes(std::string_view bytes) {
    const unsigned high = static_cast<unsigned char>(bytes[0]);
    const unsigned low = static_cast<unsigned char>(bytes[1]);
    return static_cast<std::uint16_t>(high * 256 + low);
}

/// One read with its messages: the data, or the token as result of the other kind.
struct ReadResult {
    std::optional<Bytes> data;
    Bytes token;
};

ReadResult readReported(Program& program, std::uint16_t startRegister, std::uint16_t count) {
    Bytes reply = SendReadRequest(program, program.DeviceAddress, startRegister, count);
    if (isExceptionToken(reply)) {
        reportException(program, reply, &ExceptionMessage::onRead);
        return {std::nullopt, std::move(reply)};
    }
    if (reply != crcTimeout) {
        Bytes data = replyData(reply);
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
    return result.data->size() >= 3 ? *result.data : std::to_string(wordFromBytes(*result.data));
}

bool MbWriteRegisters(Program& program, std::uint16_t startRegister, std::uint8_t count,
                      std::uint8_t byteCount, std::string_view data) {
    const Bytes reply =
        SendWriteRequest(program, program.DeviceAddress, startRegister, count, byteCount, data);
    if (startRegister == 3016 || startRegister == 3017) {
        return true;
    }
    if (isExceptionToken(reply)) {
        reportException(program, reply, &ExceptionMessage::onWrite);
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

bool isToken(std::string_view result) {
    return result == crcTimeout || isExceptionToken(result);
}

std::optional<Bytes> readData(Program& program, std::uint16_t startRegister, std::uint16_t count) {
    const ReadResult result = readReported(program, startRegister, count);
    const bool complete = result.data && result.data->size() == 2 * std::size_t{count};
    return complete ? result.data : std::nullopt;
}

std::optional<std::uint16_t> readRegister(Program& program, std::uint16_t number) {
    const std::optional<Bytes> data = readData(program, number, 1);
    return data ? std::optional(wordFromBytes(*data)) : std::nullopt;
}

void UnloadAllWindows(Program& program) {
    program.windows.closeAll();
}

}  // namespace vek
