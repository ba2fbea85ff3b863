#include "program/port.h"

#include <algorithm>

#include "platform/serialsettings.h"

namespace vek {

bool isPortNumber(int number) {
    return number >= 1 && number <= 16;
}

bool selectConfiguredPort(Program& program) {
    if (!isPortNumber(program.ComPort) || !program.RS485.setPortNumber(program.ComPort)) {
        return false;
    }
    const bool known = std::find(baudRates.begin(), baudRates.end(), program.BaudRate) != baudRates.end();
    const std::int32_t baudRate = known ? program.BaudRate : defaultBaudRate;
    return program.RS485.setSettings(std::to_string(baudRate) + program.FrameFormat);
}

bool PortExists(Program& program, int n, PortError& error) {
    SerialControl& port = program.RS485;
    error = port.isOpen() ? PortError::InUse : PortError::NotThere;
    if (port.setPortNumber(n)) {
        error = port.open();
        port.close();
    }
    return error == PortError::None;
}

void showPortMissing(Program& program) {
    program.ask({"Schnittstelle nicht vorhanden", "Fehler", MessageIcon::None, MessageButtons::OkCancel});
}

}  // namespace vek
