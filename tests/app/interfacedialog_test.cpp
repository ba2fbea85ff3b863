#include <gtest/gtest.h>

#include <algorithm>

#include "app/ModBusLink.h"
#include "support/testprogram.h"

namespace vek {
namespace {

using Boxes = std::vector<std::string>;

const std::string noPort = "Fehler|stop|ok|Ausgewählte Schnittstelle ist nicht vorhanden";
const std::string noRate = "Fehler|stop|ok|Baudrate nicht einstellbar. Default = 9600";

// Frame options in the order of the dialog.
constexpr int none = -1;
constexpr int noParity = 0;
constexpr int odd = 1;
constexpr int even = 2;

/// Index of the option that is set.
int chosen(const Frame& frame) {
    const auto isSet = [](const OptionButton* option) { return option->value.get(); };
    const auto found = std::find_if(frame.options.begin(), frame.options.end(), isSet);
    return found == frame.options.end() ? none : static_cast<int>(found - frame.options.begin());
}

void choose(Frame& frame, int index) {
    for (std::size_t each = 0; each < frame.options.size(); ++each) {
        frame.options[each]->value = static_cast<int>(each) == index;
    }
}

TEST(InterfaceDialog, ShowsTheSettings) {
    // Port, rate and frame; the options that are set.
    const std::tuple<int, int, const char*, int, int, int> cases[] = {
        {0, 0, "", none, 3, even},          {1, 1200, ",e,8,1", 0, 0, even},
        {17, 2400, ",o,8,1", none, 1, odd}, {16, 115200, ",n,8,1", 15, 7, noParity},
        {-1, 12, ",x,8,1", none, 3, even},  {3, 115200, ",e,7,1", 2, 8, even},
        {4, 4800, ",e,8,1", 3, 2, even},    {4, 19200, ",e,8,1", 3, 4, even},
        {4, 38400, ",e,8,1", 3, 5, even},   {4, 57600, ",e,8,1", 3, 6, even}};
    for (const auto& [comPort, baudRate, frameFormat, port, baud, frame] : cases) {
        TestProgram test;
        test.program.ComPort = static_cast<std::int16_t>(comPort);
        test.program.BaudRate = baudRate;
        test.program.FrameFormat = frameFormat;
        auto& dialog = test.open<ModBusLink>();
        EXPECT_EQ(chosen(dialog.Port), port) << comPort;
        EXPECT_EQ(chosen(dialog.Baud), baud) << baudRate << frameFormat;
        EXPECT_EQ(chosen(dialog.FrameOptions), frame) << frameFormat;
    }
}

TEST(InterfaceDialog, OffersThePortsThatCanBeOpened) {
    TestProgram test;
    test.program.ComPort = 2;
    test.serial.openErrors = {{2, PortError::InUse}, {5, PortError::NotPermitted}, {16, PortError::NotThere}};
    auto& dialog = test.open<ModBusLink>();
    for (int n = 1; n <= 16; ++n) {
        const OptionButton& option = dialog.optCom[static_cast<std::size_t>(n - 1)];
        const bool offered = test.serial.openErrors.count(n) == 0;
        EXPECT_EQ(option.enabled.get(), offered) << n;
        const std::string& toolTip = option.toolTip;
        const std::string device = "/dev/ttyFake" + std::to_string(n);
        EXPECT_EQ(offered, toolTip == device) << toolTip;
        EXPECT_TRUE(toolTip.starts_with(device)) << toolTip;
    }
    EXPECT_NE(dialog.optCom[4].toolTip.get().find("dialout"), std::string::npos);
    EXPECT_TRUE(dialog.optCom[1].value) << "shown although it is in use";
    EXPECT_FALSE(test.serial.isOpen());
    EXPECT_TRUE(test.desktop.boxes.empty());
}

TEST(InterfaceDialog, OkTakesWhatIsChosen) {
    const std::tuple<int, int, int, const char*, const char*, const char*, Boxes> cases[] = {
        {2, 3, even, "3", "9600", ",e,8,1", {}},
        {0, 0, noParity, "1", "1200", ",n,8,1", {}},
        {15, 7, odd, "16", "115200", ",o,8,1", {}},
        {4, 5, none, "5", "38400", ",e,8,1", {}},
        {2, 8, noParity, "3", "9600", ",e,7,1", {}},
        {none, 6, even, "0", "57600", ",e,8,1", {noPort}},
        {none, none, odd, "0", "9600", ",o,8,1", {noPort, noRate}},
    };
    for (const auto& [port, baud, frame, comPort, baudRate, frameFormat, boxes] : cases) {
        TestProgram test;
        test.configure();
        test.program.ProfilePath = "/a.ini";
        auto& dialog = test.open<ModBusLink>();
        choose(dialog.Port, port);
        choose(dialog.Baud, baud);
        choose(dialog.FrameOptions, frame);
        dialog.btnOk.click();
        EXPECT_EQ(std::to_string(test.program.ComPort), comPort);
        EXPECT_EQ(std::to_string(test.program.BaudRate), baudRate);
        EXPECT_EQ(test.program.FrameFormat, frameFormat);
        EXPECT_EQ(test.program.shell.portPanel.get(),
                  std::string(baud == 8 ? "KDL-Port = COM" : "ModBus RTU-Port = COM") + comPort + ", " +
                      baudRate + frameFormat);
        EXPECT_EQ(test.profileFiles.files["/a.ini"], std::string("[RS485]\r\nCOM= ") + comPort +
                                                         "\r\nBAUD= " + baudRate +
                                                         "\r\nFRAME=" + frameFormat + "\r\n");
        EXPECT_EQ(test.desktop.boxes, boxes) << comPort << baudRate;
        EXPECT_FALSE(test.program.windows.isOpen(dialog));
        EXPECT_EQ(test.program.DeviceAddress, 3) << "no search follows";
    }
}

TEST(InterfaceDialog, TheCloseBoxTakesNothingAndOkAlsoWhatCannotBeStored) {
    TestProgram test;
    test.configure();
    auto& closed = test.open<ModBusLink>();
    choose(closed.Port, 7);
    closed.closeBoxPressed();
    EXPECT_EQ(test.program.ComPort, 3);
    EXPECT_TRUE(test.desktop.boxes.empty());

    test.program.FrameFormat = ",e,7,1";
    test.open<ModBusLink>().btnOk.click();
    EXPECT_EQ(test.program.FrameFormat, ",e,7,1") << "the other protocol stays";
    EXPECT_EQ(test.desktop.boxes, Boxes(3, "Fehler|stop|ok|Keine gültige Parameter-Datei vorhanden"));
}

}  // namespace
}  // namespace vek
