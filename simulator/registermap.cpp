#include "simulator/registermap.h"

#include <algorithm>
#include <array>
#include <bit>

namespace vek::sim {
namespace {

constexpr int channelBlock = 1000;
constexpr int registersPerChannel = 4;
constexpr int nameBlock = 9800;
constexpr int nameRegisters = 10;
constexpr int softwareBlock = 9820;
constexpr int softwareRegisters = 6;

constexpr std::uint16_t commandWord(char first, char second) {
    return static_cast<std::uint16_t>((static_cast<unsigned char>(first) << 8) |
                                      static_cast<unsigned char>(second));
}

// A register that takes one word only and does something on it. The action returns whether the device obeyed.
struct CommandRow {
    std::uint16_t reg;
    std::uint16_t word;
    TypeSet types;
    bool (*action)(Device&);
};

template <auto Action, auto... Arguments>
bool always(Device& device) {
    (device.*Action)(Arguments...);
    return true;
}

constexpr std::array<CommandRow, 6> commands{{
    {8000, commandWord('q', 'o'), calibratedTypes, always<&Device::prepareCalibration>},
    {8001, commandWord('v', 'u'), calibratedTypes, [](Device& device) { return device.startCalibration(); }},
    {8003, commandWord('f', 'a'), allTypes, always<&Device::restoreFactory, FactoryReset::All>},
    {8004, commandWord('F', 'S'), allTypes, always<&Device::restoreFactory, FactoryReset::KeepInterface>},
    {8005, commandWord('T', 'E'), allTypes, always<&Device::startSelfTest>},
    {8006, commandWord('C', 'L'), allTypes, always<&Device::clearAlarms>},
}};

const CommandRow* findCommand(std::uint16_t reg, const DeviceType& type) {
    const auto* found = std::ranges::find_if(commands, [&](const CommandRow& row) {
        return row.reg == reg && (row.types & typeSet(type.number)) != 0;
    });
    return found == commands.end() ? nullptr : found;
}

std::uint16_t channelWord(const Channel& channel, int part) {
    const auto bits = std::bit_cast<std::uint32_t>(channel.value);
    const std::array<std::uint16_t, registersPerChannel> words{static_cast<std::uint16_t>(bits >> 16U),
                                                               static_cast<std::uint16_t>(bits),
                                                               channel.status, channel.description};
    return words.at(static_cast<std::size_t>(part));
}

std::uint16_t nameWord(const std::string& name, int part) {
    const auto at = [&](int i) {
        const auto index = static_cast<std::size_t>(i);
        return index < name.size() ? name[index] : '\0';
    };
    return commandWord(at(2 * part), at(2 * part + 1));
}

std::uint16_t softwareWord(const SoftwareId& id, int part) {
    const std::array<std::uint16_t, softwareRegisters> words{id.registration, id.version, id.year,
                                                             id.month,        id.day,     id.driverVersion};
    return words.at(static_cast<std::size_t>(part));
}

// Offset of a register within a block of this length, or nothing when it lies outside.
std::optional<int> within(int reg, int block, int length) {
    return reg >= block && reg < block + length ? std::optional(reg - block) : std::nullopt;
}

}  // namespace

std::optional<std::uint16_t> RegisterMap::read(std::uint16_t reg) const {
    constexpr int channelRegisters = registersPerChannel * static_cast<int>(channelCount);
    if (const auto offset = within(reg, channelBlock, channelRegisters)) {
        const auto index = static_cast<std::size_t>(*offset / registersPerChannel);
        return channelWord(device_.channel(index), *offset % registersPerChannel);
    }
    if (const auto offset = within(reg, nameBlock, nameRegisters)) {
        return nameWord(device_.name(), *offset);
    }
    if (const auto offset = within(reg, softwareBlock, softwareRegisters)) {
        return softwareWord(device_.softwareId(), *offset);
    }
    return device_.parameters().read(reg);
}

std::optional<ModbusException> RegisterMap::write(std::uint16_t start, std::span<const std::uint16_t> words) {
    const CommandRow* command = findCommand(start, device_.type());
    if (command == nullptr || words.size() != 1) {
        return writeParameters(start, words);
    }
    if (words.front() != command->word || !command->action(device_)) {
        return ModbusException::IllegalValue;
    }
    return std::nullopt;
}

std::optional<ModbusException> RegisterMap::writeParameters(std::uint16_t start,
                                                            std::span<const std::uint16_t> words) {
    ParameterSet& parameters = device_.parameters();
    const auto reg = [start](std::size_t i) { return static_cast<std::uint16_t>(start + i); };
    for (std::size_t i = 0; i < words.size(); ++i) {
        if (!parameters.read(reg(i)).has_value()) {
            return ModbusException::IllegalAddress;
        }
    }
    for (std::size_t i = 0; i < words.size(); ++i) {
        if (!parameters.accepts(reg(i), words[i])) {
            return ModbusException::IllegalValue;
        }
    }
    for (std::size_t i = 0; i < words.size(); ++i) {
        parameters.store(reg(i), words[i]);
    }
    return std::nullopt;
}

}  // namespace vek::sim
