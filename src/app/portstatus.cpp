#include "app/portstatus.h"

#include <array>
#include <string_view>

#include "platform/textcodec.h"
#include "program/version.h"

namespace vek {

namespace {

struct FramePrefix {
    std::string_view frameFormat;
    const char* prefix;
};

constexpr std::array<FramePrefix, 4> framePrefixes = {{
    {kdlFrameFormat, "KDL-Port = COM"},
    {",n,8,1", "ModBus RTU-Port = COM"},
    {",e,8,1", "ModBus RTU-Port = COM"},
    {",o,8,1", "ModBus RTU-Port = COM"},
}};

std::string portPrefix(std::string_view frameFormat) {
    for (const FramePrefix& row : framePrefixes) {
        if (row.frameFormat == frameFormat) {
            return row.prefix;
        }
    }
    return "Port = COM";
}

std::string trimmed(const std::string& text) {
    const std::size_t first = text.find_first_not_of(' ');
    return first == std::string::npos ? "" : text.substr(first, text.find_last_not_of(' ') - first + 1);
}

}  // namespace

std::string portStatusText(const Program& program) {
    return portPrefix(program.FrameFormat) + std::to_string(program.ComPort) + ", " +
           std::to_string(program.BaudRate) + withoutControls(trimmed(program.FrameFormat));
}

std::string searchCaption(const std::string& title, const std::string& deviceName) {
    return title + "V" + versionText() + std::string(12, ' ') + deviceName;
}

}  // namespace vek
