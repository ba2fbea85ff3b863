#include <gtest/gtest.h>

#include "monitor/frmBatMonitor.h"
#include "support/simulatedpeer.h"
#include "support/testprogram.h"

namespace vek {
namespace {

using Texts = std::vector<std::string>;

constexpr const char* settings = "/daten/einstellungen.ini";
const std::string batteryFile =
    "[BATTERIE_PARA]\r\nU_MODUL=10,73\r\nON_ROFF=0\r\nROFF_VAL=20000\r\nANZ_MODULE=36\r\nMODUL_BER=5000\r\n";

sim::LineOptions device(const char* scene, std::vector<sim::LineFault> faults = {}) {
    sim::LineOptions options;
    options.device.type = 9;
    options.device.battery.add(scene);
    options.faults = std::move(faults);
    return options;
}

/// A battery monitor on a simulated battery device, both at address 3, with battery data in the profile.
class BatteryRig {
  public:
    explicit BatteryRig(const sim::LineOptions& options = device("normal"))
        : peer(test.serial, test.clock, options) {
        test.configure();
        test.program.DeviceType = 9;
        test.program.DeviceName = "vekQH731-K7-2";
        test.program.ProfilePath = settings;
        test.profileFiles.files[settings] = batteryFile;
    }

    TestProgram test{NumberLocale{.decimalPoint = ",", .groupSeparator = "."}};
    SimulatedPeer peer;
    LastWindow& mainWindow = test.open<LastWindow>();

    /// Opened at the first use, so that a test can set up the program before.
    frmBatMonitor& monitor() {
        if (monitor_ == nullptr) {
            monitor_ = &test.open<frmBatMonitor>();
        }
        return *monitor_;
    }

    /// Runs the poll; `event` happens while the events after the n-th channel (from 1) are processed.
    void run(int n, const std::function<void()>& event) {
        test.desktop.eventRounds = 0;
        test.desktop.onEvents = [this, n, event] {
            if (test.desktop.eventRounds == n) {
                event();
            }
        };
        monitor().cmdRunMonitor.click();
    }

    void runOneCycle() {
        run(9, [this] { monitor().cmdStop.click(); });
    }

    Texts result() {
        return {monitor().Label28.caption, monitor().Label25.caption, monitor().Label33.caption,
                monitor().Label35.caption, monitor().Label34.caption};
    }

    std::string visibleIndicators() {
        std::string visible;
        for (const Shape& lamp : monitor().LED) {
            visible += lamp.visible ? 'x' : '-';
        }
        return visible;
    }

    const std::string& file() { return test.profileFiles.files[settings]; }

