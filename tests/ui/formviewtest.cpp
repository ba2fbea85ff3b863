#include <gtest/gtest.h>

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSlider>

#include "screen.h"

namespace vek::test {

namespace {

using Happened = std::vector<std::string>;

class FormViewTest : public ::testing::Test {
  protected:
    Screen screen;
    DemoChild& form = screen.open(std::make_unique<DemoChild>());
};

TEST_F(FormViewTest, ShowsWhatTheProgramSetsAndNothingElse) {
    EXPECT_EQ(screen.view<QLabel>("lblTitle").text(), QStringLiteral("Titel & Text"));
    EXPECT_EQ(screen.view("RichTextBox1").property("plainText").toString(),
              QStringLiteral("0103\n0103\n0103\n"));
    form.lamp.fillColor = colors::magenta;
    form.position.value = -40;
    form.text.text = "7";
    form.check.value = true;
    form.choice.text = "10";
    form.group.enabled = false;
    EXPECT_EQ(screen.view("LED_0").property("color").value<QColor>(), QColor(255, 0, 255));
    auto& slider = screen.view<QSlider>("Slider1");
    QTest::mouseClick(&slider, Qt::LeftButton, Qt::NoModifier, QPoint(2, slider.height() / 2));
    QTest::keyClick(&slider, Qt::Key_Right);
    EXPECT_EQ(slider.value(), -40) << "the user cannot move it";
    EXPECT_EQ(screen.view<QComboBox>("cmbAdresse").currentText(), QStringLiteral("10"));
    EXPECT_FALSE(screen.view("optA").isEnabled());
    EXPECT_TRUE(form.happened.empty()) << "only the user's changes call handlers";
}

TEST_F(FormViewTest, SetsThePropertyBeforeTheHandlerHearsOfTheChange) {
    screen.view("txtAdresse").setFocus();
    QTest::keyClicks(&screen.view("txtAdresse"), QStringLiteral("3x"));
    screen.click("chkMemory");
    screen.view("cmbAdresse").setFocus();
    QTest::keyClicks(screen.view<QComboBox>("cmbAdresse").lineEdit(), QStringLiteral("2"));

    EXPECT_EQ(form.happened, (Happened{"change 3", "change 3x", "check", "choice 2"}));
    EXPECT_TRUE(form.check.value.get());
    EXPECT_EQ(screen.view<QComboBox>("cmbAdresse").currentText(), QStringLiteral("2"))
        << "typing completes nothing";
}

TEST_F(FormViewTest, AComboBoxKeepsItsListAndWhatTheUserMarked) {
    auto& box = screen.view<QComboBox>("cmbAdresse");
    QLineEdit& edit = *box.lineEdit();
    edit.setFocus();
    QTest::keyClicks(&edit, QStringLiteral("12a"));
    QTest::keyClick(&edit, Qt::Key_Return);
    EXPECT_EQ(box.count(), 3);
    form.choice.items = {"4", "5"};
    EXPECT_EQ(box.count(), 2);
    EXPECT_EQ(form.choice.text.get(), "12a");

    edit.setSelection(1, 2);
    screen.view("cmdOK").setFocus(Qt::MouseFocusReason);
    EXPECT_EQ(form.choice.selectedText.get(), "2a");
    edit.setFocus();
    edit.deselect();
    edit.setSelection(0, 1);
    edit.deselect();
    EXPECT_EQ(form.choice.selectedText.get(), "");
}

TEST_F(FormViewTest, OptionsAreOneGroupAndOneTabStop) {
    const auto stops = [this] {
        std::string names;
        for (const char* name : {"optA", "optB", "optC"}) {
            names += (screen.view(name).focusPolicy() & Qt::TabFocus) != 0 ? name : "";
        }
        return names;
    };
    EXPECT_EQ(stops(), "optA") << "nothing is set yet";

    screen.click("optB");
    EXPECT_EQ(stops(), "optB");
    screen.click("optB");
    EXPECT_TRUE(form.optB.value.get()) << "a second click leaves it set";

    form.optC.enabled = false;
    screen.press(Qt::Key_Down);  // over the disabled one, round to the first
    EXPECT_TRUE(form.optA.value.get());
    EXPECT_FALSE(screen.view<QRadioButton>("optB").isChecked());
    EXPECT_EQ(screen.focused(), QStringLiteral("optA"));
    EXPECT_EQ(form.happened, (Happened{"b", "a"}));

    form.optC.value = true;
    EXPECT_FALSE(screen.view<QRadioButton>("optA").isChecked());
    EXPECT_EQ(form.happened.size(), 2U) << "set by the program, not clicked";
}

TEST_F(FormViewTest, TabVisitsTheControlsInTheOrderOfTheLayout) {
    EXPECT_EQ(screen.focused(), QStringLiteral("optA")) << "the first control has the keyboard";
    QStringList visited;
    for (int stop = 0; stop < 6; ++stop) {
        screen.press(Qt::Key_Tab);
        QWidget* widget = QApplication::focusWidget();
        visited += widget->objectName().isEmpty() || widget->objectName().startsWith(QStringLiteral("qt_"))
                       ? widget->parentWidget()->objectName()
                       : widget->objectName();
    }
    EXPECT_EQ(visited.join(QLatin1Char(' ')).toStdString(),
              "txtAdresse chkMemory cmbAdresse RichTextBox1 cmdOK cmdCancel");
}

TEST_F(FormViewTest, EnterAndEscapePressTheirButtonsFromAnywhere) {
    for (const char* name : {"txtAdresse", "cmbAdresse", "chkMemory", "optA", "RichTextBox1"}) {
        form.happened.clear();
        screen.view(name).setFocus();
        screen.press(Qt::Key_Return);
        screen.press(Qt::Key_Enter);
        screen.press(Qt::Key_Escape);
        EXPECT_EQ(form.happened, (Happened{"ok", "ok", "cancel"})) << name;
    }
    form.happened.clear();
    screen.view("cmdCancel").setFocus();
    screen.press(Qt::Key_Return);
    EXPECT_EQ(form.happened, Happened{"cancel"}) << "the button that has the focus takes Enter itself";

    form.happened.clear();
    form.hasCancel = false;
    screen.press(Qt::Key_Escape);
    form.ok.enabled = false;
    screen.view("txtAdresse").setFocus();
    screen.press(Qt::Key_Return);
    EXPECT_EQ(form.happened, Happened{"close"});
}

TEST_F(FormViewTest, AmongButtonsOnlyTheDefaultOneHasTheKeyboard) {
    screen.windows.close(form);
    auto next = std::make_unique<DemoChild>();
    for (OptionButton* option : {&next->optA, &next->optB, &next->optC}) {
        option->enabled = false;
    }
    for (Control* control :
         std::initializer_list<Control*>{&next->text, &next->check, &next->choice, &next->log}) {
        control->enabled = false;
    }
    next->defaultIsCancel = true;
    screen.open(std::move(next));
    EXPECT_EQ(screen.focused(), QStringLiteral("cmdCancel")) << "not the button that stands first";
}

TEST_F(FormViewTest, LettersPressButtonsTogetherWithAlt) {
    screen.view("txtAdresse").setFocus();
    screen.press(Qt::Key_B, Qt::AltModifier);
    screen.press(Qt::Key_A, Qt::AltModifier);
    EXPECT_TRUE(QTest::qWaitFor([this] { return form.happened.size() == 2; }))
        << "a press takes a moment to see";
    EXPECT_EQ(form.happened, (Happened{"ok", "check"}));

    form.ok.caption = "Nehmen & abgeben";
    const auto& button = screen.view<QPushButton>("cmdOK");
    EXPECT_EQ(button.shortcut(), QKeySequence(QStringLiteral("Alt+B"))) << "an & in a text is no key";
    EXPECT_EQ(button.accessibleName(), QStringLiteral("Nehmen & abgeben"));
}

TEST_F(FormViewTest, AHandlerMayCloseItsOwnWindow) {
    bool unharmed = false;
    form.ok.click = [&, form = &form] {
        screen.windows.close(*form);
        screen.frontEnd.desktop().processEvents();
        form->value.caption = "still an object";
        unharmed = true;
    };
    screen.click("cmdOK");
    EXPECT_TRUE(unharmed);
    EXPECT_EQ(screen.windows.find("frmChild"), nullptr);
    screen.settle();
    EXPECT_EQ(screen.mainView().findChild<QWidget*>(QStringLiteral("frmChild")), nullptr);
}

TEST_F(FormViewTest, GrowsWithItsContentsSoThatNothingIsCut) {
    form.value.caption = std::string(40, 'W');
    screen.settle();
    screen.settle();
    const auto& label = screen.view<QLabel>("lblValue");
    EXPECT_GE(label.width(), label.sizeHint().width());
    EXPECT_GE(screen.view("frmChild").parentWidget()->width(), label.width());
}

}  // namespace

}  // namespace vek::test
