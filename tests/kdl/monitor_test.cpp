#include "kdl/kdlmonitor.h"

#include <gtest/gtest.h>

#include "kdl/KDLBusLink.h"
#include "kdl/kdldevice.h"

namespace vek {
namespace {

using Boxes = std::vector<std::string>;
using Commands = std::vector<std::string>;
using Texts = std::vector<std::string>;

constexpr Color unset = colors::grey;

/// A monitor window without the window.
class TestView final : public KdlMonitorView {
  public:
    ControlArray<Label, 16> lblMesswert{"lblMesswert"};
    ControlArray<Label, 16> lblRange{"lblRange"};
    ControlArray<Label, 16> lblEinheit{"lblEinheit"};
    ControlArray<Label, 16> lblMessName{"lblMessName"};
    ControlArray<Shape, 16> LED{"LED"};
    Shape intern{"intern"};
    Shape extern_{"extern"};
    ControlArray<Label, 5> device{"device"};
    std::vector<FaultPosition> positions;
    bool shown = true;

    DeviceLabels deviceLabels() override { return {device[0], device[1], device[2], device[3], device[4]}; }
    ChannelRow channelRow(int slot) override {
        const auto i = static_cast<std::size_t>(slot);
        return {lblMesswert[i], lblRange[i], lblEinheit[i], lblMessName[i], LED[i]};
    }
    Shape& internalTest() override { return intern; }
    Shape& externalTest() override { return extern_; }
    bool isShown() const override { return shown; }
    void showFaultPosition(const FaultPosition& position) override { positions.push_back(position); }

