#include <gtest/gtest.h>

#include "modbus/modbusframe.h"
#include "monitor/frmMbMonitor.h"
#include "pollrig.h"
#include "support/hexbytes.h"

namespace vek {
namespace {

using Boxes = std::vector<std::string>;
using sim::FaultKind;

class MonitorRig : public PollRig<frmMbMonitor> {
  public:
    explicit MonitorRig(int type, std::vector<sim::LineFault> faults = {})
        : PollRig(deviceOf(type, std::move(faults))) {}

    void pin(std::size_t slot, float value, std::uint16_t status, std::uint16_t description) {
        peer.line.device().pin(slot, {value, status, description});
    }

    std::string row(std::size_t slot) {
        return captions({&monitor().lblMesswert[slot], &monitor().lblRange[slot], &monitor().lblEinheit[slot],
                         &monitor().lblMessName[slot]});
    }
    std::string identification() {
        return captions({&monitor().lblDevName, &monitor().lblSwRegNr, &monitor().lblSwVer,
                         &monitor().lblSwDate, &monitor().lblSwMb});
    }
    std::string faultPosition() {
        return std::to_string(monitor().Slider1.value) + '|' +
               captions({&monitor().lblFehlerVorzeichen, &monitor().lblReNeg, &monitor().lblRePos});
    }

    std::string enabled() {
        std::string keys;
        for (const Button* button :
             {&monitor().cmdRunMonitor, &monitor().cmdStop, &monitor().cmdClose, &monitor().cmdCal,
              &monitor().cmdTest, &monitor().cmdCLR, &monitor().cmdFACT, &monitor().cmdFACTall}) {
            keys += button->enabled ? 'x' : '-';
        }
        return keys;
    }
};

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
    rig.runOneCycle();

    EXPECT_EQ(rig.identification(), "vekQB731-K7W-2|1731D|V2.12|7.11.2019|V1.05");
    const char* const rows[] = {
        "1.234|<|kOhm|Isolationsfehler Re",
        "---| |kOhm|Isolationsfehler Ze",
        "230| |V|Spannung",
        "1,500|>|µF|Kapazität Ce",
        "115| |V|-",
        "-1.500| |V| ",
        "50| |%| ",
        "---|-|kOhm|Überlast",
        "1234567| | |-",
        "|||",
    };
    std::string lamps;
    for (std::size_t slot = 0; slot < std::size(rows); ++slot) {
        EXPECT_EQ(rig.row(slot), rows[slot]) << slot;
        lamps += colorLetter(rig.monitor().LED[slot].fillColor);
    }
    EXPECT_EQ(lamps, "RYGGMCGG--") << "an unknown state leaves the lamp";
    EXPECT_EQ(rig.monitor().LED_TEST_INTERN.fillColor.get(), colors::red) << "of the last channel";
    EXPECT_EQ(rig.monitor().LED_TEST_EXTERN.fillColor.get(), colors::green);
    // 200 * 1234 / 50 reaches what the type can tell, 200 * 1234 / 150 is 1645.3.
    EXPECT_EQ(rig.faultPosition(), "50|+|>4000|1645");
    EXPECT_TRUE(rig.boxless());

