#include <gtest/gtest.h>

#include "monitor/kdlrow.h"

namespace vek {
namespace {

TEST(KdlRows, UnitAndNameComeFromTheFirstMarkInTheReply) {
    using Field = std::optional<std::string_view>;
    constexpr Field kept = std::nullopt;
    // Marks alone, in other letters, beside one of lower rank, and none at all.
    const std::tuple<const char*, Field, Field> cases[] = {
        {"no 0", "", ""},
        {"dig 7", "", "Aktualisierungszähler"},
        {"peak 0", kept, "Netzableitkapazität"},
        {"n=/TE", kept, kept},
        {"uU 1 v", "V", "Unterspannung"},
        {"ce 1 NF", "nF", "Netzableitkapazität"},
        {"% V", "V", kept},
        {"uF nF", "nF", "Spannung"},
        {"no 0 uF", "µF", ""},
        {"Ze Re Uu Uo", kept, "Isolationswiderstand"},
        {"Ce FL", kept, "Fehlerort"},
        {"peak 0 Ce dig", "", "Netzableitkapazität"},
        {"35FDE 129 no 0", "", ""},
        {"31ANZ 101 35FDE 129", "", "Interner Gerätefehler"},
        {"n=/TE 31AER 102", "", "Anschlußfehler Erde"},
        {"", kept, kept},
        {"#TIMEOUT_ERROR#", kept, "Spannung"},
        {"\xE4\xFF\x80 k\xD3", kept, kept}};
    for (const auto& [reply, unit, name] : cases) {
        EXPECT_EQ(kdlRowUnit(reply), unit) << reply;
        EXPECT_EQ(kdlRowName(reply), name) << reply;
    }
}

TEST(KdlRows, ValueAndRangeComeFromDigitsAndTheRest) {
    const NumberLocale german{.decimalPoint = ",", .groupSeparator = "."};
    // Whole texts, digits wherever they stand, ranges, tenths, fault positions on the negative side.
    const std::tuple<const char*, const char*, const char*> cases[] = {
        {"no 0", "-", ""},
        {"35FDE 129 ", "35129", ""},
        {" peak 0", "0", ""},
        {"", "", ""},
        {"1Re 2/3kO 4", "1234", ""},
        {"123456789012345678901234567890", "123456789012345678901234567890", ""},
        {"\xB2\xB3\xBD 5 \xFF", "5", ""},
        {"<1>", "1", ">"},
        {"U/dV 2305", "230,5", ""},
        {"Uu/dV 1234567", "123456,7", ""},
        {"u1/DV >2", "1,2", ">"},
        {"U/dV", "0,0", ""},
        {"FL-35%", "-35", ""},
        {"3FL-5", "-35", ""},
        {"FL-0", "0", ""},
        {"FL -35", "35", ""},
        {"FL-123456789012345678901234567890", "-123456789012345678901234567890", ""}};
    for (const auto& [reply, value, range] : cases) {
        EXPECT_EQ(kdlRowValue(reply, german), (KdlRowValue{value, range, false})) << reply;
    }
    EXPECT_EQ(kdlRowValue("peak 0", german), (KdlRowValue{std::nullopt, ">", true}));
    EXPECT_EQ(kdlRowValue(Bytes("4\0002", 3), german).value, "42");
}

TEST(KdlRows, CountsStandFromTheThirdCharacterOn) {
    const std::pair<const char*, double> cases[] = {{"n= 3", 3},  {"n=12", 12}, {"n=", 0},
                                                    {"", 0},      {"12", 0},    {"123", 3},
                                                    {"n= 2x", 2}, {"xn= 2", 0}, {"n= -1", -1}};
    for (const auto& [reply, count] : cases) {
        EXPECT_EQ(kdlCount(reply), count) << reply;
    }
}

}  // namespace
}  // namespace vek
