#include <gtest/gtest.h>

#include "app/frmAbout.h"
#include "app/frmModBus.h"
#include "modbus/ModBus.h"
#include "support/testprogram.h"

namespace vek {
namespace {

using Boxes = std::vector<std::string>;

const std::string notConfigured =
    "Hinweis|info|ok|Zuerst die Schnittstellenparameter und die Geräteadresse einstellen";
const std::string modbusOnly =
    "Hinweis|info|ok|Diese Funktion steht nur für das ModBus RTU - Protokoll zur Verfügung";

class MainWindow : public testing::Test {
  protected:
    MainWindow() { test.configure(); }

    Form* child(const char* name) { return test.program.windows.find(name); }
    frmModBusTerminal& terminal() { return dynamic_cast<frmModBusTerminal&>(*child("frmModBusTerminal")); }

    TestProgram test;
    frmModBus& window = test.open<frmModBus>();
};

TEST_F(MainWindow, OffersItsCommandsInThisOrder) {
    std::string keys;
    for (const ToolButton* button : window.Toolbar1.buttons) {
        keys += (button->kind == ToolButton::Kind::Separator ? "-" : button->name) + " ";
        EXPECT_EQ(button->pressed.get(), button->name == "TERMINAL");
    }
    EXPECT_EQ(
        keys,
        "DEV_MONITOR DEV_PARA - DEBUG_VALUE DEBUG_PARA - INTERFACE DEV_ADR TERMINAL - INFO MODBUS_EXIT ");
}

struct GuardCase {
    const char* frameFormat;
    const char* kdlPrefix;
    std::uint8_t deviceAddress;
    std::int16_t comPort;
    Boxes device;  ///< boxes of Monitor and Parameter
    Boxes debug;   ///< boxes of the two register windows
};

TEST_F(MainWindow, DeviceFunctionsNeedAPortAndADevice) {
    const Boxes refused = {notConfigured};
    const Boxes otherProtocol = {modbusOnly};
    const GuardCase cases[] = {
        {",e,8,1", "     ", 0, 3, refused, refused},
        {",e,8,1", "     ", 3, 0, refused, refused},
        {",e,8,1", ":;003", 0, 3, refused, refused},
        {",n,8,1", "     ", 3, 3, {}, {}},
        {"", "     ", 3, 3, {}, {}},
        {",e,7,1", "     ", 0, 3, refused, otherProtocol},
        {",e,7,1", "     ", 3, 3, refused, otherProtocol},
        {",e,7,1", ":;003", 3, 0, refused, otherProtocol},
        {",e,7,1", ":;003", 0, 3, {}, otherProtocol},
    };
    const auto expectGuard = [this](const MenuItem& item, const char* key, const Boxes& expected,
                                    const std::string& state) {
        for (const bool byToolBar : {false, true}) {
            const std::size_t openings = test.serial.openings.size();
            byToolBar ? window.Toolbar1.buttonClick(key) : item.click();
            const Boxes boxes = test.desktop.takeBoxes();
            if (expected.empty()) {
                const bool refusedAnyway = boxes == Boxes{notConfigured} || boxes == Boxes{modbusOnly};
                EXPECT_FALSE(refusedAnyway) << key << state;
            } else {
                EXPECT_EQ(boxes, expected) << key << state;
                EXPECT_EQ(test.serial.openings.size(), openings) << key << state;
            }
            while (!test.program.shell.commandsAvailable) {
                test.program.windows.close(*test.host.open.back());
            }
        }
    };
    for (const GuardCase& c : cases) {
        test.program.FrameFormat = c.frameFormat;
        test.program.KdlAddressPrefix = c.kdlPrefix;
        test.program.DeviceAddress = c.deviceAddress;
        test.program.ComPort = c.comPort;
        const std::string state = " in state " + std::to_string(&c - cases);
        expectGuard(window.mnuMonitor, "DEV_MONITOR", c.device, state);
        expectGuard(window.mnuParameter, "DEV_PARA", c.device, state);
        expectGuard(window.mnuMessReg, "DEBUG_VALUE", c.debug, state);
        expectGuard(window.mnuParaReg, "DEBUG_PARA", c.debug, state);
    }
}

TEST_F(MainWindow, ItsCommandsAreAwayWhileAnotherWindowIsOpen) {
    test.configure();
    const std::pair<const char*, const char*> windows[] = {{"DEV_MONITOR", "frmMbMonitor"},
                                                           {"DEV_PARA", "frmMbParameter"},
                                                           {"INTERFACE", "ModBusLink"},
                                                           {"DEV_ADR", "frmGeräteadresse"},
                                                           {"INFO", "frmAbout"}};
    for (const auto& [key, name] : windows) {
        window.Toolbar1.buttonClick(key);
        ASSERT_NE(child(name), nullptr) << name;
        const auto available = [this] {
            return std::vector<bool>{window.Toolbar1.visible, window.mnuStart.enabled,
                                     window.mnuEinstellungen.enabled, window.mnuInfo.enabled};
        };
        EXPECT_EQ(available(), std::vector<bool>(4, false)) << name;
        child(name)->closeBoxPressed();
        EXPECT_EQ(available(), std::vector<bool>(4, true)) << name;
        EXPECT_EQ(child(name), nullptr);
    }
    window.Toolbar1.buttonClick("");
    window.Toolbar1.buttonClick("info");
    EXPECT_TRUE(test.program.shell.commandsAvailable) << "unknown keys do nothing";
}

TEST_F(MainWindow, TheBatteryTypeOnTheOtherBusHasTheOrdinaryMonitor) {
    test.program.FrameFormat = ",e,7,1";
    test.program.KdlAddressPrefix = ":;003";
    test.program.DeviceType = 9;
    test.program.ComPort = 3;
    window.mnuMonitor.click();
    ASSERT_NE(child("frmMbMonitor"), nullptr);
    EXPECT_EQ(child("frmMbMonitor")->caption.get(), "KDL - Monitor");
}

TEST_F(MainWindow, TheTerminalIsHiddenAndShownWithItsLog) {
    test.program.terminalLog.append(LogColor::Black, LogForm::Hex, "x");
    const ToolButton& button = *window.Toolbar1.buttons[8];
    const auto expectShown = [&](bool shown, const char* by) {
        EXPECT_EQ(terminal().visible.get(), shown) << by;
        EXPECT_EQ(window.mnuTerminal.checked.get(), shown) << by;
        EXPECT_EQ(button.pressed.get(), shown) << by;
    };
    window.mnuTerminal.click();
    expectShown(false, "menu");
    window.Toolbar1.buttonClick("TERMINAL");
    expectShown(true, "tool bar");
    terminal().closeBoxPressed();
    expectShown(false, "close box");
    window.mnuTerminal.click();
    expectShown(true, "menu again");
    EXPECT_EQ(terminal().RichTextBox1.store.text(0), "78");
}

TEST_F(MainWindow, TheTerminalFollowsItsMovesAndItsHeight) {
    const Geometry& docked = terminal().geometry;
    window.geometry.left = 6000;
    window.geometry.top = -300;
    window.geometry.height = 8000;
    terminal().geometry.width = 5000;
    window.Timer2.tick();
    EXPECT_EQ(docked.left.get(), 1000);
    EXPECT_EQ(docked.top.get(), -300);
    EXPECT_EQ(docked.height.get(), 8000);
    EXPECT_EQ(terminal().RichTextBox1.height.get(), 7600);

    // Moved or resized alone it keeps its place, but not its height.
    terminal().geometry.left = 10;
    terminal().geometry.height = 99;
    window.Timer2.tick();
    EXPECT_EQ(docked.left.get(), 10);
    EXPECT_EQ(docked.height.get(), 8000);
    window.geometry.top = 0;
    window.Timer2.tick();
    EXPECT_EQ(docked.left.get(), 1000);
    EXPECT_TRUE(window.Timer2.enabled);
}

TEST_F(MainWindow, TheOneShotTimersSetTheirFlagsAndStop) {
    test.program.Timer1.enabled = true;
    test.program.TimeOut.enabled = true;
    test.program.Timer1.tick();
    EXPECT_TRUE(test.program.DelayElapsed);
    EXPECT_FALSE(test.program.Timer1.enabled);
    EXPECT_FALSE(test.program.TimeOutElapsed);
    test.program.TimeOut.tick();
    EXPECT_TRUE(test.program.TimeOutElapsed);
    EXPECT_FALSE(test.program.TimeOut.enabled);
}

TEST_F(MainWindow, EndsTheProgram) {
    const std::pair<const char*, std::function<void(frmModBus&)>> ways[] = {
        {"menu", [](frmModBus& main) { main.mnuBeenden.click(); }},
        {"tool bar", [](frmModBus& main) { main.Toolbar1.buttonClick("MODBUS_EXIT"); }},
        {"close box", [](frmModBus& main) { main.closeBoxPressed(); }},
    };
    for (const auto& way : ways) {
        TestProgram program;
        auto& main = program.open<frmModBus>();
        auto* terminalWindow = program.program.windows.find("frmModBusTerminal");
        ASSERT_EQ(program.serial.open(), PortError::None);
        EXPECT_TRUE(program.endsProgram([&] { way.second(main); })) << way.first;
        EXPECT_FALSE(terminalWindow->visible) << way.first;
        EXPECT_EQ(program.serial.isOpen(), std::string_view(way.first) == "close box") << way.first;
        EXPECT_TRUE(program.desktop.boxes.empty());
    }
}

TEST_F(MainWindow, GoesLastWhenAllWindowsClose) {
    window.mnuInfo.click();
    test.host.log.clear();
    EXPECT_TRUE(test.endsProgram([this] { UnloadAllWindows(test.program); }));
    EXPECT_EQ(test.host.log, (std::vector<std::string>{"-frmAbout", "-frmModBusTerminal", "-frmModBus"}));
}

TEST_F(MainWindow, AboutBox) {
    auto& about = test.open<frmAbout>();
    EXPECT_EQ(about.caption.get(), "Info zu MODBUS RTU / KDL - Monitor");
    EXPECT_EQ(about.lblVersion.caption.get(), "Version 2.2.2");
    EXPECT_EQ(about.lblTitle.caption.get(), "MODBUS RTU / KDL - Monitor");
    EXPECT_EQ(about.lblDescription.caption.get(), "MODBUS-RTU / KDL Testtool für die vekXX731 Geräteserie");
    EXPECT_FALSE(about.lblDisclaimer.caption.get().empty());
    about.cmdOK.click();
    EXPECT_EQ(child("frmAbout"), nullptr);
    EXPECT_TRUE(window.Toolbar1.visible);
}

}  // namespace
}  // namespace vek
