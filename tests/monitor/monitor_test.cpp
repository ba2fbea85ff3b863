#include <gtest/gtest.h>

#include <cctype>
#include <map>

#include "kdl/kdldevice.h"
#include "monitor/frmMbMonitor.h"
#include "support/hexbytes.h"
#include "support/simulatedpeer.h"
#include "support/testprogram.h"

namespace vek {
namespace {

using Boxes = std::vector<std::string>;
using Texts = std::vector<std::string>;

constexpr std::size_t identificationReads = 6;
constexpr std::size_t readsPerChannel = 3;
constexpr std::size_t readsPerCycle = 9 * readsPerChannel;

sim::LineFault fault(sim::FaultKind kind, std::uint16_t reg, double amount = 0, unsigned from = 1) {
    return {.kind = kind, .amount = amount, .reg = reg, .from = from};
}

sim::LineOptions device(int type, std::vector<sim::LineFault> faults) {
    sim::LineOptions options;
    options.device.type = type;
    options.faults = std::move(faults);
    return options;
}

/// A monitor window on a simulated device of the type, both at address 3.
class MonitorRig {
  public:
    explicit MonitorRig(int deviceType, std::vector<sim::LineFault> faults = {})
        : peer_(test.serial, test.clock, device(deviceType, std::move(faults))) {
        test.configure();
        test.program.DeviceType = static_cast<std::uint8_t>(deviceType);
        test.program.DeviceName = peer_.line.device().name();
    }

    TestProgram test{NumberLocale{.decimalPoint = ",", .groupSeparator = "."}};
    LastWindow& mainWindow = test.open<LastWindow>();

    /// Opened at the first use, so that a test can set up the program before.
    frmMbMonitor& monitor() {
        if (monitor_ == nullptr) {
            monitor_ = &test.open<frmMbMonitor>();
        }
        return *monitor_;
    }

    void pin(std::size_t slot, float value, std::uint16_t status, std::uint16_t description) {
        peer_.line.device().pin(slot, {value, status, description});
    }

    /// Runs `event` while the events after the n-th channel (from 1) are processed.
    void onChannel(int n, std::function<void()> event) { events_.emplace_back(n, std::move(event)); }

    void run() {
        test.desktop.onEvents = [this] {
            for (const auto& [n, event] : events_) {
                if (n == test.desktop.eventRounds) {
                    event();
                }
            }
        };
        monitor().cmdRunMonitor.click();
    }

    void stopAfter(int channels) {
        onChannel(channels, [this] { monitor().cmdStop.click(); });
    }

    Texts row(std::size_t slot) {
        return {monitor().lblMesswert[slot].caption, monitor().lblRange[slot].caption,
                monitor().lblEinheit[slot].caption, monitor().lblMessName[slot].caption};
    }

    Texts identification() {
        return {monitor().lblDevName.caption, monitor().lblSwRegNr.caption, monitor().lblSwVer.caption,
                monitor().lblSwDate.caption, monitor().lblSwMb.caption};
    }

    Texts faultPosition() {
        return {std::to_string(monitor().Slider1.value), monitor().lblFehlerVorzeichen.caption,
                monitor().lblReNeg.caption, monitor().lblRePos.caption};
    }

    std::size_t requests() const { return test.serial.written.size(); }

