#include "monitor/devicecommands.h"

#include <cstdint>
#include <string_view>
#include <vector>

#include "modbus/ModBus.h"

namespace vek {

namespace {

/// A command is a word of two characters in one register.
struct CommandWord {
    std::uint16_t registerNumber;
    std::string_view word;
};

struct CommandRow {
    DeviceCommand command;
    std::vector<CommandWord> words;  ///< each is written only after the one before was acknowledged
    const char* success;
    const char* failure;
};

const std::vector<CommandRow>& commandTable() {
    static const std::vector<CommandRow> table = {
        {DeviceCommand::Calibrate,
         {{8000, "qo"}, {8001, "vu"}},
         "Das Geräte ist nun im Kalibrier-Modus.",
         "Das Gerät konnte nicht in den Kalibrier-Modus geschaltet werden"},
        {DeviceCommand::SelfTest,
         {{8005, "TE"}},
         "Der Selbsttest wurde gestartet.",
         "Der Selbsttest konnte nicht durchgeführt werden"},
        {DeviceCommand::ClearFaults,
         {{8006, "CL"}},
         "Der Fehlerspeicher(Alarme) wurde zurückgesetzt.",
         "Der Fehlerspeicher(Alarme) konnte nicht zurückgesetzt werden."},
        {DeviceCommand::FactorySettings,
         {{8004, "FS"}},
         "Das Geräte wurde auf die Werkseinstellungen (ohne Schnittstellen Parameter) zurückgesetzt.",
         "Das Zurücksetzen auf die Werkseinstellung konnte nicht durchgeführt werden"},
        {DeviceCommand::FactorySettingsAll,
         {{8003, "fa"}},
         "Das Geräte wurde auf die Werkseinstellungen (alle Parameter) zurückgesetzt.",
         "Das Zurücksetzen auf die Werkseinstellung konnte nicht durchgeführt werden"},
    };
    return table;
}

const CommandRow& rowOf(DeviceCommand command) {
    return commandTable().at(static_cast<std::size_t>(command));
}

bool writeWords(Program& program, const std::vector<CommandWord>& words) {
    for (const CommandWord& word : words) {
        if (!MbWriteRegisters(program, word.registerNumber, 1, 2, word.word)) {
            return false;
        }
    }
    return true;
}

bool confirmed(Program& program) {
    const MessageAnswer answer =
        program.desktop.messageBox({"Das ZEPHYRON an den Kalibrieradapter anschließen und anschließend "
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
    const LineUse line(program);
    if (!line || (command == DeviceCommand::Calibrate && !confirmed(program))) {
        return;
    }
    const CommandRow& row = rowOf(command);
    OpenPort(program);
    const bool acknowledged = writeWords(program, row.words);
    ClosePort(program);
    if (acknowledged) {
        showNote(program, row.success);
    } else {
        showError(program, row.failure);
    }
}

}  // namespace vek
