#include <gtest/gtest.h>

#include <functional>

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
    const char* success;
    const char* failure;
    const char* kdlSuccess = success;
};

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
     "Der Fehlerspeicher(Alarme) konnte nicht zurückgesetzt werden.",
     "Der Fehlerspeicher(Alarme) wurde zurückgesetzt"},
    {&frmMbMonitor::cmdFACT,
     {"03 10 1F 44 00 01 02 46 53 2C E8"},
     ":;003:DEFLT&dZk\r\n",
     "Das Geräte wurde auf die Werkseinstellungen (ohne Schnittstellen Parameter) zurückgesetzt.",
     "Das Zurücksetzen auf die Werkseinstellung konnte nicht durchgeführt werden"},
    {&frmMbMonitor::cmdFACTall,
     {"03 10 1F 43 00 01 02 66 61 B5 4A"},
     ":;003:DEFLT 51&00C\r\n",
     "Das Geräte wurde auf die Werkseinstellungen (alle Parameter) zurückgesetzt.",
     "Das Zurücksetzen auf die Werkseinstellung konnte nicht durchgeführt werden"},
};

/// Presses the button of a command; each of its requests gets the reply that `replyTo` makes of it. The boxes
/// without the question that comes before a calibration, and the requests.
struct Press {
    Press(const Command& command, bool kdl,
          const std::function<Bytes(std::string_view, std::size_t)>& replyTo) {
        TestProgram test;
        kdl ? test.configureKdl() : test.configure();
        auto& monitor = test.open<frmMbMonitor>();
        test.serial.peer = [&](std::string_view request) {
            test.serial.reply(replyTo(request, test.serial.written.size() - 1));
        };
        // Clicks while the reply is awaited do nothing.
        test.desktop.onEvents = [&] {
            for (const Command& other : commands) {
                EXPECT_FALSE((monitor.*other.button).enabled);
                (monitor.*other.button).click();
            }
            monitor.cmdRunMonitor.click();
        };
        (monitor.*command.button).click();
        EXPECT_EQ(test.serial.openings.size(), 1U);
        EXPECT_FALSE(test.serial.isOpen() || test.program.lineInUse);
        boxes = test.desktop.boxes;
        requests = test.serial.written;
        if (command.button == &frmMbMonitor::cmdCal) {
            EXPECT_EQ(boxes.at(0), question);
            boxes.erase(boxes.begin());
        }
    }

    Boxes boxes;
    std::vector<Bytes> requests;
};

TEST(DeviceCommands, SendTheirWordsAndTellHowItWent) {
    const std::pair<const char*, std::string> failures[] = {{"03 90 01 2C 00", illegalFunction},
                                                            {"", crcDialog}};
    for (const Command& command : commands) {
        std::vector<Bytes> words;
        for (std::size_t failing = 0; failing <= command.requests.size(); ++failing) {
            const bool taken = failing == command.requests.size();
            if (!taken) {
                words.push_back(fromHex(command.requests[failing]));
            }
            for (const auto& [refusal, box] : failures) {
                const Press press(command, false,
                                  [failing, refusal = refusal](std::string_view request, std::size_t index) {
                                      const Bytes head(request.substr(0, 6));
                                      return index == failing ? fromHex(refusal) : head + ComputeCrc(head);
                                  });
                EXPECT_EQ(press.requests, words) << command.failure << failing;
                EXPECT_EQ(press.boxes, taken
                                           ? Boxes{std::string("Hinweis|info|ok|") + command.success}
                                           : Boxes({box, std::string("Fehler|stop|ok|") + command.failure}));
            }
        }
    }
}

TEST(DeviceCommands, OnKdlAnEmptyReplyIsTheAcknowledgement) {
    const std::pair<Bytes, bool> replies[] = {
        {kdlReply(""), true},   {":;003=&\r\n", true}, {"\r\n", true},     {kdlReply("E 5"), false},
        {kdlReply(" "), false}, {"abc\r\n", false},    {":;003=&", false}, {"", false},
    };
    for (const Command& command : commands) {
        for (const auto& [reply, taken] : replies) {
            const Press press(command, true, [&, text = reply](auto, auto) { return text; });
            EXPECT_EQ(press.requests, std::vector<Bytes>{command.kdlRequest});
            EXPECT_EQ(press.boxes, Boxes{taken ? std::string("Hinweis|info|ok|") + command.kdlSuccess
                                               : std::string("Fehler|stop|ok|") + command.failure})
                << reply;
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
