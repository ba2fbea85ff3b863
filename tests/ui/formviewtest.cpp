#include <gtest/gtest.h>

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QSlider>

#include "app/ModBusLink.h"
#include "app/frmGeraeteadresse.h"
#include "monitor/frmMbMonitor.h"
#include "screen.h"

namespace vek::test {

namespace {

class FormViewTest : public ::testing::Test {
  protected:
    QRect placeOf(const std::string& name) {
        const QWidget& widget = screen.view(name.c_str());
        return {widget.mapTo(widget.window(), QPoint()), widget.size()};
    }

    Screen screen;
};

TEST_F(FormViewTest, ShowsWhatTheProgramSetsAndNothingElse) {
    auto& form = screen.open<frmMbMonitor>();
    form.LED[3].fillColor = colors::magenta;
    form.LED[4].visible = false;
    form.Slider1.value = -40;
    form.lblMesswert[0].caption = "1 & 2";
    form.lblMesswert[1].backColor = colors::red;
    form.lblMesswert[2].enabled = false;
    form.cmdCal.toolTip = "Kalibrieren";
    EXPECT_EQ(screen.view("LED_3").property("color").value<QColor>(), QColor(255, 0, 255));
    EXPECT_FALSE(screen.view("LED_4").isVisible());
    form.LED[4].visible = true;
    EXPECT_TRUE(screen.view("LED_4").isVisible());
    EXPECT_EQ(screen.view<QLabel>("lblMesswert_0").text(), QStringLiteral("1 & 2"));
    EXPECT_EQ(screen.view("lblMesswert_1").grab().toImage().pixelColor(4, 4), QColor(Qt::red));
    EXPECT_FALSE(screen.view("lblMesswert_2").isEnabled());
    EXPECT_EQ(screen.view("cmdCal").toolTip(), QStringLiteral("Kalibrieren"));
    auto& slider = screen.view<QSlider>("Slider1");
    QTest::mouseClick(&slider, Qt::LeftButton, Qt::NoModifier, QPoint(2, slider.height() / 2));
    QTest::keyClick(&slider, Qt::Key_Right);
    EXPECT_EQ(slider.value(), -40) << "the user cannot move it";
}

TEST_F(FormViewTest, ATableHasItsRowsAndColumns) {
    auto& form = screen.open<frmMbMonitor>();
    form.LED[0].visible = true;
    screen.settle();
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

TEST_F(FormViewTest, AComboBoxKeepsItsListAndWhatTheUserMarked) {
    auto& form = screen.open<frmGeräteadresse>();
    form.btnÜbernehmen.click = nullptr;
    auto& box = screen.view<QComboBox>("cmbGeraeteAdresse");
    QLineEdit& edit = *box.lineEdit();
    screen.type("cmbGeraeteAdresse", "2");
    EXPECT_EQ(box.currentText(), QStringLiteral("2")) << "typing completes nothing";
    QTest::keyClicks(&edit, QStringLiteral("9a\r"));
    EXPECT_EQ(box.count(), 246);
    form.cmbGeraeteAdresse.items = {"4", "5"};
    EXPECT_EQ(box.count(), 2);
    EXPECT_EQ(form.cmbGeraeteAdresse.text.get(), "29a");

    edit.setSelection(1, 2);
    screen.view("btnÜbernehmen").setFocus(Qt::MouseFocusReason);
    EXPECT_EQ(form.cmbGeraeteAdresse.selectedText.get(), "9a");
    form.cmbGeraeteAdresse.text = "10";
    EXPECT_EQ(box.currentText(), QStringLiteral("10"));
}

TEST_F(FormViewTest, OptionsAreOneGroupAndOneTabStop) {
    screen.program.FrameFormat = ",n,8,1";
    auto& form = screen.open<ModBusLink>();
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
    EXPECT_TRUE(form.opt8o1.value.get()) << "a second click leaves it set";

    form.opt8e1.enabled = false;
    screen.press(Qt::Key_Down);  // over the disabled one, round to the first
    EXPECT_TRUE(form.opt8n1.value.get() && screen.view("opt8n1").hasFocus());
    EXPECT_FALSE(screen.view<QRadioButton>("opt8o1").isChecked());
    screen.press(Qt::Key_Up);
    EXPECT_TRUE(form.opt8o1.value.get() && screen.view("opt8o1").hasFocus());
}

}  // namespace

}  // namespace vek::test
