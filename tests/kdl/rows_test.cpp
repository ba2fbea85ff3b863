#include <gtest/gtest.h>

#include "kdl/kdlrow.h"

namespace vek {
namespace {

using Field = std::optional<std::string_view>;
constexpr Field kept = std::nullopt;

struct FieldsCase {
    const char* reply;
    Field unit;
    Field name;
};

TEST(KdlRows, UnitAndNameComeFromTheFirstMarkInTheReply) {
    const FieldsCase cases[] = {
        {"1 kO", "kOhm", kept},
        {"1 V", "V", kept},
        {"1 %", "%", kept},
        {"1 nF", "nF", kept},
        {"1 uF", "µF", "Spannung"},
        {"no 0", "", ""},
        {"dig 7", "", "Aktualisierungszähler"},
        {"35FDE 129", "", "Interner Gerätefehler"},
        {"31ANZ 101", "", "Anschlußfehler Netz"},
        {"31AER 102", "", "Anschlußfehler Erde"},
        {"Re 1", kept, "Isolationswiderstand"},
        {"Uu 1", kept, "Unterspannung"},
        {"Uo 1", kept, "Überspannung"},
        {"Ze 1", kept, "Impedanz"},
        {"FL 1", kept, "Fehlerort"},
        {"Ce 1", kept, "Netzableitkapazität"},
        {"peak 0", kept, "Netzableitkapazität"},
        {"n=/TE", kept, kept},
        {"n=/TI", kept, kept},
        {"U 1", kept, "Spannung"},
        {"RE 1 KO", "kOhm", "Isolationswiderstand"},
        {"uU 1 v", "V", "Unterspannung"},
        {"ce 1 NF", "nF", "Netzableitkapazität"},
        {"12 UF", "µF", "Spannung"},
        {"fl 35%", "%", "Fehlerort"},
        {"DIG NO 0", "", "Aktualisierungszähler"},
        {"V kO", "kOhm", kept},
        {"% V", "V", kept},
        {"nF %", "%", kept},
        {"uF nF", "nF", "Spannung"},
        {"no 0 uF", "µF", ""},
        {"no 0 V", "V", ""},
        {"Ze Re Uu Uo", kept, "Isolationswiderstand"},
        {"Ze Uo Uu", kept, "Unterspannung"},
        {"Ze Uo", kept, "Überspannung"},
        {"FL Ze", kept, "Impedanz"},
        {"Ce FL", kept, "Fehlerort"},
        {"peak 0 Ce dig", "", "Netzableitkapazität"},
        {"dig peak 0", "", "Netzableitkapazität"},
        {"no 0 dig", "", "Aktualisierungszähler"},
        {"35FDE 129 no 0", "", ""},
        {"31ANZ 101 35FDE 129", "", "Interner Gerätefehler"},
        {"31AER 102 31ANZ 101", "", "Anschlußfehler Netz"},
        {"n=/TE 31AER 102", "", "Anschlußfehler Erde"},
        {"n=/TI U", kept, kept},
        {"U1/dV 2305", "V", "Spannung"},
        {"", kept, kept},
        {"42", kept, kept},
        {"stop 1", kept, kept},
        {"35FDE129", kept, kept},
        {"31AER 103", kept, kept},
        {"#TIMEOUT_ERROR#", kept, "Spannung"},
        {"\xE4\xFF\x80 k\xD3", kept, kept},
    };
    for (const FieldsCase& c : cases) {
        EXPECT_EQ(kdlRowUnit(c.reply), c.unit) << c.reply;
        EXPECT_EQ(kdlRowName(c.reply), c.name) << c.reply;
    }
}

TEST(KdlRows, ValueAndRangeComeFromDigitsAndTheRest) {
    const NumberLocale german{.decimalPoint = ",", .groupSeparator = "."};
    const std::pair<const char*, KdlRowValue> cases[] = {
        {"35FDE 129", {"-", "", false}},
        {"no 0", {"-", "", false}},
        {"peak 0", {std::nullopt, ">", true}},
        // only these very texts
        {"35FDE 129 ", {"35129", "", false}},
        {"NO 0", {"0", "", false}},
        {" peak 0", {"0", "", false}},
        {"31ANZ 101", {"31101", "", false}},
        // digits, wherever they stand
        {"", {"", "", false}},
        {"Re/kO", {"", "", false}},
        {"1Re 2/3kO 4", {"1234", "", false}},
        {"007", {"007", "", false}},
        {"-5.25", {"525", "", false}},
        {"123456789012345678901234567890", {"123456789012345678901234567890", "", false}},
        {"#TIMEOUT_ERROR#", {"", "", false}},
        {"n= 0", {"0", "", false}},
        {"\xB2\xB3\xBD 5 \xFF", {"5", "", false}},
        // range
        {"Re >2000 kO", {"2000", ">", false}},
        {"Re <1 kO", {"1", "<", false}},
        {"<1>", {"1", ">", false}},
        // tenths
        {"U/dV 2305", {"230,5", "", false}},
        {"Uo/dV 5", {"0,5", "", false}},
        {"Uu/dV 1234567", {"123456,7", "", false}},
        {"u1/DV >2", {"1,2", ">", false}},
        {"U/dV", {"0,0", "", false}},
        {"Ue/dV 2305", {"2305", "", false}},
        {"U dV 2305", {"2305", "", false}},
        // fault position on the negative side
        {"FL-35%", {"-35", "", false}},
        {"FL-035", {"-35", "", false}},
        {"FL-100", {"-100", "", false}},
        {"3FL-5", {"-35", "", false}},
        {"FL-0", {"0", "", false}},
        {"FL-", {"0", "", false}},
        {"FL 35", {"35", "", false}},
        {"FL -35", {"35", "", false}},
        {"FL-123456789012345678901234567890", {"-123456789012345678901234567890", "", false}},
    };
    for (const auto& [reply, value] : cases) {
        const KdlRowValue actual = kdlRowValue(reply, german);
        EXPECT_EQ(actual, value) << reply << " gives " << actual.value.value_or("nothing") << actual.range;
    }
    EXPECT_EQ(kdlRowValue("U/dV 2305", {}).value, "230.5");
    EXPECT_EQ(kdlRowValue(Bytes("4\0002", 3), {}).value, "42");
}

TEST(KdlRows, CountsStandFromTheThirdCharacterOn) {
    const std::pair<const char*, double> cases[] = {
        {"n= 3", 3}, {"n=12", 12}, {"n=", 0},    {"n", 0},     {"", 0},       {"12", 0},
        {"123", 3},  {"n=x", 0},   {"n= 2x", 2}, {"xn= 2", 0}, {"n= -1", -1}, {"#TIMEOUT_ERROR#", 0},
    };
    for (const auto& [reply, count] : cases) {
        EXPECT_EQ(kdlCount(reply), count) << reply;
    }
}

}  // namespace
}  // namespace vek
