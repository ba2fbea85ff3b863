#include <gtest/gtest.h>

#include <QAction>
#include <QMdiSubWindow>

#include "monitor/frmMbMonitor.h"
#include "screen.h"

namespace vek::test {

namespace {

class MainWindowTest : public ::testing::Test {
  protected:
    QAction& action(const char* name) { return *window.findChild<QAction*>(QString::fromUtf8(name)); }
    bool terminalVisible() { return screen.view("frmModBusTerminal").isVisible(); }

    Screen screen;
    frmModBus& form = *screen.main;
    QWidget& window = screen.view("frmModBus");
};

TEST_F(MainWindowTest, TheProgramDecidesWhatAClickOnACheckedItemMeans) {
    for (const char* name : {"mnuTerminal", "TERMINAL"}) {
        for (const bool shown : {false, true}) {
            action(name).trigger();
            EXPECT_EQ(terminalVisible(), shown) << name;
            EXPECT_EQ(action("mnuTerminal").isChecked(), shown) << name;
            EXPECT_EQ(action("TERMINAL").isChecked(), shown) << name;
        }
    }
    form.mnuTerminal.click = nullptr;
    action("mnuTerminal").trigger();
    EXPECT_TRUE(action("mnuTerminal").isChecked());
}

TEST_F(MainWindowTest, GeometryGoesBothWaysInTwips) {
    EXPECT_EQ(form.geometry.width.get(), window.frameGeometry().width() * 15) << "its own size is reported";
    form.geometry.left = 1500;
    form.geometry.height = 9000;
    EXPECT_EQ(window.frameGeometry().left(), 100);
    EXPECT_EQ(window.frameGeometry().height(), 600);

    window.move(40, 30);
    window.resize(700, 500);
    screen.settle();
    EXPECT_EQ(form.geometry.left.get(), window.frameGeometry().left() * 15);
    EXPECT_EQ(form.geometry.top.get(), window.frameGeometry().top() * 15);
    EXPECT_EQ(form.geometry.width.get(), window.frameGeometry().width() * 15);
}

TEST_F(MainWindowTest, CloseBoxesOnlyAskTheirForms) {
    screen.open<frmMbMonitor>();
    auto& inside = screen.view<QMdiSubWindow>("");
    inside.showMaximized();
    screen.settle();
    form.caption = "ModBus RTU";
    EXPECT_EQ(window.windowTitle(), QStringLiteral("ModBus RTU")) << "without the child's";
    inside.close();
    screen.settle();
    EXPECT_EQ(screen.program.windows.find("frmMbMonitor"), nullptr);

    screen.view("frmModBusTerminal").window()->close();
    EXPECT_FALSE(terminalVisible() || form.mnuTerminal.checked);
    form.mnuTerminal.click();
    EXPECT_TRUE(terminalVisible());
}

}  // namespace

}  // namespace vek::test
