#include "devicemodel/devicetypes.h"

#include <algorithm>
#include <array>

namespace vek {
namespace {

struct DeviceType {
    std::array<std::string_view, 4> names;  ///< article names, then display names; blank ones are none
    DeviceTypeFacts facts;
};

constexpr std::uint8_t typeOfUnknownNames = 1;

/// Row n is type n.
constexpr std::array<DeviceType, highestDeviceType + 1> types = {{
    {},
    // clang-format off
    /*  1 */ {{"vekQB731-K7W-2", "vekQB 731"}, {4000, ModbusSlots::impedance, KdlSlots::impedance, SlotFormats::wholeVolts}},
    /*  2 */ {{"vekQC731-K7W-2", "vekQC 731"}, {4000, ModbusSlots::impedance, KdlSlots::impedance, SlotFormats::wholeVolts}},
    /*  3 */ {{"vekQA731-K75-2", "vekQA731-K7-2", "vekQA 731"}, {1000, ModbusSlots::plain, KdlSlots::plain, SlotFormats::wholeVolts}},
    /*  4 */ {{"vekQD731-K7-5", "vekQD731-K7-2", "vekQD 731"}, {1000, ModbusSlots::plain, KdlSlots::plain, SlotFormats::wholeVolts}},
    /*  5 */ {{"vekQC731QF-K7W-2", "vekQC 731QF"}, {5000, ModbusSlots::plain, KdlSlots::plain, SlotFormats::wholeVolts}},
    /*  6 */ {{"vekQE731-K7-2", "vekQE 731"}, {4000, ModbusSlots::impedance, KdlSlots::plain, SlotFormats::wholeVolts}},
    /*  7 */ {{"vekQF731-K7-2", "vekQF 731"}, {4000, ModbusSlots::plain, KdlSlots::plain, SlotFormats::wholeVolts}},
    /*  8 */ {{"vekQG731-K7-2", "vekQG 731"}, {1000, ModbusSlots::mains, KdlSlots::mains, SlotFormats::mainsTenths}},
    /*  9 */ {{"vekQH731-K7-2", "vekQJK731-K7-2", "vekQH 731", "vekQJ 731"}, {0, ModbusSlots::battery, KdlSlots::battery, SlotFormats::stringTenths}},
    /* 10 */ {{"vekQLN729-K7-2", "vekQL 729"}, {2000, ModbusSlots::plain, KdlSlots::voltages, SlotFormats::wholeVolts}},
    // clang-format on
}};

static_assert(std::ranges::all_of(types.begin() + 1, types.end(),
                                  [](const DeviceType& type) { return !type.names.front().empty(); }),
              "a type lacks its row");

}  // namespace

const DeviceTypeFacts& deviceTypeFacts(std::uint8_t deviceType) {
    return types.at(deviceType <= highestDeviceType ? deviceType : 0).facts;
}

std::uint8_t deviceTypeFromName(std::string_view name) {
    const auto* found = std::ranges::find_if(types, [&](const DeviceType& type) {
        return !name.empty() && std::ranges::find(type.names, name) != type.names.end();
    });
    return found == types.end() ? typeOfUnknownNames : static_cast<std::uint8_t>(found - types.begin());
}

}  // namespace vek
