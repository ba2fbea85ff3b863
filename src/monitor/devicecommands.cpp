#include "monitor/devicecommands.h"

#include <algorithm>
#include <cstdint>
#include <string_view>
#include <vector>

#include "kdl/KDLBusLink.h"
#include "modbus/ModBus.h"

namespace vek {

namespace {

/// A command is a word of two characters in one register.
struct CommandWord {
    std::uint16_t registerNumber;
    std::string_view word;
};

struct CommandRow {
    std::vector<CommandWord> words;  ///< Modbus; each is written only after the one before was acknowledged
    const char* kdlRequest;
    const char* success;
    const char* kdlSuccess;
    const char* failure;
};

/// In the order of DeviceCommand.
const std::vector<CommandRow>& commandTable() {
    static const std::vector<CommandRow> table = {
        {{{8000, "qo"}, {8001, "vu"}},
         ":KAL",
         "Das Geräte ist nun im Kalibrier-Modus.",
         "Das Geräte ist nun im Kalibrier-Modus.",
         "Das Gerät konnte nicht in den Kalibrier-Modus geschaltet werden"},
        {{{8005, "TE"}},
         ":TESTI",
         "Der Selbsttest wurde gestartet.",
         "Der Selbsttest wurde gestartet.",
         "Der Selbsttest konnte nicht durchgeführt werden"},
        {{{8006, "CL"}},
         ":ALMCL",
         "Der Fehlerspeicher(Alarme) wurde zurückgesetzt.",
         "Der Fehlerspeicher(Alarme) wurde zurückgesetzt",
         "Der Fehlerspeicher(Alarme) konnte nicht zurückgesetzt werden."},
        {{{8004, "FS"}},
         ":DEFLT",
         "Das Geräte wurde auf die Werkseinstellungen (ohne Schnittstellen Parameter) zurückgesetzt.",
         "Das Geräte wurde auf die Werkseinstellungen (ohne Schnittstellen Parameter) zurückgesetzt.",
         "Das Zurücksetzen auf die Werkseinstellung konnte nicht durchgeführt werden"},
        {{{8003, "fa"}},
         ":DEFLT 51",
         "Das Geräte wurde auf die Werkseinstellungen (alle Parameter) zurückgesetzt.",
         "Das Geräte wurde auf die Werkseinstellungen (alle Parameter) zurückgesetzt.",
         "Das Zurücksetzen auf die Werkseinstellung konnte nicht durchgeführt werden"},
    };
    return table;
}

const CommandRow& rowOf(DeviceCommand command) {
    return commandTable().at(static_cast<std::size_t>(command));
}

bool sendModbus(Program& program, const CommandRow& row) {
    OpenPort(program);
    const bool acknowledged = std::all_of(row.words.begin(), row.words.end(), [&](const CommandWord& word) {
        return MbWriteRegisters(program, word.registerNumber, 1, 2, word.word);
    });
    ClosePort(program);
    return acknowledged;
}

/// The device acknowledges with an empty payload.
bool sendKdl(Program& program, const CommandRow& row) {
    KdlOpenPort(program);
    const Bytes reply = KdlTransact(program, row.kdlRequest);
    KdlClosePort(program);
    return reply.empty();
}

bool confirmed(Program& program) {
    const MessageAnswer answer =
        program.ask({"Das ZEPHYRON an den Kalibrieradapter anschließen und anschließend "
                     "einschalten. Soll die Kalibrierung "
                     "gestartet werden?",
                     "Kalibrierung starten", MessageIcon::None, MessageButtons::OkCancel});
    if (answer != MessageAnswer::Ok) {
        showNote(program, "Die Kalibrierung wurde abgebrochen!", "Info");
        return false;
    }
    return true;
}

}  // namespace

void runDeviceCommand(Program& program, DeviceCommand command) {
    if (command == DeviceCommand::Calibrate && !confirmed(program)) {
        return;
    }
    const CommandRow& row = rowOf(command);
    const bool kdl = program.kdlActive();
    if (kdl ? sendKdl(program, row) : sendModbus(program, row)) {
        showNote(program, kdl ? row.kdlSuccess : row.success);
    } else {
        showError(program, row.failure);
    }
}

}  // namespace vek
