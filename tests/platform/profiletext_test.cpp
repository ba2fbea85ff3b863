#include "platform/profiletext.h"

#include <gtest/gtest.h>

namespace vek {
namespace {

using std::string_view_literals::operator""sv;

TEST(ProfileText, FindsTheValue) {
    using Text = std::string_view;
    const std::tuple<Text, Text, Text, Text> cases[] = {
        {"[RS485]\r\nCOM= 3\r\nBAUD=9600\r\n", "rs485", "BAUD", "9600"},
        {"[x]\n\xF7=1\n\xD7=2\n", "x", "\xD7", "2"},  // the signs for times and divided are no letters
        {" [ RS485 ] ; comment\n \tCOM \t=\t 3 \t\n", "RS485", "COM", "3"},
        {"[A]\nk=1\n[B]\nk=2\nk=3\n[b]\nk=4\n", "B", "k", "2"},
        {"k=0\n[A]\n;k=1\n ; k=2\nk\nk=3\n", "A", "k", "3"},
        {"[A]\r\r\nk=1\r\r\n", "A", "k", "1"},
        {"[A]\nk=\" 3 \"\n", "A", "k", " 3 "},
        {"\xEF\xBB\xBF[A]\nk=1\n", "A", "k", "1"},
        {"[A]\n\0\nk=1\0x\n"sv, "A", "k", "1\0x"sv},
    };
    for (const auto& [file, section, key, value] : cases) {
        EXPECT_EQ(profileValue(file, section, key), value) << file;
    }
}

TEST(ProfileText, SetsTheValueAndKeepsAllElse) {
    const std::pair<std::string_view, std::string_view> cases[] = {
        // The value is replaced, whatever stands around it.
        {"[S]\r\nk=1\r\nx=2\r\n", "[S]\r\nk= 7\r\nx=2\r\n"},
        {"; a\n\n[s]  \n K\t=  \"1\" \nrest", "; a\n\n[s]  \n K\t= 7\nrest"},
        {"[S]\nk=1\nk=2\n[S]\nk=3\n", "[S]\nk= 7\nk=2\n[S]\nk=3\n"},
        {"[S]\n\0x\nk=1\0\n"sv, "[S]\n\0x\nk= 7\n"sv},
        // A new line goes behind the last line of the section that is not blank.
        {"[S]\nx=1", "[S]\nx=1\nk= 7\n"},
        {"[S]\nx=1\n\n \n[T]\nk=1\n", "[S]\nx=1\nk= 7\n\n \n[T]\nk=1\n"},
        {"[S]\r\n;k=1\r\n\r\n", "[S]\r\n;k=1\r\nk= 7\r\n\r\n"},
        // A new section goes to the end.
        {"", "[S]\r\nk= 7\r\n"},
        {"\xEF\xBB\xBF", "\xEF\xBB\xBF[S]\r\nk= 7\r\n"},
        {"[T]\nk=1", "[T]\nk=1\n[S]\nk= 7\n"},
        {"[T]\nk=1\r", "[T]\nk=1\r\n[S]\nk= 7\n"},
    };
    for (const auto& [before, after] : cases) {
        std::string file(before);
        setProfileValue(file, "S", "k", " 7");
        EXPECT_EQ(file, after) << before;
    }
}

TEST(ProfileText, TextsAreOneLineOfUtf8OutsideTheFile) {
    std::string file;
    setProfileValue(file, "S\n[T]", "k\rx", "1\r\n2\0003"sv);
    EXPECT_EQ(file, "[S [T]]\r\nk x=1  2 3\r\n");
    file.clear();
    writeProfileText(file, {{"ÜTEST", "PRÜF", "1 €"}, {"ütest", "prüf", "2 kΩ"}});
    EXPECT_EQ(file, "[\xDCTEST]\r\nPR\xDC\x46=2 k?\r\n");
    writeProfileText(file, {{"ÜTEST", "NAME", "äöü"}});
    EXPECT_EQ(readProfileText(file, "Ütest", "name", 254), "äöü");
    EXPECT_EQ(readProfileText(file, "Ütest", "name", 2), "äö");
}

}  // namespace
}  // namespace vek
