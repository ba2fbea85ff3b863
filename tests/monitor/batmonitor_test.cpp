#include <gtest/gtest.h>

#include "monitor/frmBatMonitor.h"
#include "pollrig.h"

namespace vek {
namespace {

constexpr const char* settings = "/daten/einstellungen.ini";
const std::string batteryFile =
    "[BATTERIE_PARA]\r\nU_MODUL=10,73\r\nON_ROFF=0\r\nROFF_VAL=20000\r\nANZ_MODULE=36\r\nMODUL_BER=5000\r\n";

sim::LineOptions playing(const char* scene, std::vector<sim::LineFault> faults) {
    sim::LineOptions options = deviceOf(9, std::move(faults));
    options.device.battery.add(scene);
    return options;
}

/// With battery data in the profile.
class BatteryRig : public PollRig<frmBatMonitor> {
  public:
    explicit BatteryRig(const char* scene = "normal", std::vector<sim::LineFault> faults = {})
        : PollRig(playing(scene, std::move(faults))) {
        test.program.ProfilePath = settings;
        file() = batteryFile;
    }

    /// Status, pole, cell voltage, module number and count.
    std::string result() {
        return captions({&monitor().Label28, &monitor().Label25, &monitor().Label33, &monitor().Label35,
                         &monitor().Label34});
    }
    std::string& file() { return test.profileFiles.files[settings]; }
};

TEST(BatteryMonitor, TellsTheStatesOfAString) {
    const std::pair<const char*, const char*> scenes[] = {
        {"normal", "G|Batteriespannung OK|Von L+ Anz. Module bis Rf|---|18,0|18,0"},
        {"open-string", "G|Strang offen|Von L  Anz. Module bis Rf|---|---|---"},
        {"voltage-fault", "R|Spannungsfehler|Von L  Anz. Module bis Rf|---|---|---"},
        {"cross-fault-plus", "R|CrossFault|Von L+ Anz. Module bis Rf|28,3|2,6|33,4"},
        {"cross-fault-minus", "R|CrossFault|Von L- Anz. Module bis Rf|-354,0|33,0|33,0"},
        {"irrelevant-cross-fault", "G|unrelevanter Crossfault|Von L+ Anz. Module bis Rf|291,7|27,2|8,8"},
        {"over-range-capacitance", "G|Batteriespannung OK|Von L- Anz. Module bis Rf|---|12,1|12,1"},
    };
    for (const auto& [scene, result] : scenes) {
        BatteryRig rig(scene);
        rig.runOneCycle();
        EXPECT_EQ(colorLetter(*rig.monitor().Label28.backColor.get()) + ("|" + rig.result()), result)
            << scene;
        const bool tooMuch = std::string_view(scene) == "over-range-capacitance";
        EXPECT_EQ(captions({&rig.monitor().lblMesswert[3], &rig.monitor().lblRange[3]}),
                  tooMuch ? "1,600|>" : "1,200| ");
        EXPECT_EQ(colorLetter(rig.monitor().LED[3].fillColor), tooMuch ? 'R' : 'G');
        EXPECT_TRUE(rig.boxless());
    }
}

TEST(BatteryMonitor, ShowsItsOwnTable) {
    BatteryRig rig;
    EXPECT_EQ(rig.visibleLamps(), "x-xx----x");
    rig.onChannel(3, [&] {
        EXPECT_FALSE(rig.monitor().cmdRunMonitor.enabled || rig.monitor().cmdClose.enabled);
        rig.monitor().cmdRunMonitor.click();  // one that was under way before the button went grey
    });
    rig.runOneCycle();
    EXPECT_EQ(rig.visibleLamps(), "x-xx-----");
    EXPECT_EQ(captions({&rig.monitor().lblSwRegNr, &rig.monitor().lblMesswert[0],
                        &rig.monitor().lblMesswert[2], &rig.monitor().lblMesswert[5]}),
              "9731D|4.000|216,0|-108,0");
    EXPECT_EQ(rig.requests(), identificationReads + readsPerCycle);
    EXPECT_TRUE(rig.monitor().cmdRunMonitor.enabled && rig.monitor().cmdClose.enabled);
    EXPECT_TRUE(rig.released());
}

TEST(BatteryMonitor, TypedDataCountAtTheNextCycle) {
    BatteryRig rig("cross-fault-plus", {fault(sim::FaultKind::Exception, 1010, 2, 3)});
    rig.onChannel(9, [&] {
        EXPECT_EQ(rig.result().front(), '|') << "the cycle's result comes after its last channel";
        rig.monitor().txtBatVoltage.text = "2.5";
        rig.monitor().txtAnzBatModul.text = "15,5";
        rig.monitor().chkRoffset.value = true;
        rig.monitor().txtRoffVal.text = "100";  // R' = 100 instead of 50
    });
    rig.runOneCycle();
    EXPECT_EQ(rig.result(), "CrossFault|Von L+ Anz. Module bis Rf|36,7|14,7|0,8");
    rig.monitor().txtAnzBatModul.text = "x";
    rig.runOneCycle();
    EXPECT_EQ(rig.result(), "CrossFault|Von L+ Anz. Module bis Rf|---|---|---");
    rig.runOneCycle();
    EXPECT_EQ(rig.result(), "---|Von L+ Anz. Module bis Rf|---|---|---") << "a status cannot be read";
    EXPECT_EQ(rig.monitor().Label28.backColor.get(), colors::grey);
}

TEST(BatteryMonitor, DataComeFromTheProfileAndGoBackUnchanged) {
    BatteryRig rig;
    rig.file() = "[BATTERIE_PARA]\r\nU_MODUL=010,730 V\r\nON_ROFF=1\r\nROFF_VAL=---\r\nMODUL_BER=-5\r\n";
    EXPECT_EQ(rig.monitor().txtBatVoltage.text.get(), "010,730 V");
    EXPECT_EQ(rig.monitor().txtAnzBatModul.text.get(), "");
    EXPECT_TRUE(rig.monitor().chkRoffset.value);
    rig.monitor().chkRoffset.value = false;
    rig.monitor().cmdClose.click();
    EXPECT_EQ(rig.file(),
              "[BATTERIE_PARA]\r\nU_MODUL=010,730 V\r\nON_ROFF=0\r\nROFF_VAL=---\r\n"
              "MODUL_BER=-5\r\nANZ_MODULE=\r\n");
    EXPECT_EQ(rig.test.program.ProfilePath, "");
    EXPECT_TRUE(rig.test.program.shell.commandsAvailable);
}

TEST(BatteryMonitor, OtherDevicesAndTheOtherBus) {
    BatteryRig other;
    other.monitor().Label33.caption = "12,0";
    other.test.program.DeviceType = 8;
    other.runOneCycle();
    EXPECT_EQ(other.result(), "|Von L  Anz. Module bis Rf|||");

    BatteryRig kdl;
    kdl.test.program.FrameFormat = kdlFrameFormat;
    kdl.runOneCycle();
    EXPECT_TRUE(kdl.test.serial.openings.empty());
    EXPECT_TRUE(kdl.monitor().cmdRunMonitor.enabled && kdl.monitor().cmdClose.enabled);
}

TEST(BatteryMonitor, EndsInTheMiddleOfAPoll) {
    BatteryRig closed;
    closed.onChannel(4, [&] {
        closed.monitor().txtModBer.text = "7";
        closed.monitor().closeBoxPressed();
    });
    closed.run();
    EXPECT_EQ(closed.requests(), identificationReads + 4 * readsPerChannel);
    EXPECT_EQ(closed.result().front(), '|');
    EXPECT_NE(closed.file().find("MODUL_BER=7\r\n"), std::string::npos);
    EXPECT_TRUE(closed.released());
    EXPECT_TRUE(closed.boxless()) << "the data are written once";

    // The end of the program is at once.
    BatteryRig ended;
    ended.monitor().txtModBer.text = "9";
    ended.onChannel(2, [&] { ended.mainWindow.closeBoxPressed(); });
    EXPECT_TRUE(ended.test.endsProgram([&] { ended.run(); }));
    EXPECT_EQ(ended.file(), batteryFile);
}

}  // namespace
}  // namespace vek
