#include <gtest/gtest.h>

#include <vector>

#include "devicemodel/descriptiontexts.h"
#include "devicemodel/devicetypes.h"
#include "devicemodel/slotnames.h"

namespace vek {
namespace {

using Types = std::vector<std::uint8_t>;

TEST(Names, ArticleAndDisplayNamesOfAModelGiveOneType) {
    const std::pair<int, std::vector<std::string_view>> cases[] = {
        {1, {"vekQB731-K7W-2", "vekQB 731"}},
        {2, {"vekQC731-K7W-2", "vekQC 731"}},
        {3, {"vekQA731-K75-2", "vekQA731-K7-2", "vekQA 731"}},
        {4, {"vekQD731-K7-5", "vekQD731-K7-2", "vekQD 731"}},
        {5, {"vekQC731QF-K7W-2", "vekQC 731QF"}},
        {6, {"vekQE731-K7-2", "vekQE 731"}},
        {7, {"vekQF731-K7-2", "vekQF 731"}},
        {8, {"vekQG731-K7-2", "vekQG 731"}},
        {9, {"vekQH731-K7-2", "vekQH 731", "vekQJK731-K7-2", "vekQJ 731"}},
        {10, {"vekQLN729-K7-2", "vekQL 729"}},
        // unknown ones
        {1, {"", "vekQLN729-K7-2 ", " vekQL 729", "vekqh 731", "VEKQH731-K7-2", "CRC_TIMEOUT"}},
    };
    for (const auto& [type, names] : cases) {
        for (const std::string_view name : names) {
            EXPECT_EQ(deviceTypeFromName(name), type) << name;
        }
    }
}

TEST(Names, DescriptionsGapsAndTheEnds) {
    const std::pair<std::uint16_t, const char*> cases[] = {
        {0, " "},   {2, "Überlast"}, {7, " "},   {16, "-"},   {82, "Kapazität Ce"}, {115, "Gerätefehler"},
        {130, "-"}, {218, "Ein"},    {219, "-"}, {65535, "-"}};
    for (const auto& [code, text] : cases) {
        EXPECT_EQ(descriptionText(code), text) << code;
    }
}

TEST(Names, SlotsByDeviceType) {
    const std::tuple<std::size_t, Types, const char*> modbus[] = {
        {1, {1, 2, 6}, "Ze Voralarm/Alarm"},
        {1, {3, 4, 5, 7, 9, 10}, ""},
        {1, {8}, "Netzspannung RMS"},
        {4, {1, 2, 3, 4, 5, 6, 7, 10}, "Udc L1 -> PE"},
        {5, {8, 9}, "Udc L- -> PE"},
        {7, {8, 9}, ""},
        {15, {9, 10}, ""},
        // no device yet, and a number that no model has
        {1, {0, 11, 255}, "Ze Voralarm/Alarm"},
    };
    for (const auto& [slot, types, name] : modbus) {
        for (const std::uint8_t type : types) {
            EXPECT_EQ(modbusSlotName(slot, type), name) << "slot " << slot << " type " << int{type};
        }
    }
    const std::optional<std::string_view> kept;
    const std::tuple<std::size_t, Types, std::optional<std::string_view>> kdl[] = {
        {2, {1, 2}, "Ze Alarm"},        {2, {3, 4, 5, 6, 7, 9}, "> Ce"},
        {3, {8}, "Udc  Unterspannung"}, {9, {1, 2, 10}, "> Ce"},
        {10, {8, 9}, "Udc L- -> PE"},   {14, {1, 2}, "R-UGe"},
        {14, {3, 7, 8, 9}, kept},       {14, {10}, "-"},
        {15, {1, 3, 8, 9}, "-"},        {15, {10}, kept},
    };
    for (const auto& [slot, types, name] : kdl) {
        for (const std::uint8_t type : types) {
            EXPECT_EQ(kdlSlotName(slot, type), name) << "slot " << slot << " type " << int{type};
        }
    }
}

}  // namespace
}  // namespace vek
