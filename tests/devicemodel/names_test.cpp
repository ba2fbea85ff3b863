#include <gtest/gtest.h>

#include <vector>

#include "devicemodel/descriptiontexts.h"
#include "devicemodel/devicetypes.h"
#include "devicemodel/measurementchannel.h"
#include "devicemodel/slotnames.h"

namespace vek {
namespace {

using Types = std::vector<std::uint8_t>;

TEST(Names, ArticleAndDisplayNamesOfAModelGiveOneType) {
    const std::pair<const char*, int> cases[] = {{"vekQB731-K7W-2", 1},
                                                 {"vekQB 731", 1},
                                                 {"vekQC731-K7W-2", 2},
                                                 {"vekQC 731", 2},
                                                 {"vekQA731-K75-2", 3},
                                                 {"vekQA731-K7-2", 3},
                                                 {"vekQA 731", 3},
                                                 {"vekQD731-K7-5", 4},
                                                 {"vekQD731-K7-2", 4},
                                                 {"vekQD 731", 4},
                                                 {"vekQC731QF-K7W-2", 5},
                                                 {"vekQC 731QF", 5},
                                                 {"vekQE731-K7-2", 6},
                                                 {"vekQE 731", 6},
                                                 {"vekQF731-K7-2", 7},
                                                 {"vekQF 731", 7},
                                                 {"vekQG731-K7-2", 8},
                                                 {"vekQG 731", 8},
                                                 {"vekQH731-K7-2", 9},
                                                 {"vekQH 731", 9},
                                                 {"vekQJK731-K7-2", 9},
                                                 {"vekQJ 731", 9},
                                                 {"vekQLN729-K7-2", 10},
                                                 {"vekQL 729", 10},
                                                 {"", 1},
                                                 {"vekQLN729-K7-2 ", 1},
                                                 {" vekQL 729", 1},
                                                 {"vekqh 731", 1}};
    for (const auto& [name, type] : cases) {
        EXPECT_EQ(deviceTypeFromName(name), type) << name;
    }
}

TEST(Names, StatusWordsInWords) {
    struct Case {
        std::uint16_t word;
        const char *test, *alarm, *range, *toolUnit, *monitorUnit;
    };
    for (const Case& c : {
             Case{0x0000, "-", "-", "gültig", " ", " "},
             Case{0xC5C2, "x", "Alarm", "ungültig", "Ohm", "kOhm"},
             Case{0x4148, "Test intern", "Vorwarnung", "kleiner", "µF", "µF"},
             Case{0x828A, "Test extern", "Gerätefehler", "größer", "°C", "°C"},
             Case{0x0410, "-", "Warnung", "gültig", "mm", "mm"},
             Case{0x0311, "-", "x", "gültig", " ", " "},
             Case{0x070F, "-", "x", "gültig", "dd", "dd"},
             // bits that belong to no field
             Case{0x3820, "-", "-", "gültig", " ", " "},
         }) {
        const MeasurementChannel channel{.statusWord = c.word};
        EXPECT_EQ(toolText(channel.testState()), c.test) << std::hex << c.word;
        EXPECT_EQ(toolText(channel.alarmState()), c.alarm) << std::hex << c.word;
        EXPECT_EQ(toolText(channel.rangeState()), c.range) << std::hex << c.word;
        EXPECT_EQ(toolText(channel.unitCode()), c.toolUnit) << std::hex << c.word;
        EXPECT_EQ(monitorText(channel.unitCode()), c.monitorUnit) << std::hex << c.word;
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

TEST(Names, ModbusSlotsByDeviceType) {
    const std::tuple<int, Types, const char*> cases[] = {
        {1, {1, 2, 6}, "Ze Voralarm/Alarm"},
        {1, {3, 4, 5, 7, 9, 10}, ""},
        {1, {8}, "Netzspannung RMS"},
        {3, {8}, ""},
        {4, {1, 2, 3, 4, 5, 6, 7, 10}, "Udc L1 -> PE"},
        {5, {8, 9}, "Udc L- -> PE"},
        {7, {1, 2, 3, 4, 5, 6, 7, 10}, "Re Verlagerungsspg."},
        {7, {8, 9}, ""},
        {15, {9, 10}, ""},
        // no device yet, and a number that no model has
        {1, {0, 11, 255}, "Ze Voralarm/Alarm"},
    };
    for (const auto& [slot, types, name] : cases) {
        for (const std::uint8_t type : types) {
            EXPECT_EQ(modbusSlotName(slot, type), name) << "slot " << slot << " type " << int{type};
        }
    }
}

TEST(Names, KdlListEntriesByDeviceType) {
    const std::optional<std::string_view> kept;
    const std::tuple<int, Types, std::optional<std::string_view>> cases[] = {
        {2, {1, 2}, "Ze Alarm"},       {2, {3, 4, 5, 6, 7, 9}, "> Ce"},
        {2, {8}, "Urms Überspannung"}, {3, {8}, "Udc  Unterspannung"},
        {4, {8}, "Udc  Überspannung"}, {5, {1, 3, 8, 9, 10}, "Anschl.fehler Erde E.01"},
        {9, {1, 2, 10}, "> Ce"},       {10, {8, 9}, "Udc L- -> PE"},
        {12, {1, 10}, "Udc L1 -> PE"}, {14, {1, 2}, "R-UGe"},
        {14, {3, 7, 8, 9}, kept},      {14, {10}, "-"},
        {15, {1, 3, 8, 9}, "-"},       {15, {10}, kept},
    };
    for (const auto& [slot, types, name] : cases) {
        for (const std::uint8_t type : types) {
            EXPECT_EQ(kdlSlotName(slot, type), name) << "slot " << slot << " type " << int{type};
        }
    }
}

}  // namespace
}  // namespace vek
