#include "parameters/bussettings.h"

#include <array>
#include <string>

#include "parameters/parametertable.h"

namespace vek {

bool isDeviceAddress(double value) {
    const auto& address = std::get<NumberParameter>(parameterRow(ParameterField::Adresse).kind);
    const NumberRange& range = address.ranges.front();
    return value == 0 || (value >= range.lowest && value <= range.highest);
}

std::int32_t baudRateOfCode(std::uint16_t code) {
    constexpr std::array<std::int32_t, 9> rates = {0, 1200, 2400, 4800, 9600, 19200, 38400, 57600, 115200};
    return rates.at(code);
}

void showModbusPort(Program& program) {
    program.shell.portPanel = "ModBus-Port = COM" + std::to_string(program.ComPort) + ", " +
                              std::to_string(program.BaudRate) + program.FrameFormat;
}

}  // namespace vek
