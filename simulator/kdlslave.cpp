#include "simulator/kdlslave.h"

#include <algorithm>
#include <array>

#include "simulator/kdlmonitor.h"
#include "simulator/numbers.h"

namespace vek::sim {
namespace {

constexpr std::uint8_t unknownCommand = 1;
constexpr std::uint8_t illegalValue = 3;
constexpr std::size_t highestRow = 99;

// The name is asked for in two parts.
std::string modelName(Device& device) {
    return device.name().substr(0, device.name().find('-'));
}

std::string variantName(Device& device) {
    return device.name().substr(std::min(device.name().find('-'), device.name().size()));
}

std::string registration(Device& device) {
    return std::to_string(device.softwareId().registration) + "D";
}

std::string softwareVersion(Device& device) {
    return registration(device) + " Sw " + std::to_string(device.softwareId().version);
}

template <auto Query>
std::string reported(Device& device) {
    return Query(device);
}

template <auto Action, auto... Arguments>
std::string obeyed(Device& device) {
    (device.*Action)(Arguments...);
    return "";
}

// One order does what takes two steps over registers.
std::string calibrate(Device& device) {
    device.prepareCalibration();
    return device.startCalibration() ? "" : KdlSlave::refusal(illegalValue);
}

struct CommandRow {
    std::string_view command;
    TypeSet types;
    std::string (*run)(Device&);
};
constexpr std::array<CommandRow, 11> commands{{
    {":IDNM?", allTypes, modelName},
    {":IDNV?", allTypes, variantName},
    {":IDND?", allTypes, registration},
    {":IDNF?", allTypes, softwareVersion},
    {":ALMN?", allTypes, reported<kdlAlarmCount>},
    {":BTRN?", allTypes, reported<kdlValueCount>},
    {":KAL", calibratedTypes, calibrate},
    {":TESTI", allTypes, obeyed<&Device::startSelfTest>},
    {":ALMCL", allTypes, obeyed<&Device::clearAlarms>},
    {":DEFLT", allTypes, obeyed<&Device::restoreFactory, FactoryReset::KeepInterface>},
    {":DEFLT 51", allTypes, obeyed<&Device::restoreFactory, FactoryReset::All>},
}};

// A command that asks for one row of a list and ends with the number of the row.
struct ListRow {
    std::string_view command;
    std::string (*run)(const Device&, std::size_t row);
};
constexpr std::array<ListRow, 2> lists{{{":ALM? ", kdlAlarm}, {":BTR? ", kdlValue}}};

}  // namespace

std::string KdlSlave::answer(std::string_view command) {
    const TypeSet type = typeSet(device_.type().number);
    const auto* plain = std::ranges::find(commands, command, &CommandRow::command);
    if (plain != commands.end() && (plain->types & type) != 0) {
        return plain->run(device_);
    }
    const auto* list = std::ranges::find_if(
        lists, [command](const ListRow& row) { return command.starts_with(row.command); });
    if (list == lists.end()) {
        return refusal(unknownCommand);
    }
    const auto row = parseNumber<std::size_t>(command.substr(list->command.size()), 1, highestRow);
    return row.has_value() ? list->run(device_, *row) : refusal(illegalValue);
}

std::string KdlSlave::refusal(std::uint8_t code) {
    return "error " + std::to_string(code);
}

}  // namespace vek::sim