    Texts row(std::size_t i) const {
        return {lblMesswert[i].caption, lblRange[i].caption, lblEinheit[i].caption, lblMessName[i].caption};
    }
};

/// The KDL monitor on a scripted device.
struct Rig {
    Rig() {
        configureKdl(test.program);
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
    TestView view;
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
    {"no alarm", "n= 0", "", "n= 9", "Re >2000 kO", "ABb", "2000 > kOhm Isolationswiderstand", "GWW"},
    {"an alarm", "n= 2", "Uo/dV 2305", "", "", "Aa", "230,5  V Überspannung", "RWW"},
    {"a number with a tail", "n= 1x", "FL-35%", "", "", "Aa", "-35  % Fehlerort", "RWW"},
    {"alarms, none here", "n= 2", "no 0", "n= 9", "Ze 12 %", "AaBb", "12  % Impedanz", "GWW"},
    {"nearly none", "n= 2", "NO 0", "", "", "Aa", "0   ", "RWW"},
    {"internal test", "n=/TI", "no 0", "n= 9", "42", "AaBb", "42  V Impedanz", "GR-"},
    {"external test", "n=/TE", "35FDE 129", "", "", "Aa", "-   Interner Gerätefehler", "R-R"},
    {"both tests", "n=/TE/TI", "Re 5 kO", "", "", "Aa", "5  kOhm Isolationswiderstand", "RR-"},
    {"another test", "n=/X n= 0", "31AER 102", "", "", "Aa", "31102   Anschlußfehler Erde", "R--"},
    {"test in small letters", "N=/TI", "", "n= 9", "42", "ABb", "42  V Impedanz", "G--"},
    {"number further on", "xn= 2", "", "n= 9", "42", "ABb", "42  V Impedanz", "GWW"},
    {"negative numbers", "n= -2", "", "n=-9", "", "AB", "9  V Impedanz", "GWW"},
    {"number without mark", "n=2", "", "n= 9", "42", "ABb", "42  V Impedanz", "G--"},
    {"no values: the count shows", "n= 0", "", "n= 0", "", "AB", "0  V Impedanz", "GWW"},
    {"end of the values", "n= 0", "", "n= 9", "stop 0", "ABb", "end", "-WW"},
    {"end among the alarms", "n= 2", "stop 0", "", "", "Aa", "end", "-WW"},
    {"end for a count", "n= 0", "", "stop 0", "", "AB", "end", "-WW"},
    {"nearly the end", "n= 0", "", "n= 9", "Stop 0", "ABb", "0  V Impedanz", "GWW"},
    {"peak", "n= 0", "", "n= 9", "peak 0", "ABb", "9 > V Netzableitkapazität", "RWW"},
    {"silence", nullptr, nullptr, nullptr, nullptr, "AB", "  V Spannung", "G--"},
    {"an alarm that is not told", "n= 2", nullptr, "", "", "Aa", "  V Spannung", "RWW"},
    {"bytes of no meaning", "\xFF\x01", "", "", "", "AB", "  V Impedanz", "G--"},
};

/// The rig's device with the case's replies for row 14, which shows "9 < V Impedanz".
void prepare(Rig& rig, const RowCase& c) {
    const std::pair<const char*, const char*> replies[] = {
        {":ALMN?", c.alarmCount}, {":ALM? 15", c.alarm}, {":BTRN?", c.valueCount}, {":BTR? 15", c.value}};
    for (const auto& [command, reply] : replies) {
        if (reply != nullptr) {
            rig.device.answers[command] = reply;
        }
    }
    const ChannelRow row = rig.view.channelRow(14);
    row.lblMesswert.caption = "9";
    row.lblRange.caption = "<";
    row.lblEinheit.caption = "V";
    row.lblMessName.caption = "Impedanz";
    KdlOpenPort(rig.test.program);
}

char lampLetter(const Shape& lamp) {
    const std::pair<Color, char> letters[] = {{colors::red, 'R'}, {colors::green, 'G'}, {colors::white, 'W'}};
    for (const auto& [color, letter] : letters) {
        if (lamp.fillColor.get() == color) {
            return letter;
        }
    }
    return '-';
}

TEST(KdlMonitorRow, AnAlarmElseAnOperatingValue) {
    const std::map<char, std::string> commands = {
        {'A', ":ALMN?"}, {'a', ":ALM? 15"}, {'B', ":BTRN?"}, {'b', ":BTR? 15"}};
    for (const RowCase& c : rowCases) {
        Rig rig;
        prepare(rig, c);
        const bool ends = c.row == std::string("end");
        EXPECT_EQ(KdlReadMonitorRow(rig.test.program, rig.view, 14), ends) << c.what;
        Commands asked;
        for (const char letter : std::string_view(c.asked)) {
            asked.push_back(commands.at(letter));
        }
        EXPECT_EQ(rig.device.commands, asked) << c.what;
        const Texts row = rig.view.row(14);
        EXPECT_EQ(row[0] + ' ' + row[1] + ' ' + row[2] + ' ' + row[3], ends ? "9 < V Impedanz" : c.row)
            << c.what;
        EXPECT_EQ((std::string{lampLetter(rig.view.LED[14]), lampLetter(rig.view.intern),
                               lampLetter(rig.view.extern_)}),
                  c.lamps)
            << c.what;
    }
}

struct PositionCase {
    int deviceType;
    const char* position;    ///< what row 8 shows
    const char* resistance;  ///< what row 0 shows
    FaultPosition shown;
};

TEST(KdlMonitor, FaultPositionFromWhatTheRowsShow) {
    const PositionCase cases[] = {
        {1, "", "100", {0, "~", "---", "---"}},
        {1, "-", "100", {0, "~", "---", "---"}},
        {1, "0", "100", {0, "~", "200", "200"}},
        {1, "15", "100", {15, "~", "235", "174"}},
        {1, "-15", "100", {-15, "~", "174", "235"}},
        {1, "15,5", "100", {16, "+", "237", "173"}},
        {1, "-15,5", "100", {-16, "-", "173", "237"}},
        {1, "50", "100", {50, "+", "400", "133"}},
        {1, "100", "100", {100, "+", ">4000", "100"}},
        {1, "-100", "100", {-100, "-", "100", ">4000"}},
        {10, "-100", "100", {-100, "-", "100", ">2000"}},
        {1, "-20", "5", {-20, "-", "8", "12"}},
        {1, "-20", "7", {-20, "-", "12", "18"}},
        {1, "0", "2000", {0, "~", ">4000", ">4000"}},
        {1, "0", "1999", {0, "~", "3998", "3998"}},
        {9, "50", "100", {50, "+", "---", "---"}},
        {1, "0", "", {0, "~", "0", "0"}},
        {1, "0", "-", {0, "~", "0", "0"}},
        {1, "100", "0", {100, "+", ">4000", "0"}},
        {1, "50", "123456789012345678901234567890", {50, "+", ">4000", ">4000"}},
    };
    for (const PositionCase& c : cases) {
        Rig rig;
        rig.test.program.DeviceType = static_cast<std::uint8_t>(c.deviceType);
        rig.view.lblMesswert[8].caption = std::string(c.position);
        rig.view.lblMesswert[0].caption = std::string(c.resistance);
        rig.device.answers = {{":ALMN?", "n= 0"}, {":BTRN?", "n= 9"}, {":BTR? 1", "stop 0"}};
        rig.stopAt(":BTR? 1", 1);
        rig.run();
        ASSERT_EQ(rig.view.positions.size(), 1U) << c.position;
        const FaultPosition& shown = rig.view.positions[0];
        EXPECT_EQ(shown, c.shown) << c.deviceType << ": " << c.position << ' ' << c.resistance << " gives "
                                  << shown.slider << shown.sign << shown.reNegative << shown.rePositive;
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
    rig.stopAt(":ALM? 1", 1);
    rig.run();
    EXPECT_EQ(rig.device.commands, (Commands{":IDND?", ":IDNF?",                        //
                                             ":ALMN?", ":ALM? 1",                       //
                                             ":ALMN?", ":ALM? 2", ":BTRN?", ":BTR? 2",  //
                                             ":ALMN?", ":ALM? 3", ":BTRN?", ":BTR? 3",  //
                                             ":ALMN?", ":ALM? 4", ":BTRN?", ":BTR? 4"}));
    Texts labels;
    for (const Label& label : rig.view.device) {
        labels.push_back(label.caption);
    }
    EXPECT_EQ(labels, (Texts{"vekQB731-K7W-2", "D 1731€\uFFFD", "2.12", "-", "-"}));
    EXPECT_EQ(rig.view.row(0), (Texts{"12", "", "kOhm", "Isolationswiderstand"}));
    EXPECT_EQ(rig.view.row(1), (Texts{"34", "", "kOhm", "Impedanz"}));
    EXPECT_EQ(rig.view.row(2), (Texts{"56", "", "", "Aktualisierungszähler"}));
    EXPECT_EQ(rig.view.LED[0].fillColor.get(), colors::red);
    EXPECT_EQ(rig.view.LED[2].fillColor.get(), colors::green);
    EXPECT_EQ(rig.view.LED[3].fillColor.get(), unset);
    EXPECT_EQ(rig.view.positions, std::vector<FaultPosition>(1, {0, "~", "---", "---"}));
    EXPECT_EQ(rig.test.serial.openings.size(), 1U);
    EXPECT_FALSE(rig.test.serial.isOpen());
    EXPECT_FALSE(rig.test.program.MonitorRunning);
    EXPECT_TRUE(rig.test.desktop.boxes.empty());
}

TEST(KdlMonitor, AShorterListLeavesTheRowsBelowIt) {
    Rig rig;
    rig.device.answers = threeRows;
    rig.device.afterRequest(rig.test.desktop, ":BTR? 4", 1, [&] {
        rig.device.answers[":ALM? 1"] = "no 0";
        rig.device.answers[":BTR? 1"] = "U/dV 2305";
        rig.device.answers[":BTR? 2"] = "stop 0";
        rig.stopAt(":BTR? 2", 1);
    });
    rig.run();
    EXPECT_EQ(rig.view.row(0), (Texts{"230,5", "", "V", "Spannung"}));
    EXPECT_EQ(rig.view.LED[0].fillColor.get(), colors::green);
    EXPECT_EQ(rig.view.row(1), (Texts{"34", "", "kOhm", "Impedanz"}));
    EXPECT_EQ(rig.view.row(2), (Texts{"56", "", "", "Aktualisierungszähler"}));
    EXPECT_EQ(rig.view.positions.size(), 2U);
}

TEST(KdlMonitor, ASilentDeviceFillsFifteenRowsAPassAndIsAskedAgain) {
    Rig rig;
    rig.stopAt(":BTRN?", 16);
    rig.run();
    EXPECT_EQ(rig.device.commands.size(), 2U + 2 * 15 * 2);
    EXPECT_EQ(rig.view.device[1].caption.get(), "#TIMEOUT_ERROR#");
    EXPECT_EQ(rig.view.device[2].caption.get(), "0.00");
    EXPECT_EQ(rig.view.row(14), (Texts{"", "", "", "Spannung"}));
    EXPECT_EQ(rig.view.row(15), (Texts{"", "", "", ""}));
    EXPECT_EQ(rig.view.positions.size(), 2U);
    EXPECT_TRUE(rig.test.desktop.boxes.empty());
}

TEST(KdlMonitor, WithoutAnAddressNothingIsSent) {
    Rig rig;
    rig.test.program.KdlAddressPrefix = blankKdlPrefix;
    rig.run();
    EXPECT_EQ(rig.test.desktop.boxes, Boxes{"Fehler|stop|ok|Keine gültige ModBus-Adresse vorhanden"});
    EXPECT_TRUE(rig.test.serial.openings.empty());
    EXPECT_FALSE(rig.test.program.MonitorRunning);
    EXPECT_EQ(rig.view.device[0].caption.get(), "");
}

/// Has `event` happen at the n-th chance for it, for every n until a pass is over before. Returns the number
/// of chances.
template <class Event, class Check>
int atEveryMoment(Event event, Check check) {
    for (int moment = 1;; ++moment) {
        Rig rig;
        rig.device.answers = threeRows;
        std::size_t sent = 0;
        bool happened = false;
        rig.test.desktop.onEvents = [&] {
            if (rig.test.desktop.eventRounds == moment) {
                sent = rig.device.commands.size();
                happened = true;
                event(rig);
            } else if (rig.device.commands.size() >= 16) {
                rig.test.program.MonitorRunning = false;
            }
        };
        const bool ended = rig.test.endsProgram([&] { rig.run(); });
        if (!happened) {
            return moment - 1;
        }
        check(rig, ended, rig.device.commands.size() - sent);
    }
}

TEST(KdlMonitor, TheProgramMayEndAtAnyMoment) {
    const int moments = atEveryMoment([](Rig& rig) { rig.mainWindow.closeBoxPressed(); },
                                      [](const Rig& rig, bool ended, std::size_t sentAfter) {
                                          EXPECT_TRUE(ended);
                                          EXPECT_EQ(sentAfter, 0U);
                                          EXPECT_TRUE(rig.test.desktop.boxes.empty());
                                      });
    EXPECT_GT(moments, 16 * 3);
}

TEST(KdlMonitor, TheWindowMayCloseAtAnyMoment) {
    const int moments = atEveryMoment([](Rig& rig) { rig.view.shown = false; },
                                      [](const Rig& rig, bool ended, std::size_t sentAfter) {
                                          EXPECT_FALSE(ended);
                                          EXPECT_LE(sentAfter, 6U) << "identification and one row at most";
                                          EXPECT_FALSE(rig.test.serial.isOpen());
                                          EXPECT_FALSE(rig.test.program.MonitorRunning);
                                      });
    EXPECT_GT(moments, 16 * 3);
}

}  // namespace
}  // namespace vek
