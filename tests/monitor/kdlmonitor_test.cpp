#include <gtest/gtest.h>

#include "kdl/KDL.h"
#include "kdl/KDLBusLink.h"
#include "kdl/kdldevice.h"
#include "monitor/frmMbMonitor.h"
#include "monitor/kdlmonitor.h"
#include "support/shown.h"

namespace vek {
namespace {

using Boxes = std::vector<std::string>;
using Commands = std::vector<std::string>;

/// The KDL monitor on a scripted device.
struct Rig {
    Rig() {
        test.configureKdl();
        test.program.DeviceName = "vekQB731-K7W-2";
        test.program.DeviceType = 1;
    }

    /// Presses Stop while the reply to the n-th request for that command is awaited.
    void stopAt(const std::string& command, int n) {
        device.afterRequest(test.desktop, command, n, [this] { test.program.MonitorRunning = false; });
    }
    void run() { KdlRunMonitor(test.program, view); }

    TestProgram test{NumberLocale{.decimalPoint = ",", .groupSeparator = "."}};
    LastWindow& mainWindow = test.open<LastWindow>();
    KdlDevice device{test.serial};
    frmMbMonitor& view = test.open<frmMbMonitor>();

    std::string row(std::size_t i) const {
        return captions({&view.lblMesswert[i], &view.lblRange[i], &view.lblEinheit[i], &view.lblMessName[i]});
    }
    std::string lamps(std::size_t i) const {
        return {colorLetter(view.LED[i].fillColor), colorLetter(view.LED_TEST_INTERN.fillColor),
                colorLetter(view.LED_TEST_EXTERN.fillColor)};
    }
    std::string position() const {
        return std::to_string(view.Slider1.value) + '|' +
               captions({&view.lblFehlerVorzeichen, &view.lblReNeg, &view.lblRePos});
    }
};

struct RowCase {
    const char* what;
    const char* alarmCount;  ///< replies of the device; null = none
    const char* alarm;
    const char* valueCount;
    const char* value;
    const char* asked;  ///< the requests: A and a for the alarms, B and b for the operating values
    const char* row;    ///< value, range, unit, name; "end" = nothing changes as the list has ended
    const char* lamps;  ///< of the row, the internal and the external test: Red, Green, White, - unchanged
};

const RowCase rowCases[] = {
    {"no alarm", "n= 0", "", "n= 9", "Re >2000 kO", "ABb", "2000|>|kOhm|Isolationswiderstand", "GWW"},
    {"an alarm", "n= 2", "Uo/dV 2305", "", "", "Aa", "230,5||V|Überspannung", "RWW"},
    {"a number with a tail", "n= 1x", "FL-35%", "", "", "Aa", "-35||%|Fehlerort", "RWW"},
    {"internal test", "n=/TI", "no 0", "n= 9", "42", "AaBb", "42||V|Impedanz", "GR-"},
    {"external test", "n=/TE", "35FDE 129", "", "", "Aa", "-|||Interner Gerätefehler", "R-R"},
    {"another test", "n=/X n= 0", "31AER 102", "", "", "Aa", "31102|||Anschlußfehler Erde", "R--"},
    {"test in small letters", "N=/TI", "", "n= 9", "42", "ABb", "42||V|Impedanz", "G--"},
    {"number without mark", "n=2", "", "n= 9", "42", "ABb", "42||V|Impedanz", "G--"},
    {"no values: the count shows", "n= 0", "", "n= 0", "", "AB", "0||V|Impedanz", "GWW"},
    {"end of the values", "n= 0", "", "n= 9", "stop 0", "ABb", "end", "-WW"},
    {"end among the alarms", "n= 2", "stop 0", "", "", "Aa", "end", "-WW"},
    {"end for a count", "n= 0", "", "stop 0", "", "AB", "end", "-WW"},
    {"peak", "n= 0", "", "n= 9", "peak 0", "ABb", "9|>|V|Netzableitkapazität", "RWW"},
    {"silence", nullptr, nullptr, nullptr, nullptr, "AB", "||V|Spannung", "G--"},
    {"an alarm that is not told", "n= 2", nullptr, "", "", "Aa", "||V|Spannung", "RWW"},
};

TEST(KdlMonitorRow, AnAlarmElseAnOperatingValue) {
    const std::map<char, std::string> commands = {
        {'A', ":ALMN?"}, {'a', ":ALM? 15"}, {'B', ":BTRN?"}, {'b', ":BTR? 15"}};
    for (const RowCase& c : rowCases) {
        Rig rig;
        const std::pair<const char*, const char*> replies[] = {
            {":ALMN?", c.alarmCount}, {":ALM? 15", c.alarm}, {":BTRN?", c.valueCount}, {":BTR? 15", c.value}};
        for (const auto& [command, reply] : replies) {
            if (reply != nullptr) {
                rig.device.answers[command] = reply;
            }
        }
        rig.view.lblMesswert[14].caption = "9";
        rig.view.lblRange[14].caption = "<";
        rig.view.lblEinheit[14].caption = "V";
        rig.view.lblMessName[14].caption = "Impedanz";
        KdlOpenPort(rig.test.program);
        const bool ends = c.row == std::string("end");
        EXPECT_EQ(KdlReadMonitorRow(rig.test.program, rig.view, 14), ends) << c.what;
        Commands asked;
        for (const char letter : std::string_view(c.asked)) {
            asked.push_back(commands.at(letter));
        }
        EXPECT_EQ(rig.device.commands, asked) << c.what;
        EXPECT_EQ(rig.row(14), ends ? "9|<|V|Impedanz" : c.row) << c.what;
        EXPECT_EQ(rig.lamps(14), c.lamps) << c.what;
    }
}

TEST(KdlMonitor, FaultPositionFromWhatTheRowsShow) {
    const std::tuple<int, const char*, const char*, const char*> cases[] = {
        {1, "", "100", "0|~|---|---"},      {1, "-", "100", "0|~|---|---"},
        {1, "15,5", "100", "16|+|237|173"}, {9, "50", "100", "50|+|---|---"},
        {1, "0", "-", "0|~|0|0"},           {1, "50", "123456789012345678901234567890", "50|+|>4000|>4000"},
    };
    for (const auto& [type, position, resistance, shown] : cases) {
        Rig rig;
        rig.test.program.DeviceType = static_cast<std::uint8_t>(type);
        rig.view.lblMesswert[8].caption = std::string(position);
        rig.view.lblMesswert[0].caption = std::string(resistance);
        rig.device.answers = {{":ALMN?", "n= 0"}, {":BTRN?", "n= 9"}, {":BTR? 1", "stop 0"}};
        rig.stopAt(":BTR? 1", 1);
        rig.run();
        EXPECT_EQ(rig.position(), shown) << position << ", " << resistance;
    }
}

const std::map<std::string, Bytes> threeRows = {
    {":IDND?", "D 1731\x80\x01"}, {":IDNF?", "Sw 212"},  {":ALMN?", "n= 1"},    {":ALM? 1", "Re 12 kO"},
    {":ALM? 2", "no 0"},          {":ALM? 3", "no 0"},   {":ALM? 4", "no 0"},   {":BTRN?", "n= 3"},
    {":BTR? 2", "Ze 34 kO"},      {":BTR? 3", "dig 56"}, {":BTR? 4", "stop 0"},
};

TEST(KdlMonitor, APassReadsThisInThisOrderAndStopEndsAfterIt) {
    Rig rig;
    rig.device.answers = threeRows;
    rig.device.afterRequest(rig.test.desktop, ":BTR? 4", 1, [&] {
        EXPECT_EQ(rig.device.takeCommands(), (Commands{":IDND?", ":IDNF?",                        //
                                                       ":ALMN?", ":ALM? 1",                       //
                                                       ":ALMN?", ":ALM? 2", ":BTRN?", ":BTR? 2",  //
                                                       ":ALMN?", ":ALM? 3", ":BTRN?", ":BTR? 3",  //
                                                       ":ALMN?", ":ALM? 4", ":BTRN?", ":BTR? 4"}));
        EXPECT_EQ(captions({&rig.view.lblDevName, &rig.view.lblSwRegNr, &rig.view.lblSwVer,
                            &rig.view.lblSwDate, &rig.view.lblSwMb}),
                  "vekQB731-K7W-2|D 1731€\uFFFD|2.12|-|-");
        EXPECT_EQ(rig.row(0), "12||kOhm|Isolationswiderstand");
        EXPECT_EQ(rig.lamps(0), "RWW");
        // A shorter list leaves the rows below it.
        rig.device.answers[":ALM? 1"] = "no 0";
        rig.device.answers[":BTR? 1"] = "U/dV 2305";
        rig.device.answers[":BTR? 2"] = "stop 0";
        rig.stopAt(":ALM? 1", 1);
    });
    rig.run();
    EXPECT_EQ(rig.device.commands.size(), 8U);
    EXPECT_EQ(rig.row(0), "230,5||V|Spannung");
    EXPECT_EQ(rig.row(1), "34||kOhm|Impedanz");
    EXPECT_EQ(rig.row(2), "56|||Aktualisierungszähler");
    EXPECT_EQ(rig.lamps(0) + rig.lamps(2) + rig.lamps(3), "GWWGWW-WW");
    EXPECT_EQ(rig.position(), "0|~|---|---");
    EXPECT_EQ(rig.test.serial.openings.size(), 1U);
    EXPECT_FALSE(rig.test.serial.isOpen() || rig.test.program.MonitorRunning);
    EXPECT_TRUE(rig.test.desktop.boxes.empty());
}

TEST(KdlMonitor, ASilentDeviceFillsFifteenRowsAPassAndIsAskedAgain) {
    Rig rig;
    rig.stopAt(":BTRN?", 16);
    rig.run();
    EXPECT_EQ(rig.device.commands.size(), 2U + 2 * 15 * 2);
    EXPECT_EQ(rig.view.lblSwRegNr.caption.get(), "#TIMEOUT_ERROR#");
    EXPECT_EQ(rig.view.lblSwVer.caption.get(), "0.00");
    EXPECT_EQ(rig.row(14), "|||Spannung");
    EXPECT_EQ(rig.row(15), "|||");
    EXPECT_TRUE(rig.test.desktop.boxes.empty());
}

TEST(KdlMonitor, SoftwareVersions) {
    const std::pair<const char*, const char*> versions[] = {
        {"", "0.00"},        {"Sw", "0.00"},     {"Sw5", "0.05"},   {"Sw 12345", "123.45"},
        {"Sw 99b7", "0.99"}, {"sw 123", "0.00"}, {"Sw x1", "0.00"}, {"Sw 12 Sw 34", "0.12"}};
    for (const auto& [reply, version] : versions) {
        EXPECT_EQ(kdlSoftwareVersion(reply), version) << reply;
    }
}

TEST(KdlMonitor, WithoutAnAddressNothingIsSent) {
    Rig rig;
    rig.test.program.KdlAddressPrefix = blankKdlPrefix;
    rig.run();
    EXPECT_EQ(rig.test.desktop.boxes, Boxes{"Fehler|stop|ok|Keine gültige ModBus-Adresse vorhanden"});
    EXPECT_TRUE(rig.test.serial.openings.empty());
    EXPECT_FALSE(rig.test.program.MonitorRunning);
    EXPECT_EQ(rig.view.lblDevName.caption.get(), "");
}

TEST(KdlMonitor, TheProgramMayEndAndTheWindowMayCloseAtAnyMoment) {
    for (const bool ends : {true, false}) {
        int moment = 0;
        for (bool happened = true; happened;) {
            ++moment;
            happened = false;
            Rig rig;
            rig.device.answers = threeRows;
            rig.test.desktop.onEvents = [&] {
                if (rig.test.desktop.eventRounds == moment) {
                    happened = true;
                    rig.device.commands.clear();
                    rig.view.closeBoxPressed();
                    if (ends) {
                        rig.mainWindow.closeBoxPressed();
                    }
                } else if (!happened && rig.device.commands.size() >= 16) {
                    rig.test.program.MonitorRunning = false;
                }
            };
            const bool ended = rig.test.endsProgram([&] { rig.run(); });
            EXPECT_EQ(ended, ends && happened) << moment;
            EXPECT_TRUE(rig.test.desktop.boxes.empty());
            if (happened) {
                EXPECT_LE(rig.device.commands.size(), ends ? 0U : 6U) << "identification and a row at most";
                EXPECT_TRUE(ends || !rig.test.serial.isOpen());
            }
        }
        EXPECT_GT(moment, 16 * 3);
    }
}

}  // namespace
}  // namespace vek
