#include "platform/posix/comports.h"

#include <grp.h>
#include <sys/stat.h>

#include <array>
#include <cstddef>
#include <filesystem>
#include <system_error>

namespace vek {

namespace fs = std::filesystem;

namespace {

/// Consecutive COM numbers that stand for the devices of one driver, counted from 0.
struct Devices {
    int first, last;
    const char* stem;
};
constexpr Devices fixedDevices[] = {
    {1, 8, "/dev/ttyUSB"},
    {9, 12, "/dev/ttyACM"},
    {13, 16, "/dev/ttyS"},
};

std::string fixedDevice(int number) {
    for (const Devices& devices : fixedDevices) {
        if (number >= devices.first && number <= devices.last) {
            return devices.stem + std::to_string(number - devices.first);
        }
    }
    return "";
}

std::string groupName(gid_t id) {
    std::array<char, 65536> texts;  // a group entry lists its members, who may be many
    group entry{};
    group* found = nullptr;
    ::getgrgid_r(id, &entry, texts.data(), texts.size(), &found);
    return found == nullptr ? "" : found->gr_name;
}

}  // namespace

std::string comDevicePath(const std::string& dataFolder, int number) {
    std::string device = fixedDevice(number);
    if (device.empty() || dataFolder.empty()) {
        return device;
    }
    const fs::path ports = fs::path(dataFolder) / "ports";
    std::error_code notALink;
    const fs::path linked = fs::read_symlink(ports / ("com" + std::to_string(number)), notALink);
    return notALink ? device : (ports / linked).lexically_normal().string();
}

PortInfo comPortInfo(const std::string& dataFolder, int number) {
    PortInfo info{comDevicePath(dataFolder, number), ""};
    struct stat state {};
    if (::stat(info.device.c_str(), &state) == 0) {
        const std::string group = groupName(state.st_gid);
        info.permitted = group.empty() ? "" : "nur für Mitglieder der Gruppe " + group;
    }
    return info;
}

}  // namespace vek
