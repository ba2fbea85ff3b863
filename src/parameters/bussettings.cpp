#include "parameters/bussettings.h"

#include <string>

#include "parameters/parametertable.h"
#include "platform/serialsettings.h"

namespace vek {

bool isDeviceAddress(double value) {
    const auto& address = std::get<NumberParameter>(parameterRow(ParameterField::Adresse).kind);
    const NumberRange& range = address.range;
    return value == 0 || (value >= range.lowest && value <= range.highest);
}

std::int32_t baudRateOfCode(std::uint16_t code) {
    return code == 0 ? 0 : baudRates.at(code - std::size_t{1});
}

void showModbusPort(Program& program) {
    program.shell.portPanel = "ModBus-Port = COM" + std::to_string(program.ComPort) + ", " +
                              std::to_string(program.BaudRate) + program.FrameFormat;
}

}  // namespace vek
