#include <gtest/gtest.h>

#include "app/frmModBus.h"
#include "support/testprogram.h"

namespace vek {
namespace {

using Texts = std::vector<std::string>;

const std::string settingsFile = "/daten/vekXX731_Monitor.ini";
const std::string newFile =
    "[RS485]\r\nCOM=0\r\nBAUD=0\r\nFRAME=\r\n"
    "[BATTERIE_PARA]\r\nU_MODUL=10,73\r\nON_ROFF=0\r\nROFF_VAL=20000\r\nANZ_MODULE=36\r\nMODUL_BER=5000\r\n";

TEST(StartUp, TheFirstStartMakesTheSettingsFileAndSendsNothing) {
    TestProgram test;
    auto& window = test.open<frmModBus>();
    EXPECT_EQ(test.profileFiles.files, (std::map<std::string, std::string>{{settingsFile, newFile}}));
    EXPECT_TRUE(test.serial.openings.empty() && test.desktop.boxes.empty());
    EXPECT_FALSE(test.program.Timer1.enabled || test.program.TimeOut.enabled);

    // Beside its terminal.
    const Form* terminal = test.program.windows.find("frmModBusTerminal");
    ASSERT_NE(terminal, nullptr);
    EXPECT_EQ(test.host.log, (Texts{"+frmModBusTerminal", "+frmModBus"}));
    EXPECT_EQ(terminal->caption.get(), "Terminal");
    EXPECT_TRUE(terminal->visible && window.mnuTerminal.checked);
    EXPECT_EQ(terminal->geometry.left.get(), 0);
    EXPECT_EQ(window.geometry.left.get(), terminal->geometry.width.get());
    EXPECT_EQ(window.Timer2.interval.get(), 500);

    TestProgram second;
    second.profileFiles.files = test.profileFiles.files;
    second.open<frmModBus>();
    EXPECT_EQ(second.profileFiles.writeCount, 0) << "the second start finds it";
}

TEST(StartUp, TakesTheSettingsAsTheyStandInTheFile) {
    const std::string megabytes(5'000'000, 'x');
    const std::tuple<std::string, int, int, const char*, const char*> cases[] = {
        {"[RS485]\r\nCOM= 3\r\nBAUD= 9600\r\nFRAME=,e,8,1\r\n", 3, 9600, ",e,8,1",
         "ModBus RTU-Port = COM3, 9600,e,8,1"},
        {"[rs485]\ncom=16\nbaud=115200\nframe=,n,8,1", 16, 115200, ",n,8,1",
         "ModBus RTU-Port = COM16, 115200,n,8,1"},
        {"[RS485]\nCOM=2\nBAUD=9600\nFRAME=,e,7,1\n", 2, 9600, ",e,7,1", "KDL-Port = COM2, 9600,e,7,1"},
        {"[RS485]\nCOM=4\nBAUD=9600\nFRAME=,E,8,1\n", 4, 9600, ",E,8,1", "Port = COM4, 9600,E,8,1"},
        // Numbers: none, odd ones, with a tail, fractions, beyond every type; then lines that are missing.
        {"[RS485]\nCOM=abc\nBAUD=schnell\nFRAME=\n", 0, 0, "", "Port = COM0, 0"},
        {"[RS485]\nCOM=3x\nBAUD=9600 Baud\n", 3, 9600, "", "Port = COM3, 9600"},
        {"[RS485]\nCOM=2.6\nBAUD=9600.4\n", 3, 9600, "", "Port = COM3, 9600"},
        {"[RS485]\nCOM=40000\nBAUD=99999999999\n", 0, 0, "", "Port = COM0, 0"},
        {std::string("\0\0[\0]\r\n[RS485]\r\nCOM=\0\x36\0\r\nBAUD=9600\r\n", 36), 6, 9600, "",
         "Port = COM6, 9600"},
        {megabytes + "\n[RS485]\n" + megabytes + "\nCOM=7\nBAUD=" + megabytes + "\n", 7, 0, "",
         "Port = COM7, 0"},
    };
    for (const auto& [file, comPort, baudRate, frameFormat, panel] : cases) {
        TestProgram test;
        test.profileFiles.files[settingsFile] = file;
        auto& window = test.open<frmModBus>();
        EXPECT_EQ(test.program.ComPort, comPort) << panel;
        EXPECT_EQ(test.program.BaudRate, baudRate) << panel;
        EXPECT_EQ(test.program.FrameFormat, frameFormat) << panel;
        EXPECT_EQ(window.sbStatusBar_1.caption.get(), panel);
        EXPECT_EQ(test.profileFiles.writeCount, 0) << "a port that is there is not completed";
    }
    for (const char* file : {"", "rubbish", "[RS485]\r\nCOM=\r\nBAUD=9600\r\n", "[RS485", "\xFF\xFE\r"}) {
        TestProgram test;
        test.profileFiles.files[settingsFile] = file;
        EXPECT_EQ(test.open<frmModBus>().sbStatusBar_1.caption.get(), "Port = COM0, 0") << file;
        EXPECT_NE(test.profileFiles.files[settingsFile].find("U_MODUL=10,73\r\n"), std::string::npos) << file;
    }
}

TEST(StartUp, GoesOnWithoutAFolderAndWithoutAFile) {
    TestProgram folderless;
    folderless.folders.answer = {FolderResult::InvalidArgument, ""};
    folderless.open<frmModBus>();
    EXPECT_EQ(folderless.desktop.boxes, Texts{"Fehler|stop|ok|Ungültiges Verzeichnis"});
    EXPECT_EQ(folderless.program.ProfilePath, "/vekXX731_Monitor.ini");

    TestProgram readOnly;
    readOnly.profileFiles.refuseWrites = true;
    EXPECT_EQ(readOnly.open<frmModBus>().sbStatusBar_1.caption.get(), "Port = COM0, 0");
    EXPECT_TRUE(readOnly.desktop.boxes.empty());
}

}  // namespace
}  // namespace vek
