#include "program/port.h"

#include <algorithm>

#include "platform/serialsettings.h"

namespace vek {

std::string baudText(std::int32_t baudRate) {
    const bool known = std::find(baudRates.begin(), baudRates.end(), baudRate) != baudRates.end();
    return std::to_string(known ? baudRate : defaultBaudRate);
}

bool selectConfiguredPort(Program& program) {
    const bool numbered = program.ComPort >= 1 && program.ComPort <= 16;
    if (numbered && !program.RS485.setPortNumber(program.ComPort)) {
        return false;
    }
    return program.RS485.setSettings(baudText(program.BaudRate) + program.FrameFormat);
}

void showPortMissing(Program& program) {
    program.desktop.messageBox(
        {"Schnittstelle nicht vorhanden", "Fehler", MessageIcon::None, MessageButtons::OkCancel});
}

}  // namespace vek
