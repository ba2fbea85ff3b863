#include <gtest/gtest.h>

#include "devicemodel/descriptiontexts.h"
#include "devicemodel/measurementchannel.h"

namespace vek {
namespace {

TEST(MeasurementChannel, FourRegistersFromAThousandOn) {
    EXPECT_EQ(channelStartRegister(0), 1000);
    EXPECT_EQ(channelStartRegister(8), 1032);

    const MeasurementChannel last{.startRegister = 32767};
    EXPECT_EQ(last.statusRegister(), 32769);
    EXPECT_EQ(last.descriptionRegister(), 32770);
}

TEST(MeasurementChannel, StatusWordsInWords) {
    struct Case {
        unsigned word;
        std::string_view test, alarm, range, toolUnit, monitorUnit;
    };
    for (const Case& c : {
             Case{0x0000, "-", "-", "gültig", " ", " "},
             Case{0xC5C2, "x", "Alarm", "ungültig", "Ohm", "kOhm"},
             Case{0x4148, "Test intern", "Vorwarnung", "kleiner", "µF", "µF"},
             Case{0x828A, "Test extern", "Gerätefehler", "größer", "°C", "°C"},
             Case{0x0410, "-", "Warnung", "gültig", "mm", "mm"},
             Case{0x0311, "-", "x", "gültig", " ", " "},
             Case{0x061F, "-", "x", "gültig", " ", " "},
             Case{0x070F, "-", "x", "gültig", "dd", "dd"},
             // bits that belong to no field
             Case{0x3820, "-", "-", "gültig", " ", " "},
         }) {
        const MeasurementChannel channel{.statusWord = static_cast<std::uint16_t>(c.word)};
        EXPECT_EQ(toolText(channel.testState()), c.test) << std::hex << c.word;
        EXPECT_EQ(toolText(channel.alarmState()), c.alarm) << std::hex << c.word;
        EXPECT_EQ(toolText(channel.rangeState()), c.range) << std::hex << c.word;
        EXPECT_EQ(toolText(channel.unitCode()), c.toolUnit) << std::hex << c.word;
        EXPECT_EQ(monitorText(channel.unitCode()), c.monitorUnit) << std::hex << c.word;
    }
}

TEST(MeasurementChannel, FieldsAreNumbersMaskedInPlace) {
    const MeasurementChannel channel{.statusWord = 0x4141};
    EXPECT_EQ(static_cast<int>(channel.testState()), 16384);
    EXPECT_EQ(static_cast<int>(channel.alarmState()), 256);
    EXPECT_EQ(static_cast<int>(channel.rangeState()), 64);
    EXPECT_EQ(static_cast<int>(channel.unitCode()), 1);
}

TEST(DescriptionTexts, KnownCodesGapsAndTheEnds) {
    struct Case {
        unsigned code;
        std::string_view text;
    };
    for (const Case& c : {
             Case{0, " "},
             Case{2, "Überlast"},
             Case{7, " "},
             Case{16, "-"},
             Case{82, "Kapazität Ce"},
             Case{84, "Überlast"},
             Case{115, "Gerätefehler"},
             Case{129, "Gerätefehler"},
             Case{130, "-"},
             Case{218, "Ein"},
             Case{219, "-"},
             Case{65535, "-"},
         }) {
        EXPECT_EQ(descriptionText(static_cast<std::uint16_t>(c.code)), c.text) << c.code;
    }
}

}  // namespace
}  // namespace vek
