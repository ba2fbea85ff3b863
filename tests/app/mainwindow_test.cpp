#include <gtest/gtest.h>

#include "app/frmGeraeteadresse.h"
#include "app/frmModBus.h"
#include "modbus/ModBus.h"
#include "support/testprogram.h"

namespace vek {
namespace {

using Texts = std::vector<std::string>;

TEST(MainWindow, ItsTerminalFollowsItsMovesAndItsHeight) {
    TestProgram test;
    auto& window = test.open<frmModBus>();
    auto& terminal = dynamic_cast<frmModBusTerminal&>(*test.program.windows.find("frmModBusTerminal"));
    const Geometry& docked = terminal.geometry;
    EXPECT_EQ(docked.left.get(), 0);
    EXPECT_EQ(window.geometry.left.get(), docked.width.get());
    EXPECT_TRUE(window.Timer2.enabled);
    EXPECT_EQ(window.Timer2.interval.get(), 500);

    window.geometry.left = 6000;
    window.geometry.top = -300;
    window.geometry.height = 8000;
    terminal.geometry.width = 5000;
    window.Timer2.tick();
    EXPECT_EQ(docked.left.get(), 1000);
    EXPECT_EQ(docked.top.get(), -300);
    EXPECT_EQ(docked.height.get(), 8000);
    EXPECT_EQ(terminal.RichTextBox1.height.get(), 7600);

    // Moved or resized alone it keeps its place, but not its height.
    terminal.geometry.left = 10;
    terminal.geometry.height = 99;
    window.Timer2.tick();
    EXPECT_EQ(docked.left.get(), 10);
    EXPECT_EQ(docked.height.get(), 8000);
    window.geometry.top = 0;
    window.Timer2.tick();
    EXPECT_EQ(docked.left.get(), 1000);
}

/// From the menu the port is closed first; with the close box it is left to the system.
TEST(MainWindow, TakesEverythingAlongWhenItCloses) {
    for (const bool byMenu : {true, false}) {
        TestProgram test;
        auto& window = test.open<frmModBus>();
        auto* terminal = test.program.windows.find("frmModBusTerminal");
        EXPECT_EQ(test.serial.open(), PortError::None);
        EXPECT_TRUE(test.endsProgram([&] { byMenu ? window.mnuBeenden.click() : window.closeBoxPressed(); }));
        EXPECT_FALSE(terminal->visible);
        EXPECT_EQ(test.serial.isOpen(), !byMenu);
    }
    TestProgram test;
    test.open<frmModBus>().mnuInfo.click();
    test.host.log.clear();
    EXPECT_TRUE(test.endsProgram([&] { UnloadAllWindows(test.program); }));
    EXPECT_EQ(test.host.log, (Texts{"-frmAbout", "-frmModBusTerminal", "-frmModBus"}));
}

/// While a reply is awaited a second press does nothing, and dialog and program may end.
TEST(AddressDialog, LetsTheUserActWhileItWaits) {
    TestProgram test;
    auto& window = test.open<frmModBus>();
    test.configureKdl();
    const auto search = [&] {
        window.mnuGeräteadresse.click();
        auto& dialog = dynamic_cast<frmGeräteadresse&>(*test.program.windows.find("frmGeräteadresse"));
        dialog.cmbGeraeteAdresse.text = "3";
        EXPECT_FALSE(window.Toolbar1.visible);
        {
            const LineUse other(test.program);
            dialog.btnÜbernehmen.click();
        }
        EXPECT_TRUE(test.serial.openings.empty() || test.program.windows.isOpen(dialog));
        test.serial.peer = [&](std::string_view) {
            test.desktop.onEvents = [&] {
                dialog.btnÜbernehmen.click();
                dialog.closeBoxPressed();
            };
            test.serial.reply(":;003=x&\r\n", Milliseconds{20});
        };
        dialog.btnÜbernehmen.click();
        test.desktop.onEvents = nullptr;
    };
    search();
    EXPECT_EQ(test.serial.written.size(), 2U);
    EXPECT_EQ(test.desktop.takeBoxes(), Texts{"Hinweis|info|ok|Das Gerät xx wurde gefunden!"});
    EXPECT_TRUE(window.Toolbar1.visible);
    test.program.windows.collect();

    test.serial.onWrite = [&](std::string_view) {
        test.desktop.onEvents = [&] { window.closeBoxPressed(); };
        test.serial.peer = nullptr;
    };
    EXPECT_TRUE(test.endsProgram(search));
    EXPECT_EQ(test.serial.written.size(), 3U);
    EXPECT_TRUE(test.desktop.boxes.empty());
}

}  // namespace
}  // namespace vek