    Bytes expected;
    const auto expectRead = [&](int reg, int count) {
        expected += fromHex("03 03") + WordToBytes(static_cast<std::uint16_t>(reg)) +
                    WordToBytes(static_cast<std::uint16_t>(count));
    };
    for (int reg = 9820; reg <= 9825; ++reg) {
        expectRead(reg, 1);
    }
    for (int reg = 1000; reg <= 1032; reg += 4) {
        expectRead(reg, 2);
        expectRead(reg + 2, 1);
        expectRead(reg + 3, 1);
    }
    Bytes requests;
    for (const Bytes& request : rig.test.serial.written) {
        requests += request.substr(0, 6);
    }
    EXPECT_EQ(requests, expected);
}

TEST(Monitor, PollsUntilStoppedAndOnlyStopCanBePressedMeanwhile) {
    MonitorRig rig(1);
    EXPECT_EQ(rig.enabled(), "xxxxxxxx");
    rig.onChannel(3, [&] {
        EXPECT_EQ(rig.enabled(), "-x------");
        EXPECT_TRUE(rig.test.program.MonitorRunning);
        // Clicks that were under way before the buttons went grey.
        rig.monitor().cmdRunMonitor.click();
        rig.monitor().cmdTest.click();
        rig.monitor().cmdCal.click();
    });
    rig.stopAfter(20);
    rig.run();
    EXPECT_EQ(rig.requests(), identificationReads + 3 * readsPerCycle) << "ends after the cycle under way";
    EXPECT_EQ(rig.test.desktop.eventRounds, 27) << "events after every channel";
    EXPECT_EQ(rig.test.serial.openings.size(), 1U);
    EXPECT_EQ(rig.enabled(), "xxxxxxxx");
    EXPECT_TRUE(rig.released() && rig.boxless());

    rig.stopAfter(1);
    rig.run();
    EXPECT_EQ(rig.requests(), 2 * identificationReads + 4 * readsPerCycle) << "starts over";
}

TEST(Monitor, EndsInTheMiddleOfAPoll) {
    MonitorRig closed(1);
    closed.onChannel(4, [&] { closed.monitor().closeBoxPressed(); });
    closed.run();
    EXPECT_EQ(closed.requests(), identificationReads + 4 * readsPerChannel);
    EXPECT_EQ(closed.faultPosition(), "0|||");
    EXPECT_TRUE(closed.released());
    EXPECT_TRUE(closed.test.program.shell.commandsAvailable);
    closed.test.program.windows.collect();

    MonitorRig ended(1);
    ended.onChannel(2, [&] { ended.mainWindow.closeBoxPressed(); });
    EXPECT_TRUE(ended.test.endsProgram([&] { ended.run(); }));
    EXPECT_EQ(ended.requests(), identificationReads + 2 * readsPerChannel);
    EXPECT_EQ(ended.row(2), "|||");
    EXPECT_TRUE(ended.boxless());

    // A device that says nothing at all must not hold up who has had enough: in the identification that is
    // the end, in a cycle the rest of the channel still follows.
    const sim::LineFault silence{.kind = FaultKind::Silence, .reg = std::nullopt};
    for (const std::size_t box : {std::size_t{1}, std::size_t{4}, identificationReads + 1}) {
        for (const bool close : {false, true}) {
            MonitorRig silent(1, {silence});
            silent.test.desktop.onMessageBox = [&] {
                if (silent.test.desktop.boxes.size() == box) {
                    close ? silent.monitor().closeBoxPressed() : silent.monitor().cmdStop.click();
                }
            };
            silent.run();
            const bool inCycle = box > identificationReads;
            EXPECT_EQ(silent.test.desktop.boxes.size(),
                      inCycle ? identificationReads + readsPerChannel : box);
            EXPECT_EQ(silent.row(0), inCycle ? "---|-||---" : "|||") << box;
            EXPECT_EQ(silent.monitor().lblSwMb.caption.get(), inCycle ? "CRC_TIMEOUT" : "---") << box;
            EXPECT_EQ(silent.enabled(), "xxxxxxxx");
            EXPECT_TRUE(silent.released());
            silent.test.program.windows.collect();
        }
    }
}

/// Its boxes come one upon the other, at once.
TEST(Monitor, LeavesTimeToStopADeviceThatRefusesEveryRead) {
    constexpr double deviceFailure = 4;
    MonitorRig rig(1, {{.kind = FaultKind::Exception, .amount = deviceFailure, .reg = std::nullopt}});
    TimePoint lastBox;
    const auto stopIf = [&rig](bool isTime) {
        if (isTime) {
            rig.monitor().cmdStop.click();
        }
    };
    rig.test.desktop.onMessageBox = [&] {
        lastBox = rig.test.desktop.now();
        stopIf(rig.test.desktop.boxes.size() == 100);
    };
    rig.test.desktop.onEvents = [&] { stopIf(rig.test.desktop.now() - lastBox >= Milliseconds(400)); };
    rig.monitor().cmdRunMonitor.click();
    EXPECT_EQ(rig.test.desktop.boxes.size(), identificationReads + readsPerChannel);
    EXPECT_TRUE(rig.released());
}

TEST(Monitor, AddressesOutside3To90AreRefused) {
    for (const int address : {0, 2, 3, 90, 91, 247}) {
        MonitorRig rig(1);
        rig.test.program.DeviceAddress = static_cast<std::uint8_t>(address);
        rig.stopAfter(1);
        rig.run();
        const bool refused = address < 3 || address > 90;
        rig.test.desktop.boxes.resize(1);
        EXPECT_EQ(rig.test.desktop.boxes[0] == "Fehler|stop|ok|Keine gültige ModBus-Adresse vorhanden",
                  refused);
        EXPECT_EQ(rig.requests() == 0, refused) << address;
        EXPECT_EQ(rig.monitor().lblDevName.caption.get().empty(), refused) << address;
        EXPECT_TRUE(rig.released());
        EXPECT_EQ(rig.enabled(), "xxxxxxxx");
    }
}

// That the rows show what was read and nothing else, whatever the line does, the campaign sees to.
TEST(Monitor, WhatCannotBeReadShowsNothingStale) {
    MonitorRig rig(1, {fault(FaultKind::Exception, 9820, 2), fault(FaultKind::Silence, 9821),
                       fault(FaultKind::Silence, 9823), fault(FaultKind::Exception, 9825, 4),
                       fault(FaultKind::Silence, 1006, 0, 2), fault(FaultKind::Exception, 1024, 2, 2)});
    rig.pin(1, 42'000.0F, 0x0504, 76);
    rig.pin(6, -20.0F, 0x0005, 7);
    rig.onChannel(9, [&] {
        EXPECT_EQ(rig.identification(), "vekQB731-K7W-2|---|CRC_TIMEOUT|CRC_TIMEOUT|---");
        EXPECT_EQ(rig.test.desktop.takeBoxes(),
                  (Boxes{crcDialog, crcDialog, "MODBUS-Fehler|stop|ok|Interner Fehler"}));
        EXPECT_EQ(rig.row(1), "42| |V|Spannung");
    });
    rig.stopAfter(10);
    rig.run();
    EXPECT_EQ(rig.row(1), "---|-||Spannung") << "no status";
    EXPECT_NE(rig.monitor().LED[1].fillColor.get(), colors::red) << "the alarm of an earlier cycle";
    EXPECT_EQ(rig.faultPosition(), "0|~|---|---");
    EXPECT_EQ(rig.test.desktop.boxes, Boxes{crcDialog}) << "missing registers are silent";
}

TEST(Monitor, AnInvalidFaultPositionOrResistanceCountsAsNone) {
    MonitorRig rig(1);
    rig.pin(0, 100'000.0F, 0x00C2, 71);
    rig.pin(6, 40.0F, 0x0005, 7);
    rig.runOneCycle();
    EXPECT_EQ(rig.faultPosition(), "40|+|0|0");
    rig.pin(0, 1'999'400.0F, 0x0002, 71);
    rig.pin(6, 0.0F, 0x0005, 7);
    rig.runOneCycle();
    EXPECT_EQ(rig.faultPosition(), "0|~|3998|3998") << "of the number that is shown";
    rig.pin(6, 40.0F, 0x00C5, 7);
    rig.runOneCycle();
    EXPECT_EQ(rig.faultPosition(), "0|~|---|---");
}

TEST(Monitor, TypesWithChannelsOfTheirOwn) {
    MonitorRig mains(8);
    mains.pin(1, 110.26F, 0x0004, 76);
    mains.pin(4, 1234.56F, 0x0004, 76);
    mains.pin(8, 1.0F, 0x8000, 0);
    mains.runOneCycle();
    EXPECT_EQ(mains.monitor().LED_TEST_EXTERN.fillColor.get(), colors::red);
    EXPECT_EQ(mains.monitor().LED_TEST_INTERN.fillColor.get(), colors::green);
    EXPECT_EQ(mains.row(1), "110,3| |V|Spannung");
    EXPECT_EQ(mains.row(4), "1.234,6| |V|Spannung");
    EXPECT_EQ(mains.monitor().Label7[1].caption.get(), "Netzspannung RMS");
    EXPECT_EQ(mains.visibleLamps(), "xxxxxxxxx");

    MonitorRig battery(9);
    battery.pin(2, 215.97F, 0x0004, 76);
    battery.runOneCycle();
    EXPECT_EQ(battery.row(2), "216,0| |V|Spannung");
    EXPECT_EQ(battery.enabled(), "xxx-xxxx") << "no calibration, also after the poll";
    EXPECT_EQ(battery.visibleLamps(), "x-xx-----");
}

}  // namespace
}  // namespace vek