  private:
    frmBatMonitor* monitor_ = nullptr;
};

TEST(BatteryMonitor, TellsTheStatesOfAString) {
    struct Row {
        const char* scene;
        Color color;
        Texts result;
    };
    const Row rows[] = {
        {"normal",
         colors::green,
         {"Batteriespannung OK", "Von L+ Anz. Module bis Rf", "---", "18,0", "18,0"}},
        {"open-string", colors::green, {"Strang offen", "Von L  Anz. Module bis Rf", "---", "---", "---"}},
        {"voltage-fault", colors::red, {"Spannungsfehler", "Von L  Anz. Module bis Rf", "---", "---", "---"}},
        {"cross-fault-plus", colors::red, {"CrossFault", "Von L+ Anz. Module bis Rf", "28,3", "2,6", "33,4"}},
        {"cross-fault-minus",
         colors::red,
         {"CrossFault", "Von L- Anz. Module bis Rf", "-354,0", "33,0", "33,0"}},
        {"irrelevant-cross-fault",
         colors::green,
         {"unrelevanter Crossfault", "Von L+ Anz. Module bis Rf", "291,7", "27,2", "8,8"}},
        {"over-range-capacitance",
         colors::green,
         {"Batteriespannung OK", "Von L- Anz. Module bis Rf", "---", "12,1", "12,1"}},
    };
    for (const Row& row : rows) {
        BatteryRig rig(device(row.scene));
        rig.runOneCycle();
        EXPECT_EQ(rig.result(), row.result) << row.scene;
        EXPECT_EQ(rig.monitor().Label28.backColor.get(), row.color) << row.scene;
        const bool tooMuch = std::string_view(row.scene) == "over-range-capacitance";
        EXPECT_EQ(rig.monitor().lblMesswert[3].caption.get(), tooMuch ? "1,600" : "1,200");
        EXPECT_EQ(rig.monitor().lblRange[3].caption.get(), tooMuch ? ">" : " ");
        EXPECT_EQ(rig.monitor().LED[3].fillColor.get(), tooMuch ? colors::red : colors::green);
        EXPECT_TRUE(rig.test.desktop.boxes.empty());
    }
}

TEST(BatteryMonitor, ShowsItsOwnTable) {
    BatteryRig rig;
    rig.peer.line.device().pin(1, {0.0F, 0x0502, 0});
    EXPECT_EQ(rig.monitor().caption.get(), "ModBus RTU - Monitor");
    Texts names;
    for (const Label& name : rig.monitor().Label7) {
        names.push_back(name.caption);
    }
    EXPECT_EQ(names, (Texts{"Re Voralarm/Alarm", "", "Netzspannung", "> Ce", "Udc L+ -> PE", "Udc L- -> PE",
                            "Fehlerort in %", "", "Aktualisierungszähler"}));
    EXPECT_EQ(rig.visibleIndicators(), "x-xx----x");
    rig.runOneCycle();
    EXPECT_EQ(rig.visibleIndicators(), "x-xx-----");
    EXPECT_EQ(rig.monitor().lblMesswert[0].caption.get(), "4.000");
    EXPECT_EQ(rig.monitor().lblMesswert[2].caption.get(), "216,0");
    EXPECT_EQ(rig.monitor().lblMesswert[5].caption.get(), "-108,0");
    EXPECT_EQ(rig.monitor().lblSwRegNr.caption.get(), "9731D");
    EXPECT_EQ(rig.test.serial.written.size(), 6U + 27U);
}

TEST(BatteryMonitor, TypedDataCountAtTheNextCycle) {
    BatteryRig rig(device("cross-fault-plus"));
    rig.run(9, [&] {
        EXPECT_EQ(rig.result()[0], "") << "the cycle's result comes after its last channel";
        rig.monitor().txtBatVoltage.text = "2.5";
        rig.monitor().txtAnzBatModul.text = "15,5";
        rig.monitor().chkRoffset.value = true;
        rig.monitor().txtRoffVal.text = "100";  // R' = 100 instead of 50
        rig.monitor().cmdStop.click();
    });
    EXPECT_EQ(rig.result(), (Texts{"CrossFault", "Von L+ Anz. Module bis Rf", "36,7", "14,7", "0,8"}));
    rig.monitor().txtAnzBatModul.text = "x";
    rig.runOneCycle();
    EXPECT_EQ(rig.result(), (Texts{"CrossFault", "Von L+ Anz. Module bis Rf", "---", "---", "---"}));
}

TEST(BatteryMonitor, UnreadableChannelsLeaveNoStaleState) {
    const sim::LineFault noStatus{.kind = sim::FaultKind::Exception, .amount = 2, .reg = 1010, .from = 2};
    BatteryRig rig(device("cross-fault-plus", {noStatus}));
    rig.runOneCycle();
    EXPECT_EQ(rig.result()[0], "CrossFault");
    rig.runOneCycle();
    EXPECT_EQ(rig.result(), (Texts{"---", "Von L+ Anz. Module bis Rf", "---", "---", "---"}));
    EXPECT_EQ(rig.monitor().Label28.backColor.get(), colors::grey);
}

TEST(BatteryMonitor, DataComeFromTheProfileAndGoBackUnchanged) {
    BatteryRig rig;
    rig.test.profileFiles.files[settings] =
        "[BATTERIE_PARA]\r\nU_MODUL=010,730 V\r\nON_ROFF=1\r\nROFF_VAL=---\r\nMODUL_BER=-5\r\n";
    EXPECT_EQ(rig.monitor().txtBatVoltage.text.get(), "010,730 V");
    EXPECT_EQ(rig.monitor().txtAnzBatModul.text.get(), "");
    EXPECT_EQ(rig.monitor().txtModBer.text.get(), "-5");
    EXPECT_EQ(rig.monitor().txtRoffVal.text.get(), "---");
    EXPECT_TRUE(rig.monitor().chkRoffset.value);
    rig.monitor().chkRoffset.value = false;
    rig.runOneCycle();
    rig.monitor().cmdClose.click();
    EXPECT_EQ(rig.file(),
              "[BATTERIE_PARA]\r\nU_MODUL=010,730 V\r\nON_ROFF=0\r\nROFF_VAL=---\r\n"
              "MODUL_BER=-5\r\nANZ_MODULE=\r\n");
    EXPECT_EQ(rig.test.program.ProfilePath, "");
    EXPECT_EQ(rig.visibleIndicators(), "xxxxxxxx-");
    EXPECT_TRUE(rig.test.program.shell.commandsAvailable);
}

TEST(BatteryMonitor, WritesANewFileInItsOwnOrder) {
    BatteryRig rig;
    rig.monitor();
    rig.test.profileFiles.files.clear();
    rig.monitor().closeBoxPressed();
    EXPECT_EQ(rig.file(),
              "[BATTERIE_PARA]\r\nANZ_MODULE=36\r\nU_MODUL=10,73\r\nMODUL_BER=5000\r\n"
              "ROFF_VAL=20000\r\nON_ROFF=0\r\n");
}

TEST(BatteryMonitor, ItsButtonsWhileItPolls) {
    BatteryRig rig;
    rig.run(3, [&] {
        EXPECT_FALSE(rig.monitor().cmdRunMonitor.enabled);
        EXPECT_FALSE(rig.monitor().cmdClose.enabled);
        EXPECT_TRUE(rig.monitor().cmdStop.enabled);
        rig.monitor().cmdRunMonitor.click();  // one that was under way before the button went grey
        rig.monitor().cmdStop.click();
    });
    EXPECT_TRUE(rig.monitor().cmdRunMonitor.enabled);
    EXPECT_TRUE(rig.monitor().cmdClose.enabled);
    EXPECT_EQ(rig.test.serial.written.size(), 6U + 27U);
    EXPECT_FALSE(rig.test.serial.isOpen());
}

TEST(BatteryMonitor, OtherDevicesAndTheOtherBus) {
    BatteryRig other;
    other.monitor().Label33.caption = "12,0";
    other.test.program.DeviceType = 8;
    other.runOneCycle();
    EXPECT_EQ(other.result(), (Texts{"", "Von L  Anz. Module bis Rf", "", "", ""}));

    BatteryRig kdl;
    kdl.test.program.FrameFormat = kdlFrameFormat;
    EXPECT_EQ(kdl.visibleIndicators(), "xxxxxxxxx");
    EXPECT_EQ(kdl.monitor().Label7[0].caption.get(), "");
    kdl.runOneCycle();
    EXPECT_TRUE(kdl.test.serial.openings.empty());
    EXPECT_TRUE(kdl.monitor().cmdRunMonitor.enabled);
    EXPECT_TRUE(kdl.monitor().cmdClose.enabled);

    BatteryRig nowhere;
    nowhere.test.program.DeviceAddress = 91;
    nowhere.runOneCycle();
    EXPECT_EQ(nowhere.test.desktop.boxes, Texts{"Fehler|stop|ok|Keine gültige ModBus-Adresse vorhanden"});
}

TEST(BatteryMonitor, EndsInTheMiddleOfAPoll) {
    BatteryRig closed;
    closed.run(4, [&] {
        closed.monitor().txtModBer.text = "7";
        closed.monitor().closeBoxPressed();
    });
    EXPECT_EQ(closed.test.serial.written.size(), 6U + 12U);
    EXPECT_EQ(closed.result()[0], "");
    EXPECT_NE(closed.file().find("MODUL_BER=7\r\n"), std::string::npos);
    EXPECT_FALSE(closed.test.program.lineInUse);
    EXPECT_TRUE(closed.test.desktop.boxes.empty()) << "the data are written once";

    // The user gives up after a time-out: every window closes in order, so the data are kept.
    BatteryRig given(device("normal", {{.kind = sim::FaultKind::Silence, .reg = 1004}}));
    given.monitor().txtModBer.text = "8";
    given.test.desktop.answers = {MessageAnswer::Cancel};
    EXPECT_TRUE(given.test.endsProgram([&] { given.runOneCycle(); }));
    EXPECT_EQ(given.test.desktop.boxes, (Texts{crcDialog, farewell}));
    EXPECT_NE(given.file().find("MODUL_BER=8\r\n"), std::string::npos);

    // The end of the program is at once.
    BatteryRig ended;
    ended.monitor().txtModBer.text = "9";
    EXPECT_TRUE(ended.test.endsProgram([&] { ended.run(2, [&] { ended.mainWindow.closeBoxPressed(); }); }));
    EXPECT_EQ(ended.file(), batteryFile);
}

}  // namespace
}  // namespace vek
