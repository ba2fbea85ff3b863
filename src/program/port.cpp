#include "program/port.h"

#include <algorithm>

#include "platform/serialsettings.h"

namespace vek {

bool selectConfiguredPort(Program& program) {
    const bool numbered = program.ComPort >= 1 && program.ComPort <= 16;
    if (numbered && !program.RS485.setPortNumber(program.ComPort)) {
        return false;
    }
    const bool known = std::find(baudRates.begin(), baudRates.end(), program.BaudRate) != baudRates.end();
    const std::int32_t baudRate = known ? program.BaudRate : defaultBaudRate;
    return program.RS485.setSettings(std::to_string(baudRate) + program.FrameFormat);
}

void showPortMissing(Program& program) {
    program.desktop.messageBox(
        {"Schnittstelle nicht vorhanden", "Fehler", MessageIcon::None, MessageButtons::OkCancel});
}

}  // namespace vek
