#include <gtest/gtest.h>

#include "app/frmAbout.h"
#include "app/frmModBus.h"
#include "modbus/ModBus.h"
#include "support/shown.h"
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
    }
    EXPECT_EQ(
        keys,
        "DEV_MONITOR DEV_PARA - DEBUG_VALUE DEBUG_PARA - INTERFACE DEV_ADR TERMINAL - INFO MODBUS_EXIT ");
}

TEST_F(MainWindow, DeviceFunctionsNeedAPortAndADevice) {
    struct Case {
        const char* frameFormat;
        const char* kdlPrefix;
        std::uint8_t deviceAddress;
        std::int16_t comPort;
        Boxes device;  ///< boxes of Monitor and Parameter
        Boxes debug;   ///< boxes of the two register windows
    };
    const Boxes refused = {notConfigured};
    const Case cases[] = {
        {",e,8,1", "     ", 3, 0, refused, refused},
        {",e,8,1", ":;003", 0, 3, refused, refused},
        {",n,8,1", "     ", 3, 3, {}, {}},
        {"", "     ", 3, 3, {}, {}},
        {",e,7,1", "     ", 3, 3, refused, {modbusOnly}},
        {",e,7,1", ":;003", 3, 0, refused, {modbusOnly}},
        {",e,7,1", ":;003", 0, 3, {}, {modbusOnly}},
    };
    const std::tuple<MenuItem*, const char*, bool> commands[] = {{&window.mnuMonitor, "DEV_MONITOR", true},
                                                                 {&window.mnuParameter, "DEV_PARA", true},
                                                                 {&window.mnuMessReg, "DEBUG_VALUE", false},
                                                                 {&window.mnuParaReg, "DEBUG_PARA", false}};
    for (const Case& c : cases) {
        test.program.FrameFormat = c.frameFormat;
        test.program.KdlAddressPrefix = c.kdlPrefix;
        test.program.DeviceAddress = c.deviceAddress;
        test.program.ComPort = c.comPort;
        for (const auto& [item, key, forDevice] : commands) {
            for (const bool byToolBar : {false, true}) {
                byToolBar ? window.Toolbar1.buttonClick(key) : item->click();
                const Boxes& expected = forDevice ? c.device : c.debug;
                EXPECT_EQ(test.program.shell.commandsAvailable, !expected.empty()) << key << &c - cases;
                Boxes boxes = test.desktop.takeBoxes();
                boxes.resize(expected.size());  // an editor that opens reads, and finds no device
                EXPECT_EQ(boxes, expected) << key << &c - cases;
                while (!test.program.shell.commandsAvailable) {
                    test.program.windows.close(*test.host.open.back());
                }
            }
        }
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

TEST_F(MainWindow, TheTerminalIsHiddenAndShownWithItsLog) {
    test.program.terminalLog.append(LogColor::Black, LogForm::Hex, "x");
    const ToolButton& button = *window.Toolbar1.buttons[8];
    const std::pair<std::function<void()>, bool> ways[] = {
        {[] {}, true},
        {[this] { window.mnuTerminal.click(); }, false},
        {[this] { window.Toolbar1.buttonClick("TERMINAL"); }, true},
        {[this] { terminal().closeBoxPressed(); }, false},
        {[this] { window.mnuTerminal.click(); }, true},
    };
    for (const auto& [use, shown] : ways) {
        use();
        EXPECT_EQ(terminal().visible.get(), shown);
        EXPECT_EQ(window.mnuTerminal.checked.get(), shown);
        EXPECT_EQ(button.pressed.get(), shown);
    }
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

TEST_F(MainWindow, AboutBoxAndTheMainWindowLastWhenAllWindowsClose) {
    window.mnuInfo.click();
    auto& about = dynamic_cast<frmAbout&>(*child("frmAbout"));
    EXPECT_EQ(captions({&about.lblVersion, &about.lblTitle, &about.lblDescription}),
              "Version 2.2.2|MODBUS RTU / KDL - Monitor|"
              "MODBUS-RTU / KDL Testtool für die vekXX731 Geräteserie");
    EXPECT_EQ(about.caption.get(), "Info zu MODBUS RTU / KDL - Monitor");
    about.cmdOK.click();
    EXPECT_EQ(child("frmAbout"), nullptr);
    window.mnuInfo.click();
    test.host.log.clear();
    EXPECT_TRUE(test.endsProgram([this] { UnloadAllWindows(test.program); }));
    EXPECT_EQ(test.host.log, (Boxes{"-frmAbout", "-frmModBusTerminal", "-frmModBus"}));
}

}  // namespace
}  // namespace vek
