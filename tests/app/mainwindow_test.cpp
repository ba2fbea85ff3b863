#include <gtest/gtest.h>

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

TEST_F(MainWindow, DeviceFunctionsNeedAPortAndADevice) {
    const Boxes refused = {notConfigured};
    // Frame format, KDL address, device address, port; the boxes of Monitor and Parameter, and those of the
    // two register windows.
    const std::tuple<const char*, const char*, std::uint8_t, std::int16_t, Boxes, Boxes> cases[] = {
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
    for (const auto& [frameFormat, kdlPrefix, deviceAddress, comPort, device, debug] : cases) {
        test.program.FrameFormat = frameFormat;
        test.program.KdlAddressPrefix = kdlPrefix;
        test.program.DeviceAddress = deviceAddress;
        test.program.ComPort = comPort;
        for (const auto& [item, key, forDevice] : commands) {
            const Boxes& expected = forDevice ? device : debug;
            for (const bool byToolBar : {false, true}) {
                byToolBar ? window.Toolbar1.buttonClick(key) : item->click();
                EXPECT_EQ(test.program.shell.commandsAvailable, !expected.empty()) << key << frameFormat;
                const Boxes boxes = test.desktop.takeBoxes();
                if (!expected.empty()) {  // else an editor opens, reads, and finds no device
                    EXPECT_EQ(boxes, expected) << key << frameFormat;
                }
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

TEST_F(MainWindow, ClosesLastWhenAllWindowsClose) {
    window.mnuInfo.click();
    test.host.log.clear();
    EXPECT_TRUE(test.endsProgram([this] { UnloadAllWindows(test.program); }));
    EXPECT_EQ(test.host.log, (Boxes{"-frmAbout", "-frmModBusTerminal", "-frmModBus"}));
}

TEST_F(MainWindow, TheBatteryMonitorIsForBatteryDevicesOnModbus) {
    const std::tuple<std::uint8_t, const char*, const char*> rows[] = {
        {9, ",e,8,1", "frmBatMonitor"}, {9, ",e,7,1", "frmMbMonitor"}, {8, ",e,8,1", "frmMbMonitor"}};
    test.program.KdlAddressPrefix = ":;003";
    for (const auto& [type, frame, opened] : rows) {
        test.program.DeviceType = type;
        test.program.FrameFormat = frame;
        window.Toolbar1.buttonClick("DEV_MONITOR");
        ASSERT_NE(child(opened), nullptr) << int{type} << frame;
        child(opened)->closeBoxPressed();
    }
}

}  // namespace
}  // namespace vek
