#include "simulator/kdlslave.h"

#include <algorithm>
#include <array>
#include <utility>

#include "simulator/kdlmonitor.h"
#include "simulator/numbers.h"

namespace vek::sim {
namespace {

constexpr std::uint8_t unknownCommand = 1;
constexpr std::uint8_t illegalValue = 3;
constexpr Interval rowNumbers{1, 99};
constexpr Interval parameterNumbers{1, highestKdlParameter};
constexpr Interval anyValue{0, 0xFFFF};
constexpr Interval noOrYes{0, 1};
constexpr Interval relayNumbers{0, 1};
constexpr std::array<Parameter, 2> relays{Parameter::Relay1Mode, Parameter::Relay2Mode};

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

std::string faultMemory(Device& device) {
    return device.parameters().isOn(Parameter::FaultMemory, false) ? "on 1" : "off 0";
}

struct CommandRow {
    std::string_view command;
    TypeSet types;
    std::string (*run)(Device&);
};
constexpr std::array<CommandRow, 12> commands{{
    {":IDNM?", allTypes, modelName},
    {":IDNV?", allTypes, variantName},
    {":IDND?", allTypes, registration},
    {":IDNF?", allTypes, softwareVersion},
    {":ALMN?", allTypes, reported<kdlAlarmCount>},
    {":BTRN?", allTypes, reported<kdlValueCount>},
    {":MEM?", allTypes, faultMemory},
    {":KAL", calibratedTypes, calibrate},
    {":TESTI", allTypes, obeyed<&Device::startSelfTest>},
    {":ALMCL", allTypes, obeyed<&Device::clearAlarms>},
    {":DEFLT", allTypes, obeyed<&Device::restoreFactory, FactoryReset::KeepInterface>},
    {":DEFLT 51", allTypes, obeyed<&Device::restoreFactory, FactoryReset::All>},
}};

// What a command with a number has to work with.
struct Order {
    Device& device;
    std::uint16_t& selected;
    std::uint16_t number;
};
// Nothing when the device refuses the number.
using Outcome = std::optional<std::string>;

Outcome obeyedIf(bool accepted) {
    return accepted ? Outcome("") : std::nullopt;
}

template <auto Query>
Outcome listed(const Order& order) {
    return Query(order.device, order.number);
}

Outcome select(const Order& order) {
    order.selected = order.number;
    return obeyedIf(hasKdlParameter(order.device.type(), order.number));
}

// Each value wants a selection of its own: if that was not heard, the value must not reach the parameter
// before it.
Outcome writeSelected(const Order& order) {
    return obeyedIf(
        writeKdlParameter(order.device, std::exchange(order.selected, noParameter), order.number));
}

Outcome setFaultMemory(const Order& order) {
    order.device.parameters().set(Parameter::FaultMemory, order.number);
    return "";
}

Outcome relayMode(const Order& order) {
    return order.device.parameters().isOn(relays.at(order.number), false) ? "nc 1" : "no 0";
}

template <std::uint16_t Mode>
Outcome setRelayMode(const Order& order) {
    order.device.parameters().set(relays.at(order.number), Mode);
    return "";
}

// A command that ends with a whole number.
struct NumberedRow {
    std::string_view command;
    Interval numbers;
    Outcome (*run)(const Order&);
};
constexpr std::array<NumberedRow, 9> numbered{{
    {":ALM? ", rowNumbers, listed<kdlAlarm>},
    {":BTR? ", rowNumbers, listed<kdlValue>},
    {":TRSH? ", parameterNumbers, listed<kdlParameter>},
    {":CAN ", anyValue, select},
    {":TRSH ", anyValue, writeSelected},
    {":MEMRY ", noOrYes, setFaultMemory},
    {":REL? ", relayNumbers, relayMode},
    {":RELNO ", relayNumbers, setRelayMode<0>},
    {":RELNC ", relayNumbers, setRelayMode<1>},
}};

std::string_view withoutBlanks(std::string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
    return text.substr(0, text.find_last_not_of(' ') + 1);
}

}  // namespace

std::string KdlSlave::answer(std::string_view command) {
    const TypeSet type = typeSet(device_.type().number);
    const auto* plain = std::ranges::find(commands, command, &CommandRow::command);
    if (plain != commands.end() && (plain->types & type) != 0) {
        return plain->run(device_);
    }
    const auto* row = std::ranges::find_if(
        numbered, [command](const NumberedRow& each) { return command.starts_with(each.command); });
    if (row == numbered.end()) {
        return refusal(unknownCommand);
    }
    const auto number = parseNumber<std::uint16_t>(withoutBlanks(command.substr(row->command.size())),
                                                   row->numbers.min, row->numbers.max);
    const Outcome outcome = number.has_value() ? row->run({device_, selected_, *number}) : std::nullopt;
    if (!outcome.has_value()) {
        selected_ = noParameter;
        return refusal(illegalValue);
    }
    return *outcome;
}

std::string KdlSlave::refusal(std::uint8_t code) {
    return "error " + std::to_string(code);
}

}  // namespace vek::sim
