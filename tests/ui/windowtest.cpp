#include <gtest/gtest.h>

#include <QAction>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMdiSubWindow>
#include <QRadioButton>
#include <QSlider>

#include "app/ModBusLink.h"
#include "app/frmGeraeteadresse.h"
#include "monitor/frmMbMonitor.h"
#include "screen.h"

namespace vek::test {

namespace {

class WindowTest : public ::testing::Test {
  protected:
    QRect placeOf(const std::string& name) {
        const QWidget& widget = screen.view(name.c_str());
        return {widget.mapTo(widget.window(), QPoint()), widget.size()};
    }

    QAction& action(const char* name) { return *window.findChild<QAction*>(QString::fromUtf8(name)); }
    bool terminalVisible() { return screen.view("frmModBusTerminal").isVisible(); }

    Screen screen;
    frmModBus& form = *screen.main;
    QWidget& window = screen.view("frmModBus");
};

TEST_F(WindowTest, ShowsWhatTheProgramSetsAndNothingElse) {
    auto& child = screen.open<frmMbMonitor>();
    child.LED[3].fillColor = colors::magenta;
    child.LED[4].visible = false;
    child.Slider1.value = -40;
    child.lblMesswert[0].caption = "1 & 2";
    child.lblMesswert[1].backColor = colors::red;
    EXPECT_EQ(screen.view("LED_3").property("color").value<QColor>(), QColor(255, 0, 255));
    EXPECT_FALSE(screen.view("LED_4").isVisible());
    child.LED[4].visible = true;
    EXPECT_TRUE(screen.view("LED_4").isVisible());
    EXPECT_EQ(screen.view<QLabel>("lblMesswert_0").text(), QStringLiteral("1 & 2"));
    EXPECT_EQ(screen.view("lblMesswert_1").grab().toImage().pixelColor(4, 4), QColor(Qt::red));
    auto& slider = screen.view<QSlider>("Slider1");
    QTest::mouseClick(&slider, Qt::LeftButton, Qt::NoModifier, QPoint(2, slider.height() / 2));
    QTest::keyClick(&slider, Qt::Key_Right);
    EXPECT_EQ(slider.value(), -40) << "the user cannot move it";
}

TEST_F(WindowTest, ATableHasItsRowsAndColumns) {
    screen.open<frmMbMonitor>();
    int right = 0;
    for (const char* column :
         {"Label7_", "lblMesswert_", "lblRange_", "lblEinheit_", "LED_", "lblMessName_"}) {
        const QRect first = placeOf(column + std::string("0"));
        EXPECT_GE(first.left(), right) << column;
        right = first.right();
        int bottom = 0;
        for (int row = 0; row < 9; ++row) {
            const QRect cell = placeOf(column + std::to_string(row));
            EXPECT_EQ(cell.center().x(), first.center().x()) << column << row;
            EXPECT_GE(cell.top(), bottom) << column << row;
            EXPECT_NEAR(cell.center().y(), placeOf("lblMesswert_" + std::to_string(row)).center().y(), 1);
            bottom = cell.bottom();
        }
    }
}

TEST_F(WindowTest, AComboBoxKeepsItsListAndWhatTheUserMarked) {
    auto& child = screen.open<frmGeräteadresse>();
    child.btnÜbernehmen.click = nullptr;
    const int width = screen.view<QMdiSubWindow>("").width();
    child.Label1.caption = std::string(60, 'W');
    screen.settle();
    EXPECT_GT(screen.view<QMdiSubWindow>("").width(), width) << "the window grows with its contents";
    auto& box = screen.view<QComboBox>("cmbGeraeteAdresse");
    QLineEdit& edit = *box.lineEdit();
    edit.setFocus();
    QTest::keyClicks(&edit, QStringLiteral("2"));
    EXPECT_EQ(box.currentText(), QStringLiteral("2")) << "typing completes nothing";
    QTest::keyClicks(&edit, QStringLiteral("9a\r"));
    EXPECT_EQ(box.count(), 246);
    child.cmbGeraeteAdresse.items = {"4", "5"};
    EXPECT_EQ(box.count(), 2);
    EXPECT_EQ(child.cmbGeraeteAdresse.text.get(), "29a");

    edit.setSelection(1, 2);
    screen.view("btnÜbernehmen").setFocus(Qt::MouseFocusReason);
    EXPECT_EQ(child.cmbGeraeteAdresse.selectedText.get(), "9a");
}

TEST_F(WindowTest, OptionsAreOneGroupAndOneTabStop) {
    screen.program.FrameFormat = ",n,8,1";
    auto& child = screen.open<ModBusLink>();
    const auto stops = [this] {
        std::string names;
        for (const char* name : {"opt8n1", "opt8o1", "opt8e1"}) {
            names += (screen.view(name).focusPolicy() & Qt::TabFocus) != 0 ? name : "";
        }
        return names;
    };
    EXPECT_EQ(stops(), "opt8n1");
    screen.click("opt8o1");
    EXPECT_EQ(stops(), "opt8o1");
    screen.click("opt8o1");
    EXPECT_TRUE(child.opt8o1.value.get()) << "a second click leaves it set";

    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Down);
    EXPECT_TRUE(child.opt8e1.value.get() && screen.view("opt8e1").hasFocus());
    child.opt8n1.enabled = false;
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Down);  // over the disabled one
    EXPECT_TRUE(child.opt8o1.value.get() && screen.view("opt8o1").hasFocus());
    EXPECT_FALSE(screen.view<QRadioButton>("opt8e1").isChecked());
}

TEST_F(WindowTest, TheProgramDecidesWhatAClickOnACheckedItemMeans) {
    for (const char* name : {"mnuTerminal", "TERMINAL"}) {
        for (const bool shown : {false, true}) {
            action(name).trigger();
            EXPECT_EQ(terminalVisible(), shown) << name;
            EXPECT_EQ(action("mnuTerminal").isChecked(), shown) << name;
            EXPECT_EQ(action("TERMINAL").isChecked(), shown) << name;
        }
    }
}

TEST_F(WindowTest, GeometryGoesBothWaysInTwips) {
    EXPECT_EQ(form.geometry.width.get(), window.frameGeometry().width() * 15) << "its own size is reported";
    form.geometry.left = 1500;
    form.geometry.height = 9000;
    EXPECT_EQ(window.frameGeometry().left(), 100);
    EXPECT_EQ(window.frameGeometry().height(), 600);

    window.move(40, 30);
    window.resize(700, 500);
    screen.settle();
    EXPECT_EQ(form.geometry.left.get(), window.frameGeometry().left() * 15);
    EXPECT_EQ(form.geometry.width.get(), window.frameGeometry().width() * 15);
}

/// Tells when its object goes.
struct ToldMonitor : frmMbMonitor {
    using frmMbMonitor::frmMbMonitor;
    ~ToldMonitor() override { gone = true; }
    static inline bool gone = false;
};

TEST_F(WindowTest, CloseBoxesOnlyAskTheirForms) {
    screen.open<ToldMonitor>();
    auto& inside = screen.view<QMdiSubWindow>("");
    inside.showMaximized();
    screen.settle();
    form.caption = "ModBus RTU";
    EXPECT_EQ(window.windowTitle(), QStringLiteral("ModBus RTU")) << "without the child's";
    inside.close();
    screen.settle();
    EXPECT_TRUE(ToldMonitor::gone);

    screen.view("frmModBusTerminal").window()->close();
    EXPECT_FALSE(terminalVisible() || form.mnuTerminal.checked);
}

}  // namespace

}  // namespace vek::test
