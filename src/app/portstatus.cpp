#include "app/portstatus.h"

#include <algorithm>
#include <string_view>

#include "platform/textcodec.h"
#include "platform/trimmed.h"
#include "program/version.h"

namespace vek {

namespace {

std::string portPrefix(std::string_view frameFormat) {
    if (frameFormat == kdlFrameFormat) {
        return "KDL-Port = COM";
    }
    const auto& modbus = modbusFrameFormats;
    const bool isModbus = std::find(modbus.begin(), modbus.end(), frameFormat) != modbus.end();
    return isModbus ? "ModBus RTU-Port = COM" : "Port = COM";
}

}  // namespace

std::string portStatusText(const Program& program) {
    return portPrefix(program.FrameFormat) + std::to_string(program.ComPort) + ", " +
           std::to_string(program.BaudRate) + withoutControls(trimmed(program.FrameFormat));
}

std::string searchCaption(const std::string& title, const std::string& deviceName) {
    return title + "V" + versionText + std::string(12, ' ') + deviceName;
}

}  // namespace vek
