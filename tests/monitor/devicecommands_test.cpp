#include <gtest/gtest.h>

#include "kdl/kdldevice.h"
#include "monitor/frmMbMonitor.h"
#include "support/hexbytes.h"
#include "support/testprogram.h"

namespace vek {
namespace {

using Boxes = std::vector<std::string>;

const std::string question =
    "Kalibrierung starten|-|ok+cancel|Das ZEPHYRON an den Kalibrieradapter anschließen und anschließend "
    "einschalten. Soll die Kalibrierung gestartet werden?";
const std::string notCalibrated =
    "Fehler|stop|ok|Das Gerät konnte nicht in den Kalibrier-Modus geschaltet werden";
const std::string notReset =
    "Fehler|stop|ok|Das Zurücksetzen auf die Werkseinstellung konnte nicht durchgeführt werden";
const std::string illegalFunction = "MODBUS-Fehler|stop|ok|Unzulässige Funktion";

const char* const refusal = "03 90 01 2C 00";
const char* const calibrate1 = "03 10 1F 40 00 01 02 71 6F 3B 4D";
const char* const calibrate2 = "03 10 1F 41 00 01 02 76 75 B9 67";

struct CommandCase {
    const char* what;
    Button frmMbMonitor::*button;
    std::vector<std::pair<const char*, const char*>> line;  ///< requests and what the device answers
    Boxes boxes;
};

const CommandCase commandCases[] = {
    {"calibration",
     &frmMbMonitor::cmdCal,
     {{calibrate1, "03 10 1F 40 00 01 06 2B"}, {calibrate2, "03 10 1F 41 00 01 57 EB"}},
     {question, "Hinweis|info|ok|Das Geräte ist nun im Kalibrier-Modus."}},
    {"calibration refused at once",
     &frmMbMonitor::cmdCal,
     {{calibrate1, refusal}},
     {question, illegalFunction, notCalibrated}},
    {"calibration refused then",
     &frmMbMonitor::cmdCal,
     {{calibrate1, "03 10 1F 40 00 01 06 2B"}, {calibrate2, refusal}},
     {question, illegalFunction, notCalibrated}},
    {"self test",
     &frmMbMonitor::cmdTest,
     {{"03 10 1F 45 00 01 02 54 45 A0 57", "03 10 1F 45 00 01 16 2A"}},
     {"Hinweis|info|ok|Der Selbsttest wurde gestartet."}},
    {"self test refused",
     &frmMbMonitor::cmdTest,
     {{"03 10 1F 45 00 01 02 54 45 A0 57", refusal}},
     {illegalFunction, "Fehler|stop|ok|Der Selbsttest konnte nicht durchgeführt werden"}},
    {"clear",
     &frmMbMonitor::cmdCLR,
     {{"03 10 1F 46 00 01 02 43 4C 6F 92", "03 10 1F 46 00 01 E6 2A"}},
     {"Hinweis|info|ok|Der Fehlerspeicher(Alarme) wurde zurückgesetzt."}},
    {"clear without an answer",
     &frmMbMonitor::cmdCLR,
     {{"03 10 1F 46 00 01 02 43 4C 6F 92", ""}},
     {crcDialog, "Fehler|stop|ok|Der Fehlerspeicher(Alarme) konnte nicht zurückgesetzt werden."}},
    {"factory settings",
     &frmMbMonitor::cmdFACT,
     {{"03 10 1F 44 00 01 02 46 53 2C E8", "03 10 1F 44 00 01 47 EA"}},
     {"Hinweis|info|ok|Das Geräte wurde auf die Werkseinstellungen (ohne Schnittstellen Parameter) "
      "zurückgesetzt."}},
    {"factory settings refused",
     &frmMbMonitor::cmdFACT,
     {{"03 10 1F 44 00 01 02 46 53 2C E8", refusal}},
     {illegalFunction, notReset}},
    {"all factory settings",
     &frmMbMonitor::cmdFACTall,
     {{"03 10 1F 43 00 01 02 66 61 B5 4A", "03 10 1F 43 00 01 F6 2B"}},
     {"Hinweis|info|ok|Das Geräte wurde auf die Werkseinstellungen (alle Parameter) zurückgesetzt."}},
    {"all factory settings refused",
     &frmMbMonitor::cmdFACTall,
     {{"03 10 1F 43 00 01 02 66 61 B5 4A", refusal}},
     {illegalFunction, notReset}},
};

TEST(DeviceCommands, SendTheirWordsAndTellHowItWent) {
    for (const CommandCase& c : commandCases) {
        TestProgram test;
        test.configure();
        auto& monitor = test.open<frmMbMonitor>();
        std::size_t step = 0;
        test.serial.peer = [&](std::string_view request) {
            ASSERT_LT(step, c.line.size()) << c.what;
            EXPECT_EQ(request, fromHex(c.line[step].first)) << c.what;
            test.serial.reply(fromHex(c.line[step].second));
            ++step;
        };
        (monitor.*c.button).click();
        EXPECT_EQ(step, c.line.size()) << c.what;
        EXPECT_EQ(test.desktop.boxes, c.boxes) << c.what;
        EXPECT_EQ(test.serial.openings.size(), 1U) << c.what;
        EXPECT_FALSE(test.serial.isOpen()) << c.what;
        EXPECT_FALSE(test.program.lineInUse) << c.what;
    }
}

TEST(DeviceCommands, ACancelledCalibrationSendsNothing) {
    for (const char* frameFormat : {",e,8,1", kdlFrameFormat}) {
        TestProgram test;
        test.configure();
        test.program.FrameFormat = frameFormat;
        test.desktop.answers = {MessageAnswer::Cancel};
        test.open<frmMbMonitor>().cmdCal.click();
        EXPECT_EQ(test.desktop.boxes, (Boxes{question, "Info|info|ok|Die Kalibrierung wurde abgebrochen!"}));
        EXPECT_TRUE(test.serial.openings.empty());
    }
}

TEST(DeviceCommands, AClickOnAnotherOneWhileABoxIsOpenDoesNothing) {
    TestProgram test;
    test.configure();
    auto& monitor = test.open<frmMbMonitor>();
    test.desktop.answers = {MessageAnswer::Cancel};
    test.desktop.onMessageBox = [&] {
        monitor.cmdTest.click();
        monitor.cmdCal.click();
        monitor.cmdRunMonitor.click();
    };
    monitor.cmdCal.click();
    EXPECT_EQ(test.desktop.boxes.size(), 2U);
    EXPECT_TRUE(test.serial.openings.empty());
}

TEST(DeviceCommands, EndingTheProgramSparesTheFailureMessage) {
    TestProgram test;
    test.configure();
    test.open<LastWindow>();
    auto& monitor = test.open<frmMbMonitor>();
    test.desktop.answers = {MessageAnswer::Cancel};
    EXPECT_TRUE(test.endsProgram([&] { monitor.cmdFACT.click(); }));
    EXPECT_EQ(test.desktop.boxes, (Boxes{crcDialog, farewell}));
    EXPECT_FALSE(test.serial.isOpen());
}

struct KdlCommandCase {
    Button frmMbMonitor::*button;
    const char* frame;
    Boxes taken;    ///< boxes when the device acknowledges
    Boxes refused;  ///< boxes when it does not
};

const KdlCommandCase kdlCommandCases[] = {
    {&frmMbMonitor::cmdCal,
     ":;003:KAL&00`\r\n",
     {question, "Hinweis|info|ok|Das Geräte ist nun im Kalibrier-Modus."},
     {question, notCalibrated}},
    {&frmMbMonitor::cmdTest,
     ":;003:TESTI&dZQ\r\n",
     {"Hinweis|info|ok|Der Selbsttest wurde gestartet."},
     {"Fehler|stop|ok|Der Selbsttest konnte nicht durchgeführt werden"}},
    {&frmMbMonitor::cmdCLR,
     ":;003:ALMCL&dZq\r\n",
     {"Hinweis|info|ok|Der Fehlerspeicher(Alarme) wurde zurückgesetzt"},
     {"Fehler|stop|ok|Der Fehlerspeicher(Alarme) konnte nicht zurückgesetzt werden."}},
    {&frmMbMonitor::cmdFACT,
     ":;003:DEFLT&dZk\r\n",
     {"Hinweis|info|ok|Das Geräte wurde auf die Werkseinstellungen (ohne Schnittstellen Parameter) "
      "zurückgesetzt."},
     {notReset}},
    {&frmMbMonitor::cmdFACTall,
     ":;003:DEFLT 51&00C\r\n",
     {"Hinweis|info|ok|Das Geräte wurde auf die Werkseinstellungen (alle Parameter) zurückgesetzt."},
     {notReset}},
};

TEST(KdlDeviceCommands, AnEmptyReplyIsTheAcknowledgement) {
    const std::pair<Bytes, bool> replies[] = {
        {kdlReply(""), true},   {":;003=&\r\n", true}, {"\r\n", true},     {kdlReply("E 5"), false},
        {kdlReply(" "), false}, {"abc\r\n", false},    {":;003=&", false}, {"", false},
    };
    for (const KdlCommandCase& c : kdlCommandCases) {
        for (const auto& [reply, taken] : replies) {
            TestProgram test;
            configureKdl(test.program);
            auto& monitor = test.open<frmMbMonitor>();
            test.serial.peer = [&, text = reply](std::string_view) { test.serial.reply(text); };
            test.desktop.onMessageBox = [&] { EXPECT_FALSE(test.serial.isOpen()); };
            (monitor.*c.button).click();
            EXPECT_EQ(test.serial.written, std::vector<Bytes>{c.frame});
            EXPECT_EQ(test.desktop.boxes, taken ? c.taken : c.refused) << c.frame << reply;
            EXPECT_EQ(test.serial.openings.size(), 1U);
            EXPECT_FALSE(test.program.lineInUse);
        }
    }
}

TEST(KdlDeviceCommands, ClicksWhileTheReplyIsAwaitedDoNothing) {
    TestProgram test;
    configureKdl(test.program);
    KdlDevice device(test.serial);
    device.answers = {{":ALMCL", ""}};
    auto& monitor = test.open<frmMbMonitor>();
    test.desktop.onEvents = [&] {
        monitor.cmdFACTall.click();
        monitor.cmdCal.click();
        monitor.cmdRunMonitor.click();
        monitor.cmdCLR.click();
    };
    monitor.cmdCLR.click();
    EXPECT_EQ(device.commands, std::vector<std::string>{":ALMCL"});
    EXPECT_EQ(test.desktop.boxes, kdlCommandCases[2].taken);
}

}  // namespace
}  // namespace vek