  private:
    SimulatedPeer peer_;
    frmMbMonitor* monitor_ = nullptr;
    std::vector<std::pair<int, std::function<void()>>> events_;
};

void collectButtons(const Box& box, std::vector<const Button*>& buttons) {
    if (const auto* button = dynamic_cast<const Button*>(box.control)) {
        buttons.push_back(button);
    }
    for (const Box& part : box.parts) {
        collectButtons(part, buttons);
    }
}

TEST(Monitor, EveryLetterPressesOneButton) {
    MonitorRig rig(1);
    std::vector<const Button*> buttons;
    collectButtons(rig.monitor().layout(), buttons);
    ASSERT_EQ(buttons.size(), 8U);
    std::map<int, std::string> owners;
    for (const Button* button : buttons) {
        const auto [owner, isFree] = owners.emplace(std::toupper(button->mnemonic), button->name);
        EXPECT_TRUE(isFree) << button->name << " has the letter of " << owner->second;
    }
}

TEST(Monitor, AWholeCycleFillsEveryField) {
    MonitorRig rig(1);
    rig.pin(0, 1'234'400.0F, 0x0542, 71);
    rig.pin(1, 0.0F, 0x0102, 86);
    rig.pin(2, 229.6F, 0x0004, 76);
    rig.pin(3, 1.5e-6F, 0x0088, 82);
    rig.pin(4, 115.2F, 0x0204, 219);
    rig.pin(5, -1499.7F, 0x0404, 0);
    rig.pin(6, 50.0F, 0x0005, 7);
    rig.pin(7, 2000.0F, 0x00C2, 84);
    rig.pin(8, 1234567.0F, 0x4313, 65535);
    const Color untouched = rig.monitor().LED[8].fillColor;
    rig.stopAfter(9);
    rig.run();

    EXPECT_EQ(rig.identification(), (Texts{"vekQB731-K7W-2", "1731D", "V2.12", "7.11.2019", "V1.05"}));
    const Texts rows[] = {
        {"1.234", "<", "kOhm", "Isolationsfehler Re"},
        {"---", " ", "kOhm", "Isolationsfehler Ze"},
        {"230", " ", "V", "Spannung"},
        {"1,500", ">", "µF", "Kapazität Ce"},
        {"115", " ", "V", "-"},
        {"-1.500", " ", "V", " "},
        {"50", " ", "%", " "},
        {"---", "-", "kOhm", "Überlast"},
        {"1234567", " ", " ", "-"},
    };
    const Color lamps[] = {colors::red,  colors::yellow, colors::green, colors::green, colors::magenta,
                           colors::cyan, colors::green,  colors::green, untouched};
    for (std::size_t slot = 0; slot < std::size(rows); ++slot) {
        EXPECT_EQ(rig.row(slot), rows[slot]) << slot;
        EXPECT_EQ(rig.monitor().LED[slot].fillColor.get(), lamps[slot]) << slot;
    }
    EXPECT_EQ(rig.row(9), (Texts{"", "", "", ""}));
    EXPECT_EQ(rig.monitor().LED_TEST_INTERN.fillColor.get(), colors::red) << "of the last channel";
    EXPECT_EQ(rig.monitor().LED_TEST_EXTERN.fillColor.get(), colors::green);
    // 200 * 1234 / 50 reaches what the type can tell, 200 * 1234 / 150 is 1645.3.
    EXPECT_EQ(rig.faultPosition(), (Texts{"50", "+", ">4000", "1645"}));
    EXPECT_TRUE(rig.test.desktop.boxes.empty());
}

TEST(Monitor, ReadsTheseRegistersInThisOrder) {
    MonitorRig rig(1);
    rig.stopAfter(1);
    rig.run();
    std::vector<std::string> expected;
    for (const char* registerAndCount :
         {"265C0001", "265D0001", "265E0001", "265F0001", "26600001", "26610001"}) {
        expected.emplace_back(registerAndCount);
    }
    for (const char* registerAndCount :
         {"03E80002", "03EA0001", "03EB0001", "03EC0002", "03EE0001", "03EF0001", "03F00002",
          "03F20001", "03F30001", "03F40002", "03F60001", "03F70001", "03F80002", "03FA0001",
          "03FB0001", "03FC0002", "03FE0001", "03FF0001", "04000002", "04020001", "04030001",
          "04040002", "04060001", "04070001", "04080002", "040A0001", "040B0001"}) {
        expected.emplace_back(registerAndCount);
    }
    ASSERT_EQ(rig.requests(), expected.size()) << "stop ends after the cycle under way";
    for (std::size_t index = 0; index < expected.size(); ++index) {
        EXPECT_EQ(rig.test.serial.written[index].substr(0, 6), fromHex("03 03" + expected[index])) << index;
    }
    EXPECT_EQ(rig.test.serial.openings.size(), 1U);
    EXPECT_FALSE(rig.test.serial.isOpen());
    EXPECT_FALSE(rig.test.program.MonitorRunning);
}

TEST(Monitor, CycleFollowsCycleUntilStopped) {
    MonitorRig rig(1);
    rig.stopAfter(20);
    rig.run();
    EXPECT_EQ(rig.requests(), identificationReads + 3 * readsPerCycle);
    EXPECT_EQ(rig.test.desktop.eventRounds, 27) << "events after every channel";

    // Once more: the window starts over with the identification.
    rig.stopAfter(28);
    rig.monitor().cmdRunMonitor.click();
    EXPECT_EQ(rig.requests(), 2 * identificationReads + 4 * readsPerCycle);
}

TEST(Monitor, OnlyStopCanBePressedWhileItPolls) {
    MonitorRig rig(1);
    const auto enabled = [&] {
        std::string keys;
        for (const Button* button :
             {&rig.monitor().cmdRunMonitor, &rig.monitor().cmdStop, &rig.monitor().cmdClose,
              &rig.monitor().cmdCal, &rig.monitor().cmdTest, &rig.monitor().cmdCLR, &rig.monitor().cmdFACT,
              &rig.monitor().cmdFACTall}) {
            keys += button->enabled ? 'x' : '-';
        }
        return keys;
    };
    EXPECT_EQ(enabled(), "xxxxxxxx");
    rig.onChannel(3, [&] {
        EXPECT_EQ(enabled(), "-x------");
        EXPECT_TRUE(rig.test.program.MonitorRunning);
        EXPECT_TRUE(rig.test.serial.isOpen());
        // A click that was under way before the buttons went grey.
        rig.monitor().cmdRunMonitor.click();
        rig.monitor().cmdTest.click();
        rig.monitor().cmdCal.click();
    });
    rig.stopAfter(9);
    rig.run();
    EXPECT_EQ(enabled(), "xxxxxxxx");
    EXPECT_EQ(rig.requests(), identificationReads + readsPerCycle);
    EXPECT_TRUE(rig.test.desktop.boxes.empty());
}

TEST(Monitor, ClosedInTheMiddleOfAPollItEndsAtOnce) {
    MonitorRig rig(1);
    rig.onChannel(4, [&] { rig.monitor().closeBoxPressed(); });
    rig.run();
    EXPECT_EQ(rig.requests(), identificationReads + 4 * readsPerChannel);
    EXPECT_FALSE(rig.test.serial.isOpen());
    EXPECT_FALSE(rig.test.program.MonitorRunning);
    EXPECT_FALSE(rig.test.program.lineInUse);
    EXPECT_TRUE(rig.test.program.shell.commandsAvailable);
    EXPECT_EQ(rig.monitor().lblRePos.caption.get(), "");
    rig.test.program.windows.collect();
}

TEST(Monitor, TheProgramEndsInTheMiddleOfAPoll) {
    MonitorRig rig(1);
    rig.onChannel(2, [&] { rig.mainWindow.closeBoxPressed(); });
    rig.monitor();
    EXPECT_TRUE(rig.test.endsProgram([&] { rig.run(); }));
    EXPECT_EQ(rig.requests(), identificationReads + 2 * readsPerChannel);
    EXPECT_EQ(rig.row(2), (Texts{"", "", "", ""}));
    EXPECT_TRUE(rig.test.desktop.boxes.empty());
}

TEST(Monitor, CancelInTheCrcDialogEndsTheProgram) {
    MonitorRig rig(1, {fault(sim::FaultKind::Silence, 1006)});
    rig.test.desktop.answers = {MessageAnswer::Cancel};
    rig.monitor();
    EXPECT_TRUE(rig.test.endsProgram([&] { rig.run(); }));
    EXPECT_EQ(rig.test.desktop.boxes, (Boxes{crcDialog, farewell}));
    EXPECT_EQ(rig.requests(), identificationReads + readsPerChannel + 2);
    EXPECT_FALSE(rig.test.serial.isOpen());
    EXPECT_EQ(rig.test.host.log.back(), "-lastWindow");
}

TEST(Monitor, StopEndsAPollOfASilentDeviceWithTheChannel) {
    sim::LineFault silence;
    silence.kind = sim::FaultKind::Silence;
    MonitorRig rig(1, {silence});
    rig.test.desktop.onMessageBox = [&] { rig.monitor().cmdStop.click(); };
    rig.run();
    const std::size_t identification = 6;
    EXPECT_EQ(rig.test.desktop.boxes.size(), identification + readsPerChannel) << "one box for each request";
    EXPECT_EQ(rig.monitor().lblMesswert[0].caption.get(), "---");
    EXPECT_FALSE(rig.test.serial.isOpen());
    EXPECT_TRUE(rig.monitor().cmdRunMonitor.enabled);
}

TEST(Monitor, AddressesOutside3To90AreRefused) {
    for (const int address : {0, 2, 91, 247}) {
        MonitorRig rig(1);
        rig.test.program.DeviceAddress = static_cast<std::uint8_t>(address);
        rig.run();
        EXPECT_EQ(rig.test.desktop.boxes, Boxes{"Fehler|stop|ok|Keine gültige ModBus-Adresse vorhanden"})
            << address;
        EXPECT_TRUE(rig.test.serial.openings.empty());
        EXPECT_FALSE(rig.test.program.MonitorRunning);
        EXPECT_TRUE(rig.monitor().cmdRunMonitor.enabled);
        EXPECT_EQ(rig.monitor().lblDevName.caption.get(), "");
    }
    for (const int address : {3, 90}) {
        MonitorRig rig(1);
        rig.test.program.DeviceAddress = static_cast<std::uint8_t>(address);
        rig.stopAfter(1);
        rig.run();
        EXPECT_EQ(rig.test.serial.written.front()[0], static_cast<char>(address));
    }
}

TEST(Monitor, IdentificationThatCannotBeRead) {
    MonitorRig rig(1, {fault(sim::FaultKind::Exception, 9820, 2), fault(sim::FaultKind::Silence, 9821),
                       fault(sim::FaultKind::Silence, 9823), fault(sim::FaultKind::Exception, 9825, 4)});
    rig.stopAfter(1);
    rig.run();
    EXPECT_EQ(rig.identification(), (Texts{"vekQB731-K7W-2", "---", "CRC_TIMEOUT", "CRC_TIMEOUT", "---"}));
    EXPECT_EQ(rig.test.desktop.boxes, (Boxes{crcDialog, crcDialog, "MODBUS-Fehler|stop|ok|Interner Fehler"}));
    EXPECT_EQ(rig.requests(), identificationReads + readsPerCycle) << "the poll goes on";
}

TEST(Monitor, AChannelThatFailsLaterShowsNothingStale) {
    using sim::FaultKind;
    MonitorRig rig(1, {fault(FaultKind::Exception, 1000, 2, 2), fault(FaultKind::WrongCrc, 1006, 0, 2),
                       fault(FaultKind::Silence, 1011, 0, 2), fault(FaultKind::Exception, 1024, 2, 2)});
    for (std::size_t slot = 0; slot < 9; ++slot) {
        rig.pin(slot, 42'000.0F, 0x0504, 76);
    }
    rig.pin(6, -20.0F, 0x0005, 7);
    rig.onChannel(9, [&] { EXPECT_EQ(rig.row(1), (Texts{"42", " ", "V", "Spannung"})); });
    rig.stopAfter(10);
    rig.run();
    EXPECT_EQ(rig.row(0), (Texts{"---", " ", "V", "Spannung"})) << "no value";
    EXPECT_EQ(rig.row(1), (Texts{"---", "-", "", "Spannung"})) << "no status";
    EXPECT_EQ(rig.row(2), (Texts{"42.000", " ", "V", "---"})) << "no description";
    EXPECT_EQ(rig.row(5), (Texts{"42.000", " ", "V", "Spannung"}));
    EXPECT_EQ(rig.monitor().LED[0].fillColor.get(), colors::red);
    EXPECT_NE(rig.monitor().LED[1].fillColor.get(), colors::red) << "the alarm of an earlier cycle";
    EXPECT_EQ(rig.faultPosition(), (Texts{"0", "~", "---", "---"}));
    EXPECT_EQ(rig.test.desktop.boxes, (Boxes{crcDialog, crcDialog})) << "missing registers are silent";
}

struct FaultCase {
    int deviceType;
    float percent;
    float ohms;
    Texts shown;  ///< slider, sign, negative side, positive side
};

TEST(Monitor, FaultPositionFromWhatTheSlotsShow) {
    const FaultCase cases[] = {
        {1, 0.0F, 100'000.0F, {"0", "~", "200", "200"}},
        {1, 100.0F, 100'000.0F, {"100", "+", ">4000", "100"}},
        {10, -100.0F, 100'000.0F, {"-100", "-", "100", ">2000"}},
        {1, 15.0F, 100'000.0F, {"15", "~", "235", "174"}},
        {1, 16.0F, 100'000.0F, {"16", "+", "238", "172"}},
        {1, -15.0F, 100'000.0F, {"-15", "~", "174", "235"}},
        {1, -16.0F, 100'000.0F, {"-16", "-", "172", "238"}},
        {1, 0.0F, 0.0F, {"0", "~", "0", "0"}},
        {1, 0.0F, 2'000'000.0F, {"0", "~", ">4000", ">4000"}},
        {1, 0.0F, 1'999'000.0F, {"0", "~", "3998", "3998"}},
        {5, 0.0F, 2'499'000.0F, {"0", "~", "4998", "4998"}},
        {8, 0.0F, 500'000.0F, {"0", "~", ">1000", ">1000"}},
        {9, 30.0F, 100'000.0F, {"30", "+", "---", "---"}},
    };
    for (const FaultCase& c : cases) {
        MonitorRig rig(c.deviceType);
        rig.pin(0, c.ohms, 0x0002, 71);
        rig.pin(6, c.percent, 0x0005, 7);
        rig.stopAfter(9);
        rig.run();
        EXPECT_EQ(rig.faultPosition(), c.shown) << c.deviceType << ' ' << c.percent << ' ' << c.ohms;
    }
}

TEST(Monitor, AnInvalidFaultPositionOrResistanceCountsAsNone) {
    MonitorRig rig(1);
    rig.pin(0, 100'000.0F, 0x00C2, 71);
    rig.pin(6, 40.0F, 0x0005, 7);
    rig.onChannel(10, [&] {
        EXPECT_EQ(rig.faultPosition(), (Texts{"40", "+", "0", "0"}));
        rig.pin(0, 100'000.0F, 0x0002, 71);
        rig.pin(6, 40.0F, 0x00C5, 7);
    });
    rig.stopAfter(19);
    rig.run();
    EXPECT_EQ(rig.faultPosition(), (Texts{"0", "~", "---", "---"}));
}

TEST(Monitor, TypesWithChannelsOfTheirOwn) {
    MonitorRig mains(8);
    mains.pin(1, 110.26F, 0x0004, 76);
    mains.pin(2, -5.04F, 0x0004, 76);
    mains.pin(4, 1234.56F, 0x0004, 76);
    mains.pin(7, 0.0F, 0x0000, 0);
    mains.stopAfter(9);
    mains.run();
    EXPECT_EQ(mains.row(1)[0], "110,3");
    EXPECT_EQ(mains.row(2)[0], "-5,0");
    EXPECT_EQ(mains.row(4)[0], "1.234,6");
    EXPECT_EQ(mains.row(7)[0], "0,0");
    EXPECT_EQ(mains.monitor().Label7[1].caption.get(), "Netzspannung RMS");
    EXPECT_EQ(mains.monitor().Label7[7].caption.get(), "");
    EXPECT_TRUE(mains.monitor().LED[1].visible);

    MonitorRig battery(9);
    battery.pin(2, 215.97F, 0x0004, 76);
    battery.pin(1, 0.0F, 0x0002, 0);
    battery.stopAfter(9);
    battery.run();
    EXPECT_EQ(battery.row(2)[0], "216,0");
    EXPECT_EQ(battery.row(1)[0], "---");
    EXPECT_FALSE(battery.monitor().cmdCal.enabled) << "stays so after the poll";
    EXPECT_TRUE(battery.monitor().cmdTest.enabled);
    std::string lamps;
    for (std::size_t slot = 0; slot < 9; ++slot) {
        lamps += battery.monitor().LED[slot].visible ? 'x' : '-';
    }
    EXPECT_EQ(lamps, "x-xx-----");
}

/// A monitor window on a KDL device with an alarm, an operating value and a fault position.
class KdlMonitorWindow : public testing::Test {
  protected:
    KdlMonitorWindow() {
        configureKdl(test.program);
        test.program.DeviceType = 1;
        test.program.DeviceName = "vekQB731-K7W-2";
        device.answers = {{":IDND?", "1731D"}, {":IDNF?", "Sw 212"}, {":ALMN?", "n= 1"}, {":BTRN?", "n= 9"}};
        for (int row = 1; row <= 9; ++row) {
            device.answers[":ALM? " + std::to_string(row)] = "no 0";
            device.answers[":BTR? " + std::to_string(row)] = "Uo/dV 2305";
        }
        device.answers[":ALM? 1"] = "Re 100 kO";
        device.answers[":BTR? 9"] = "FL-50%";
        device.answers[":ALM? 10"] = "no 0";
        device.answers[":BTR? 10"] = "stop 0";
    }

    frmMbMonitor& open() { return test.open<frmMbMonitor>(); }

    TestProgram test{NumberLocale{.decimalPoint = ",", .groupSeparator = "."}};
    KdlDevice device{test.serial};
};

TEST_F(KdlMonitorWindow, ShowsARunUntilStopped) {
    frmMbMonitor& monitor = open();
    EXPECT_EQ(monitor.caption.get(), "KDL - Monitor");
    EXPECT_EQ(monitor.Label7[10].caption.get(), "Ze Voralarm");
    EXPECT_TRUE(monitor.LED[8].visible && monitor.lblMesswert[14].visible);
    device.afterRequest(test.desktop, ":BTR? 2", 1, [&] {
        EXPECT_FALSE(monitor.cmdRunMonitor.enabled || monitor.cmdCal.enabled || monitor.cmdTest.enabled ||
                     monitor.cmdCLR.enabled || monitor.cmdFACT.enabled || monitor.cmdFACTall.enabled ||
                     monitor.cmdClose.enabled);
        // Clicks that were under way before the buttons went grey.
        monitor.cmdTest.click();
        monitor.cmdRunMonitor.click();
        monitor.cmdStop.click();
    });
    monitor.cmdRunMonitor.click();
    EXPECT_EQ(device.commands.size(), 2U + 2 + 9 * 4) << "stop ends after the pass under way";
    EXPECT_EQ(monitor.lblSwVer.caption.get(), "2.12");
    EXPECT_EQ(monitor.lblMesswert[0].caption.get(), "100");
    EXPECT_EQ(monitor.lblMesswert[1].caption.get(), "230,5");
    EXPECT_EQ(monitor.lblMessName[1].caption.get(), "Überspannung");
    EXPECT_EQ(monitor.LED[0].fillColor.get(), colors::red);
    EXPECT_EQ(monitor.LED[8].fillColor.get(), colors::green);
    EXPECT_EQ(monitor.LED_TEST_INTERN.fillColor.get(), colors::white);
    EXPECT_EQ(monitor.Slider1.value.get(), -50);
    EXPECT_EQ(monitor.lblFehlerVorzeichen.caption.get(), "-");
    EXPECT_EQ(monitor.lblReNeg.caption.get(), "133");
    EXPECT_EQ(monitor.lblRePos.caption.get(), "400");
    EXPECT_TRUE(monitor.cmdRunMonitor.enabled && monitor.cmdCal.enabled && monitor.cmdClose.enabled);
    EXPECT_FALSE(test.serial.isOpen());
    EXPECT_FALSE(test.program.lineInUse);
    EXPECT_TRUE(test.desktop.boxes.empty());
}

TEST_F(KdlMonitorWindow, ClosedInsideATransactionItEndsWithTheRow) {
    frmMbMonitor& monitor = open();
    device.afterRequest(test.desktop, ":ALMN?", 1, [&] { monitor.closeBoxPressed(); });
    monitor.cmdRunMonitor.click();
    EXPECT_LE(device.commands.size(), 2U + 4);
    EXPECT_EQ(monitor.lblRePos.caption.get(), "");
    EXPECT_FALSE(test.serial.isOpen());
    EXPECT_FALSE(test.program.MonitorRunning);
    EXPECT_FALSE(test.program.lineInUse);
    EXPECT_TRUE(test.program.shell.commandsAvailable);
    test.program.windows.collect();

    device.commands.clear();
    frmMbMonitor& again = open();
    device.afterRequest(test.desktop, ":ALMN?", 1, [&] { again.cmdStop.click(); });
    again.cmdRunMonitor.click();
    EXPECT_EQ(again.lblRePos.caption.get(), "400");
}

}  // namespace
}  // namespace vek
