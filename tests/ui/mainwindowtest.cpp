#include <gtest/gtest.h>

#include <QAction>
#include <QLabel>
#include <QMainWindow>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMenuBar>
#include <QToolBar>

#include "screen.h"
#include "ui/qt/icons.h"

namespace vek::test {

namespace {

using Happened = std::vector<std::string>;

class MainWindowTest : public ::testing::Test {
  protected:
    QAction& action(const char* name) {
        auto* found = screen.mainView().findChild<QAction*>(QString::fromUtf8(name));
        if (found == nullptr) {
            throw std::runtime_error(std::string("no action ") + name);
        }
        return *found;
    }

    Screen screen;
    DemoMain& form = *screen.main;
};

TEST_F(MainWindowTest, MenuAndBarsCarryTheirNamesAndTexts) {
    EXPECT_EQ(screen.mainView().windowTitle(), QStringLiteral("Demo   V1.2.3"));
    EXPECT_EQ(screen.view<QMenu>("mnuStart").menuAction()->objectName(), QStringLiteral("mnuStart"));
    EXPECT_EQ(screen.view<QMenu>("mnuDevice").title(), QStringLiteral("Geräte"));
    EXPECT_EQ(action("mnuMonitor").text(), QStringLiteral("Monitor"));
    EXPECT_TRUE(action("trenn1").isSeparator());
    EXPECT_EQ(action("DEV_MONITOR").text(), QStringLiteral("Geräte - Monitor"));
    EXPECT_EQ(screen.view<QLabel>("sbStatusBar_1").text(), QStringLiteral("Port = COM0, 0"));

    form.bar.visible = false;
    form.start.enabled = false;
    form.info.enabled = false;
    form.panel2.caption = "ModBus-Geräteadresse =  3";
    EXPECT_FALSE(screen.view<QToolBar>("Toolbar1").isVisible());
    EXPECT_FALSE(screen.view<QMenu>("mnuStart").isEnabled());
    EXPECT_FALSE(action("mnuInfo").isEnabled());
    EXPECT_EQ(screen.view<QLabel>("sbStatusBar_2").text(), QStringLiteral("ModBus-Geräteadresse =  3"));
}

TEST_F(MainWindowTest, TheProgramDecidesWhatAClickOnACheckedItemMeans) {
    action("mnuTerminal").trigger();
    EXPECT_FALSE(form.terminal.checked.get());
    EXPECT_FALSE(action("mnuTerminal").isChecked());

    form.terminal.click = nullptr;
    action("mnuTerminal").trigger();
    EXPECT_FALSE(action("mnuTerminal").isChecked());

    action("DEV_MONITOR").trigger();
    action("TERMINAL").trigger();
    EXPECT_EQ(form.happened, (Happened{"DEV_MONITOR", "TERMINAL"}));
    EXPECT_TRUE(form.barTerminal.pressed.get());
    form.barTerminal.pressed = false;
    EXPECT_FALSE(action("TERMINAL").isChecked());
}

TEST_F(MainWindowTest, MenusWorkFromTheKeyboard) {
    QTest::keyClick(&screen.mainView(), Qt::Key_S, Qt::AltModifier);
    ASSERT_EQ(QApplication::activePopupWidget(), &screen.view<QMenu>("mnuStart"));
    screen.press(Qt::Key_G);
    ASSERT_EQ(QApplication::activePopupWidget(), &screen.view<QMenu>("mnuDevice"));
    screen.press(Qt::Key_M);
    EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
    QTest::keyClick(&screen.mainView(), Qt::Key_I, Qt::AltModifier);
    EXPECT_EQ(form.happened, (Happened{"monitor", "info"}));

    form.start.enabled = false;
    form.info.enabled = false;
    QTest::keyClick(&screen.mainView(), Qt::Key_S, Qt::AltModifier);
    QTest::keyClick(&screen.mainView(), Qt::Key_I, Qt::AltModifier);
    EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
    EXPECT_EQ(form.happened.size(), 2U);
}

TEST_F(MainWindowTest, GeometryGoesBothWaysInTwips) {
    EXPECT_EQ(form.geometry.width.get(), screen.mainView().frameGeometry().width() * 15)
        << "its own size is reported";

    form.geometry.left = 1500;
    form.geometry.height = 9000;
    EXPECT_EQ(screen.mainView().frameGeometry().left(), 100);
    EXPECT_EQ(screen.mainView().frameGeometry().height(), 600);

    screen.mainView().move(40, 30);
    screen.mainView().resize(700, 500);
    screen.settle();
    EXPECT_EQ(form.geometry.left.get(), screen.mainView().frameGeometry().left() * 15);
    EXPECT_EQ(form.geometry.top.get(), screen.mainView().frameGeometry().top() * 15);
    EXPECT_EQ(form.geometry.width.get(), screen.mainView().frameGeometry().width() * 15);
}

TEST_F(MainWindowTest, TheCaptionStaysWhenAChildIsMaximized) {
    screen.open(std::make_unique<DemoChild>());
    auto& child = screen.view<QMdiSubWindow>("");
    child.showMaximized();
    screen.settle();
    EXPECT_EQ(screen.mainView().windowTitle(), QStringLiteral("Demo   V1.2.3"));
    form.caption = "Demo   mit Gerät";
    EXPECT_EQ(screen.mainView().windowTitle(), QStringLiteral("Demo   mit Gerät"));
}

TEST_F(MainWindowTest, CloseBoxesOnlyAskTheirForms) {
    DemoChild& child = screen.open(std::make_unique<DemoChild>());
    screen.view<QMdiSubWindow>("").close();
    EXPECT_EQ(child.happened, Happened{"close"});
    EXPECT_TRUE(screen.view("frmChild").isVisible());

    LogStore store;
    DemoBeside& beside = screen.open(std::make_unique<DemoBeside>(store));
    QWidget* const window = screen.view("frmBeside").window();
    EXPECT_TRUE(window->isVisible());
    window->close();
    EXPECT_FALSE(beside.visible.get());
    EXPECT_FALSE(window->isVisible());
    beside.visible = true;
    EXPECT_TRUE(window->isVisible());

    screen.mainView().close();
    EXPECT_TRUE(screen.mainView().isVisible());
    screen.windows.closeAll();
}

TEST_F(MainWindowTest, TimersTickWhileTheyAreEnabled) {
    form.timer.enabled = true;
    EXPECT_TRUE(QTest::qWaitFor([this] { return form.ticks > 0; }));
    EXPECT_EQ(form.ticks, 1) << "the tick has disabled its timer";
}

TEST(IconsTest, EveryCommandHasAPictureOfItsOwn) {
    std::vector<QImage> pictures;
    for (const char* key : {"DEV_MONITOR", "DEV_PARA", "DEBUG_VALUE", "DEBUG_PARA", "INTERFACE", "DEV_ADR",
                            "TERMINAL", "INFO", "MODBUS_EXIT"}) {
        const QIcon icon = toolIcon(key);
        const QImage picture = icon.pixmap(QSize(24, 24)).toImage();
        EXPECT_EQ(picture.pixelColor(0, 0).alpha(), 0) << key;
        EXPECT_EQ(std::count(pictures.begin(), pictures.end(), picture), 0) << key;
        EXPECT_NE(icon.pixmap(QSize(24, 24), QIcon::Disabled).toImage(), picture) << key;
        pictures.push_back(picture);
    }
    EXPECT_TRUE(toolIcon("UNKNOWN").isNull());
}

}  // namespace

}  // namespace vek::test
