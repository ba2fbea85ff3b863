#include "monitor/measurementreading.h"

#include "modbus/ModBus.h"

namespace vek {

MeasurementChannel readChannel(Program& program, std::uint16_t startRegister) {
    MeasurementChannel channel;
    if (const auto data = readData(program, startRegister, 2)) {
        channel.Value = BytesToSingle(*data);
    }
    if (const auto word = readRegister(program, static_cast<std::uint16_t>(startRegister + 2))) {
        channel.status = ChannelStatus(*word);
    }
    channel.DescriptionCode = readRegister(program, static_cast<std::uint16_t>(startRegister + 3));
    return channel;
}

}  // namespace vek
