#include <gtest/gtest.h>

#include "app/frmModBus.h"
#include "support/testprogram.h"

namespace vek {
namespace {

const std::string settingsFile = "/daten/vekXX731_Monitor.ini";
const std::string newFile =
    "[RS485]\r\nCOM=0\r\nBAUD=0\r\nFRAME=\r\n"
    "[BATTERIE_PARA]\r\nU_MODUL=10,73\r\nON_ROFF=0\r\nROFF_VAL=20000\r\nANZ_MODULE=36\r\nMODUL_BER=5000\r\n";
const std::string guardBox =
    "Hinweis|info|ok|Zuerst die Schnittstellenparameter und die Geräteadresse einstellen";

TEST(StartUp, TheFirstStartMakesTheSettingsFile) {
    TestProgram test;
    auto& window = test.open<frmModBus>();
    EXPECT_EQ(test.profileFiles.files, (std::map<std::string, std::string>{{settingsFile, newFile}}));
    EXPECT_EQ(window.sbStatusBar_1.caption.get(), "Port = COM0, 0");
    EXPECT_EQ(window.caption.get(), "ModBus RTU / KDL - Monitor   V2.2.2");
    for (const MenuItem* item :
         {&window.mnuMonitor, &window.mnuParameter, &window.mnuMessReg, &window.mnuParaReg}) {
        item->click();
        EXPECT_EQ(test.desktop.takeBoxes(), std::vector<std::string>{guardBox}) << item->name;
    }

    TestProgram second;
    second.profileFiles.files = test.profileFiles.files;
    second.open<frmModBus>();
    EXPECT_EQ(second.profileFiles.writeCount, 0) << "the second start finds it";
}

TEST(StartUp, StandsBesideTheTerminalAndSendsNothing) {
    TestProgram test;
    auto& window = test.open<frmModBus>();
    const Form* terminal = test.program.windows.find("frmModBusTerminal");
    ASSERT_NE(terminal, nullptr);
    EXPECT_EQ(test.host.log, (std::vector<std::string>{"+frmModBusTerminal", "+frmModBus"}));
    EXPECT_EQ(terminal->caption.get(), "Terminal");
    EXPECT_TRUE(terminal->visible);
    EXPECT_TRUE(window.mnuTerminal.checked);
    EXPECT_EQ(terminal->geometry.left.get(), 0);
    EXPECT_EQ(terminal->geometry.top.get(), 0);
    EXPECT_EQ(window.geometry.left.get(), terminal->geometry.width.get());
    EXPECT_EQ(window.geometry.top.get(), 0);
    EXPECT_TRUE(window.Timer2.enabled);
    EXPECT_EQ(window.Timer2.interval.get(), 500);
    EXPECT_FALSE(test.program.Timer1.enabled);
    EXPECT_FALSE(test.program.TimeOut.enabled);
    EXPECT_TRUE(test.serial.openings.empty());
    EXPECT_TRUE(test.desktop.boxes.empty());
}

struct FileCase {
    const char* what;
    std::string file;
    int comPort;
    int baudRate;
    const char* frameFormat;
    const char* panel;
};

TEST(StartUp, TakesTheSettingsAsTheyStandInTheFile) {
    const std::string megabytes(5'000'000, 'x');
    const FileCase cases[] = {
        {"usual", "[RS485]\r\nCOM= 3\r\nBAUD= 9600\r\nFRAME=,e,8,1\r\n", 3, 9600, ",e,8,1",
         "ModBus RTU-Port = COM3, 9600,e,8,1"},
        {"other case, LF", "[rs485]\ncom=16\nbaud=115200\nframe=,n,8,1", 16, 115200, ",n,8,1",
         "ModBus RTU-Port = COM16, 115200,n,8,1"},
        {"odd parity", "[RS485]\r\nCOM=1\r\nBAUD=1200\r\nFRAME=,o,8,1\r\n", 1, 1200, ",o,8,1",
         "ModBus RTU-Port = COM1, 1200,o,8,1"},
        {"other protocol", "[RS485]\r\nCOM=2\r\nBAUD=9600\r\nFRAME=,e,7,1\r\n", 2, 9600, ",e,7,1",
         "KDL-Port = COM2, 9600,e,7,1"},
        {"unknown frame", "[RS485]\r\nCOM=4\r\nBAUD=9600\r\nFRAME=,E,8,1\r\n", 4, 9600, ",E,8,1",
         "Port = COM4, 9600,E,8,1"},
        {"letters", "[RS485]\r\nCOM=abc\r\nBAUD=schnell\r\nFRAME=\r\n", 0, 0, "", "Port = COM0, 0"},
        {"odd numbers", "[RS485]\r\nCOM=17\r\nBAUD=12\r\nFRAME=,e,8,1\r\n", 17, 12, ",e,8,1",
         "ModBus RTU-Port = COM17, 12,e,8,1"},
        {"trailing text", "[RS485]\r\nCOM=3x\r\nBAUD=9600 Baud\r\nFRAME=,e,8,1\r\n", 3, 9600, ",e,8,1",
         "ModBus RTU-Port = COM3, 9600,e,8,1"},
        {"fractions", "[RS485]\r\nCOM=2.6\r\nBAUD=9600.4\r\nFRAME=,e,8,1\r\n", 3, 9600, ",e,8,1",
         "ModBus RTU-Port = COM3, 9600,e,8,1"},
        {"beyond every type", "[RS485]\r\nCOM=40000\r\nBAUD=99999999999\r\nFRAME=,e,8,1\r\n", 0, 0, ",e,8,1",
         "ModBus RTU-Port = COM0, 0,e,8,1"},
        {"only the port", "[RS485]\r\nCOM=5\r\n", 5, 0, "", "Port = COM5, 0"},
        {"NUL bytes",
         std::string("\0\0[\0]\r\n[RS485]\r\nCOM=\0"
                     "6\0\r\nBAUD=9600\r\n",
                     36),
         6, 9600, "", "Port = COM6, 9600"},
        {"huge lines", megabytes + "\r\n[RS485]\r\n" + megabytes + "\r\nCOM=7\r\nBAUD=" + megabytes + "\r\n",
         7, 0, "", "Port = COM7, 0"},
    };
    for (const FileCase& c : cases) {
        TestProgram test;
        test.profileFiles.files[settingsFile] = c.file;
        auto& window = test.open<frmModBus>();
        EXPECT_EQ(test.program.ComPort, c.comPort) << c.what;
        EXPECT_EQ(test.program.BaudRate, c.baudRate) << c.what;
        EXPECT_EQ(test.program.FrameFormat, c.frameFormat) << c.what;
        EXPECT_EQ(window.sbStatusBar_1.caption.get(), c.panel) << c.what;
        EXPECT_EQ(test.profileFiles.writeCount, 0) << c.what << ": a port that is there is not completed";
    }
}

TEST(StartUp, FilesWithoutAPortGetTheDefaults) {
    for (const char* file :
         {"", "rubbish", "[RS485]\r\nCOM=\r\nBAUD=9600\r\nFRAME=,e,8,1\r\n", "[RS485", "\xFF\xFE\r"}) {
        TestProgram test;
        test.profileFiles.files[settingsFile] = file;
        auto& window = test.open<frmModBus>();
        EXPECT_EQ(window.sbStatusBar_1.caption.get(), "Port = COM0, 0") << file;
        EXPECT_EQ(test.program.ProfilePath, settingsFile);
        EXPECT_EQ(test.profileFiles.read(settingsFile, "BATTERIE_PARA", "U_MODUL", 99), "10,73") << file;
    }
}

TEST(StartUp, GoesOnWithoutAFolderAndWithoutAFile) {
    TestProgram folderless;
    folderless.folders.answer = {FolderResult::InvalidArgument, ""};
    folderless.open<frmModBus>();
    EXPECT_EQ(folderless.desktop.boxes, std::vector<std::string>{"Fehler|stop|ok|Ungültiges Verzeichnis"});
    EXPECT_EQ(folderless.program.ProfilePath, "/vekXX731_Monitor.ini");

    TestProgram readOnly;
    readOnly.profileFiles.refuseWrites = true;
    auto& window = readOnly.open<frmModBus>();
    EXPECT_EQ(window.sbStatusBar_1.caption.get(), "Port = COM0, 0");
    window.mnuMonitor.click();
    EXPECT_EQ(readOnly.desktop.boxes, std::vector<std::string>{guardBox});
}

}  // namespace
}  // namespace vek
