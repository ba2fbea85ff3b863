#include "program/port.h"

#include <algorithm>
#include <array>

namespace vek {

namespace {

constexpr std::array<std::int32_t, 8> baudRates = {1200, 2400, 4800, 9600, 19200, 38400, 57600, 115200};
constexpr std::int32_t defaultBaudRate = 9600;

}  // namespace

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
