#include <gtest/gtest.h>

#include "kdl/kdldevice.h"
#include "modbus/modbusframe.h"
#include "monitor/frmMbMonitor.h"
#include "support/hexbytes.h"
#include "support/testprogram.h"

namespace vek {
namespace {

using Boxes = std::vector<std::string>;

const std::string question =
    "Kalibrierung starten|-|ok+cancel|Das ZEPHYRON an den Kalibrieradapter anschließen und anschließend "
    "einschalten. Soll die Kalibrierung gestartet werden?";
const std::string illegalFunction = "MODBUS-Fehler|stop|ok|Unzulässige Funktion";

struct Command {
    Button frmMbMonitor::*button;
    std::vector<const char*> requests;
    const char* kdlRequest;
    std::string success;
    std::string failure;
};

const std::string notReset = "Das Zurücksetzen auf die Werkseinstellung konnte nicht durchgeführt werden";
const Command commands[] = {
    {&frmMbMonitor::cmdCal,
     {"03 10 1F 40 00 01 02 71 6F 3B 4D", "03 10 1F 41 00 01 02 76 75 B9 67"},
     ":;003:KAL&00`\r\n",
     "Das Geräte ist nun im Kalibrier-Modus.",
     "Das Gerät konnte nicht in den Kalibrier-Modus geschaltet werden"},
    {&frmMbMonitor::cmdTest,
     {"03 10 1F 45 00 01 02 54 45 A0 57"},
     ":;003:TESTI&dZQ\r\n",
     "Der Selbsttest wurde gestartet.",
     "Der Selbsttest konnte nicht durchgeführt werden"},
    {&frmMbMonitor::cmdCLR,
     {"03 10 1F 46 00 01 02 43 4C 6F 92"},
     ":;003:ALMCL&dZq\r\n",
     "Der Fehlerspeicher(Alarme) wurde zurückgesetzt.",
     "Der Fehlerspeicher(Alarme) konnte nicht zurückgesetzt werden."},
    {&frmMbMonitor::cmdFACT,
     {"03 10 1F 44 00 01 02 46 53 2C E8"},
     ":;003:DEFLT&dZk\r\n",
     "Das Geräte wurde auf die Werkseinstellungen (ohne Schnittstellen Parameter) zurückgesetzt.",
     notReset},
    {&frmMbMonitor::cmdFACTall,
     {"03 10 1F 43 00 01 02 66 61 B5 4A"},
     ":;003:DEFLT 51&00C\r\n",
     "Das Geräte wurde auf die Werkseinstellungen (alle Parameter) zurückgesetzt.",
     notReset},
};

/// On KDL, one text ends without its full stop.
std::string kdlSuccess(const Command& command) {
    const bool cleared = command.button == &frmMbMonitor::cmdCLR;
    return command.success.substr(0, command.success.size() - (cleared ? 1 : 0));
}

/// The boxes of a command: its question, what came on the way, and the message at its end.
Boxes boxesOf(const Command& command, const Boxes& onTheWay, const std::string& last) {
    Boxes boxes = command.button == &frmMbMonitor::cmdCal ? Boxes{question} : Boxes{};
    boxes.insert(boxes.end(), onTheWay.begin(), onTheWay.end());
    boxes.push_back(last);
    return boxes;
}

Bytes acknowledged(std::string_view request) {
    const Bytes head(request.substr(0, 6));
    return head + ComputeCrc(head);
}
Bytes refused(std::string_view /*request*/) {
    return fromHex("03 90 01 2C 00");
}
Bytes silent(std::string_view /*request*/) {
    return {};
}

TEST(DeviceCommands, SendTheirWordsAndTellHowItWent) {
    struct Run {
        const char* what;
        Bytes (*first)(std::string_view);
        Bytes (*later)(std::string_view);
        Boxes boxes;
    };
    const Run runs[] = {{"taken", acknowledged, acknowledged, {}},
                        {"refused", refused, acknowledged, {illegalFunction}},
                        {"silent", silent, acknowledged, {crcDialog}},
                        {"refused then", acknowledged, refused, {illegalFunction}}};
    for (const Command& c : commands) {
        for (const Run& run : runs) {
            TestProgram test;
            test.configure();
            auto& monitor = test.open<frmMbMonitor>();
            test.serial.peer = [&](std::string_view request) {
                test.serial.reply((test.serial.written.size() == 1 ? run.first : run.later)(request));
            };
            (monitor.*c.button).click();
            const std::size_t sent = run.first == acknowledged ? c.requests.size() : 1;
            ASSERT_EQ(test.serial.written.size(), sent) << c.failure << run.what;
            for (std::size_t index = 0; index < sent; ++index) {
                EXPECT_EQ(test.serial.written[index], fromHex(c.requests[index]));
            }
            // A command of one word has no other one that could be refused.
            const bool taken = run.boxes.empty() || (run.first == acknowledged && sent == 1);
            EXPECT_EQ(test.desktop.boxes,
                      boxesOf(c, taken ? Boxes{} : run.boxes,
                              taken ? "Hinweis|info|ok|" + c.success : "Fehler|stop|ok|" + c.failure))
                << run.what;
            EXPECT_EQ(test.serial.openings.size(), 1U);
            EXPECT_FALSE(test.serial.isOpen() || test.program.lineInUse);
        }
    }
}

TEST(DeviceCommands, OnKdlAnEmptyReplyIsTheAcknowledgement) {
    const std::pair<Bytes, bool> replies[] = {
        {kdlReply(""), true},   {":;003=&\r\n", true}, {"\r\n", true},     {kdlReply("E 5"), false},
        {kdlReply(" "), false}, {"abc\r\n", false},    {":;003=&", false}, {"", false},
    };
    for (const Command& c : commands) {
        for (const auto& [reply, taken] : replies) {
            TestProgram test;
            test.configureKdl();
            auto& monitor = test.open<frmMbMonitor>();
            test.serial.peer = [&, text = reply](std::string_view) { test.serial.reply(text); };
            // Clicks while the reply is awaited do nothing.
            test.desktop.onEvents = [&] {
                for (const Command& other : commands) {
                    EXPECT_FALSE((monitor.*other.button).enabled);
                    (monitor.*other.button).click();
                }
                monitor.cmdRunMonitor.click();
            };
            (monitor.*c.button).click();
            EXPECT_EQ(test.serial.written, std::vector<Bytes>{c.kdlRequest});
            EXPECT_EQ(
                test.desktop.boxes,
                boxesOf(c, {}, taken ? "Hinweis|info|ok|" + kdlSuccess(c) : "Fehler|stop|ok|" + c.failure))
                << reply;
            EXPECT_FALSE(test.serial.isOpen() || test.program.lineInUse);
        }
    }
}

TEST(DeviceCommands, ACancelledCalibrationSendsNothing) {
    for (const char* frameFormat : {",e,8,1", kdlFrameFormat}) {
        TestProgram test;
        test.configure();
        test.program.FrameFormat = frameFormat;
        test.desktop.answers = {MessageAnswer::Cancel};
        auto& monitor = test.open<frmMbMonitor>();
        // Nor do clicks on other buttons while a box is open.
        test.desktop.onMessageBox = [&] {
            monitor.cmdTest.click();
            monitor.cmdCal.click();
            monitor.cmdRunMonitor.click();
        };
        monitor.cmdCal.click();
        EXPECT_EQ(test.desktop.boxes, (Boxes{question, "Info|info|ok|Die Kalibrierung wurde abgebrochen!"}));
        EXPECT_TRUE(test.serial.openings.empty());
    }
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

}  // namespace
}  // namespace vek
