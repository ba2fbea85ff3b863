#include "devicemodel/identification.h"

#include "devicemodel/devicetypes.h"

namespace vek {

std::uint8_t SetDeviceTypeFromName(Program& program, std::string_view name) {
    program.DeviceType = deviceTypeFromName(name);
    return program.DeviceType;
}

}  // namespace vek
