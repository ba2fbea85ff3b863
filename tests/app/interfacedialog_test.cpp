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
    struct Case {
        std::int16_t comPort;
        std::int32_t baudRate;
        const char* frameFormat;
        int port, baud, frame;
    };
    const Case cases[] = {{0, 0, "", none, 3, even},
                          {1, 1200, ",e,8,1", 0, 0, even},
                          {16, 115200, ",n,8,1", 15, 7, noParity},
                          {17, 2400, ",o,8,1", none, 1, odd},
                          {-1, 12, ",x,8,1", none, 3, even},
                          {3, 9600, ",e,7,1", 2, 8, even},
                          {3, 115200, ",e,7,1", 2, 8, even},
                          {4, 4800, ",e,8,1", 3, 2, even},
                          {4, 19200, ",e,8,1", 3, 4, even},
                          {4, 38400, ",e,8,1", 3, 5, even},
                          {4, 57600, ",e,8,1", 3, 6, even}};
    for (const Case& c : cases) {
        TestProgram test;
        test.program.ComPort = c.comPort;
        test.program.BaudRate = c.baudRate;
        test.program.FrameFormat = c.frameFormat;
        auto& dialog = test.open<ModBusLink>();
        EXPECT_EQ(chosen(dialog.Port), c.port) << c.comPort;
        EXPECT_EQ(chosen(dialog.Baud), c.baud) << c.baudRate << c.frameFormat;
        EXPECT_EQ(chosen(dialog.FrameOptions), c.frame) << c.frameFormat;
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
    struct Case {
        int port, baud, frame;
        int comPort;
        const char* baudRate;
        const char* frameFormat;
        Boxes boxes;
    };
    const Case cases[] = {
        {2, 3, even, 3, "9600", ",e,8,1", {}},
        {0, 0, noParity, 1, "1200", ",n,8,1", {}},
        {15, 7, odd, 16, "115200", ",o,8,1", {}},
        {4, 5, none, 5, "38400", ",e,8,1", {}},
        {2, 8, noParity, 3, "9600", ",e,7,1", {}},
        {none, 6, even, 0, "57600", ",e,8,1", {noPort}},
        {9, none, odd, 10, "9600", ",o,8,1", {noRate}},
        {none, none, none, 0, "9600", ",e,8,1", {noPort, noRate}},
    };
    for (const Case& c : cases) {
        TestProgram test;
        test.configure();
        test.program.ProfilePath = "/a.ini";
        auto& dialog = test.open<ModBusLink>();
        choose(dialog.Port, c.port);
        choose(dialog.Baud, c.baud);
        choose(dialog.FrameOptions, c.frame);
        dialog.btnOk.click();
        const std::string number = std::to_string(c.comPort);
        EXPECT_EQ(test.program.ComPort, c.comPort);
        EXPECT_EQ(std::to_string(test.program.BaudRate), c.baudRate);
        EXPECT_EQ(test.program.FrameFormat, c.frameFormat);
        EXPECT_EQ(test.program.shell.portPanel.get(),
                  (c.baud == 8 ? "KDL-Port = COM" : "ModBus RTU-Port = COM") + number + ", " + c.baudRate +
                      c.frameFormat);
        EXPECT_EQ(test.profileFiles.files["/a.ini"], "[RS485]\r\nCOM= " + number + "\r\nBAUD= " + c.baudRate +
                                                         "\r\nFRAME=" + c.frameFormat + "\r\n");
        EXPECT_EQ(test.desktop.boxes, c.boxes) << number << c.baudRate;
        EXPECT_FALSE(test.program.windows.isOpen(dialog));
        EXPECT_EQ(test.program.DeviceAddress, 3) << "no search follows";
    }
}

TEST(InterfaceDialog, OkWithoutAChangeKeepsTheOtherProtocol) {
    TestProgram test;
    test.configure();
    test.program.FrameFormat = ",e,7,1";
    test.program.ProfilePath = "/a.ini";
    test.profileFiles.files["/a.ini"] = "; von Hand\n[BATTERIE_PARA]\nANZ_MODULE=36\n[RS485]\nCOM=1\nX=y\n";
    test.open<ModBusLink>().btnOk.click();
    EXPECT_EQ(test.program.BaudRate, 9600);
    EXPECT_EQ(test.program.FrameFormat, ",e,7,1");
    EXPECT_EQ(test.profileFiles.files["/a.ini"],
              "; von Hand\n[BATTERIE_PARA]\nANZ_MODULE=36\n[RS485]\nCOM= 3\nX=y\nBAUD= 9600\nFRAME=,e,7,1\n");
}

TEST(InterfaceDialog, TheCloseBoxTakesNothingAndOkAlsoWhatCannotBeStored) {
    TestProgram test;
    test.configure();
    auto& closed = test.open<ModBusLink>();
    choose(closed.Port, 7);
    closed.closeBoxPressed();
    EXPECT_EQ(test.program.ComPort, 3);
    EXPECT_TRUE(test.desktop.boxes.empty());

    auto& taken = test.open<ModBusLink>();
    choose(taken.Port, 7);
    taken.btnOk.click();
    EXPECT_EQ(test.program.ComPort, 8);
    EXPECT_EQ(test.desktop.boxes, Boxes(3, "Fehler|stop|ok|Keine gültige Parameter-Datei vorhanden"));
    EXPECT_FALSE(test.program.windows.isOpen(taken));
}

}  // namespace
}  // namespace vek
