// A measurement channel as a monitor shows it. Input: slot, device type, the channel's value.
#include <cmath>

#include "devicemodel/faultposition.h"
#include "devicemodel/monitorrendering.h"
#include "fuzz.h"
#include "modbus/modbusframe.h"

namespace vek {

void fuzz(Input input) {
    const std::size_t slot = input.byte() % 16U;
    const std::uint8_t deviceType = input.byte() % 12;
    const float value = BytesToSingle(input.bytes(4));
    const auto number = channelNumber(slot, deviceType, value);
    require(number.has_value() == (channelValueText(slot, deviceType, value, {",", "."}) != noValueText),
            "a number is shown, or none");
    require(!number || (std::isfinite(*number) && std::isfinite(value)), "only numbers are shown");
    const FaultPosition position = faultPosition(number, 1000, deviceType);
    require(position.slider >= -100 && position.slider <= 100, "a fault lies on the line");
}

}  // namespace vek
