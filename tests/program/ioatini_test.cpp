#include "program/IOatINI.h"

#include <gtest/gtest.h>

#include "support/testprogram.h"

namespace vek {
namespace {

using Boxes = std::vector<std::string>;

TEST(ProfileValues, AreReadFromTheFileAtProfilePathElseFromTheDevicesFile) {
    TestProgram test;
    test.profileFiles.files["/a.ini"] =
        "[RS485]\r\nCOM= 3\r\nLONG=" + std::string(300, 'x') + "\r\nNUL=a" + std::string(2, '\0') + "b\r\n";
    test.program.ProfilePath = "/a.ini";
    EXPECT_EQ(GetProfileValue(test.program, "com", "rs485"), "3");
    EXPECT_EQ(GetProfileValue(test.program, "LONG", "RS485"), std::string(254, 'x'));
    EXPECT_EQ(GetProfileValue(test.program, "NUL", "RS485"), "ab");
    EXPECT_EQ(GetProfileValue(test.program, "FEHLT", "RS485"), "");
    test.program.ProfilePath = "/fehlt.ini";
    EXPECT_EQ(GetProfileValue(test.program, "COM", "RS485"), "");

    test.program.ProfilePath = "";
    test.program.DeviceName = "vekQA731-K7-2";
    test.profileFiles.files["vekQA731-K7-2.GPM"] = "[ZEPHYRON]\nNAME=x\n";
    EXPECT_EQ(GetProfileValue(test.program, "", "ZEPHYRON"), "");
    EXPECT_EQ(test.program.ProfilePath, "vekQA731-K7-2.GPM") << "even for no key";
    EXPECT_EQ(GetProfileValue(test.program, "NAME", "ZEPHYRON"), "x");
    EXPECT_TRUE(test.desktop.boxes.empty());
}

TEST(ProfileValues, AreWrittenToTheFileAtProfilePath) {
    TestProgram test;
    SetProfileValue(test.program, {{"RS485", "COM", "1"}});
    EXPECT_EQ(test.desktop.takeBoxes(), (Boxes{"Fehler|stop|ok|Keine gültige Parameter-Datei vorhanden"}));
    EXPECT_EQ(test.program.ProfilePath, "") << "writing chooses no file";

    test.program.ProfilePath = "/a.ini";
    SetProfileValue(test.program, {{"RS485", "", "1"}});
    EXPECT_TRUE(test.profileFiles.files.empty());
    SetProfileValue(test.program,
                    {{"RS485", "COM", " 3"}, {"RS485", "", "2"}, {"ZEPHYRON", "NAME", "Gerät"}});
    EXPECT_EQ(test.profileFiles.writeCount, 1) << "all of them or none";
    EXPECT_EQ(test.profileFiles.files["/a.ini"], "[RS485]\r\nCOM= 3\r\n[ZEPHYRON]\r\nNAME=Ger\xE4t\r\n");
    test.profileFiles.refuseWrites = true;
    SetProfileValue(test.program, {{"RS485", "COM", " 4"}});
    EXPECT_EQ(GetProfileValue(test.program, "COM", "RS485"), "3");
    EXPECT_TRUE(test.desktop.boxes.empty());
}

}  // namespace
}  // namespace vek
