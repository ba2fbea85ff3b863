#include <gtest/gtest.h>

#include "app/ModBusLink.h"
#include "app/frmModBus.h"
#include "monitor/frmBatMonitor.h"
#include "support/testprogram.h"

namespace vek {
namespace {

constexpr const char* settings = "/daten/vekXX731_Monitor.ini";
constexpr const char* deviceFile = "vekQH731-K7-2.GPM";
const std::string noFile = "Fehler|stop|ok|Keine gültige Parameter-Datei vorhanden";

using Texts = std::vector<std::string>;

/// A battery monitor leaves no profile behind: what follows from that until the program ends.
TEST(BatteryProfile, AfterTheBatteryMonitorTheSettingsFileIsOutOfReach) {
    TestProgram test;
    auto& main = test.open<frmModBus>();
    test.configure();
    test.program.DeviceType = 9;
    test.program.DeviceName = "vekQH731-K7-2";
    const auto openMonitor = [&]() -> frmBatMonitor& {
        main.mnuMonitor.click();
        return dynamic_cast<frmBatMonitor&>(*test.program.windows.find("frmBatMonitor"));
    };
    const auto batteryData = [](const frmBatMonitor& monitor) {
        return Texts{monitor.txtBatVoltage.text, monitor.txtAnzBatModul.text, monitor.txtModBer.text,
                     monitor.txtRoffVal.text};
    };

    // First use: data from the settings file, and back to it.
    auto& first = openMonitor();
    EXPECT_FALSE(main.Toolbar1.visible);
    EXPECT_EQ(batteryData(first), (Texts{"10,73", "36", "5000", "20000"}));
    first.txtAnzBatModul.text = "40";
    first.cmdClose.click();
    EXPECT_TRUE(main.Toolbar1.visible);
    const std::string saved = test.profileFiles.files[settings];
    EXPECT_NE(saved.find("ANZ_MODULE=40\r\n"), std::string::npos);
    EXPECT_EQ(test.program.ProfilePath, "");

    // The interface dialog shows and takes the settings of this run, but has no file to write them to.
    main.mnuSchnittstelle.click();
    auto& dialog = dynamic_cast<ModBusLink&>(*test.program.windows.find("ModBusLink"));
    EXPECT_TRUE(dialog.optCom[2].value);
    EXPECT_TRUE(dialog.optBaud[3].value);
    dialog.optCom[4].value = true;
    dialog.btnOk.click();
    EXPECT_EQ(test.desktop.takeBoxes(), (Texts{noFile, noFile, noFile}));
    EXPECT_EQ(test.program.ComPort, 5);
    EXPECT_EQ(test.profileFiles.files[settings], saved);

    // Second use: the first reading of a key turns to the device's parameter file, which is not there.
    auto& second = openMonitor();
    EXPECT_EQ(test.program.ProfilePath, deviceFile);
    EXPECT_EQ(batteryData(second), Texts(4));
    EXPECT_FALSE(second.chkRoffset.value);
    second.txtBatVoltage.text = "12";
    second.closeBoxPressed();
    EXPECT_EQ(test.profileFiles.files[deviceFile],
              "[BATTERIE_PARA]\r\nANZ_MODULE=\r\nU_MODUL=12\r\nMODUL_BER=\r\nROFF_VAL=\r\nON_ROFF=0\r\n");
    EXPECT_EQ(test.profileFiles.files[settings], saved);

    // Third use: from there again.
    EXPECT_EQ(batteryData(openMonitor()), (Texts{"12", "", "", ""}));
    EXPECT_TRUE(test.desktop.boxes.empty());
}

TEST(BatteryProfile, TheOtherBusAndOtherTypesHaveTheOrdinaryMonitor) {
    const std::tuple<std::uint8_t, const char*, const char*> rows[] = {{9, ",e,8,1", "frmBatMonitor"},
                                                                       {9, "", "frmBatMonitor"},
                                                                       {9, ",e,7,1", "frmMbMonitor"},
                                                                       {8, ",e,8,1", "frmMbMonitor"}};
    for (const auto& [type, frame, opened] : rows) {
        TestProgram test;
        auto& main = test.open<frmModBus>();
        test.configure();
        test.program.KdlAddressPrefix = ":;003";
        test.program.DeviceType = type;
        test.program.FrameFormat = frame;
        main.Toolbar1.buttonClick("DEV_MONITOR");
        EXPECT_NE(test.program.windows.find(opened), nullptr) << int{type} << frame;
    }
}

}  // namespace
}  // namespace vek
