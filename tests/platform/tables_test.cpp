#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <sstream>

#include "platform/leadingnumber.h"
#include "platform/numberlocale.h"
#include "platform/profiletext.h"
#include "platform/serialsettings.h"
#include "platform/textcodec.h"
#include "support/table.h"

namespace vek {
namespace {

std::string wholeOf(const Texts& range, const std::string& number) {
    constexpr long outside = 1'000'000;
    const long whole =
        wholeNumber(std::stod(number), std::stol(range.at(1)), std::stol(range.at(2)), outside);
    return whole == outside ? "-" : std::to_string(whole);
}

NumberLocale localeOf(const Texts& marks) {
    return {marks.at(1), marks.size() > 2 ? marks[2] : ""};
}

std::string fixedOf(const Texts& marks, const std::string& input) {
    const auto [number, decimals] = halves(input, " ");
    return localeOf(marks).fixed(std::stod(number), std::stoi(decimals));
}

std::string plainOf(const Texts& marks, const std::string& number) {
    return localeOf(marks).plain(static_cast<float>(std::strtod(number.c_str(), nullptr)));
}

std::string byteTimeOf(const Texts& /*words*/, const std::string& settings) {
    const auto parsed = parseSerialSettings(settings);
    return parsed ? std::to_string(parsed->byteTime().count()) : "-";
}

std::string withSeven(const Texts& /*words*/, const std::string& profile) {
    std::string file = profile;
    setProfileValue(file, "S", "k", "7");
    return file;
}

TEST(Platform, AnswersAsTheTablesSay) {
    const std::map<std::string, std::function<std::string(const Texts& words, const std::string& input)>>
        rules = {
            {"whole", wholeOf},
            {"fixed", fixedOf},
            {"plain", plainOf},
            {"frame", byteTimeOf},
            {"codec", [](const Texts&, const std::string& text) { return windows1252FromUtf8(text); }},
            {"shown", [](const Texts&, const std::string& text) { return withoutControls(text); }},
            {"value",
             [](const Texts& words, const std::string& file) {
                 return std::string(profileValue(file, unescaped(words.at(1)), unescaped(words.at(2))));
             }},
            {"set", withSeven},
        };
    for (const TableRow& row : readTable(VEK_TEST_FOLDER "tables.txt")) {
        const Texts words = split(row.cells.at(0), " ");
        EXPECT_EQ(rules.at(words.at(0))(words, unescaped(row.cells.at(1))), unescaped(row.cells.at(2)))
            << row.text;
    }
}

TEST(TextCodec, EveryByteIsOneCharacterAndComesBack) {
    for (int number = 0; number < 256; ++number) {
        const std::string byte(1, static_cast<char>(number));
        EXPECT_EQ(windows1252FromUtf8(utf8FromWindows1252(byte)), byte) << number;
    }
}

TEST(ProfileText, TextsAreOneLineOfUtf8OutsideTheFile) {
    std::string file;
    setProfileValue(file, "S\n[T]", "k\rx", std::string_view("1\r\n2\0003", 6));
    EXPECT_EQ(file, "[S [T]]\r\nk x=1  2 3\r\n");
    file.clear();
    writeProfileText(file, {{"ÜTEST", "PRÜF", "1 €"}, {"ütest", "prüf", "2 kΩ"}, {"ÜTEST", "NAME", "äöü"}});
    EXPECT_EQ(file, "[\xDCTEST]\r\nPR\xDC\x46=2 k?\r\nNAME=\xE4\xF6\xFC\r\n");
    EXPECT_EQ(readProfileText(file, "Ütest", "name", 254), "äöü");
    EXPECT_EQ(readProfileText(file, "Ütest", "name", 2), "äö");
}

}  // namespace
}  // namespace vek
