#include <gtest/gtest.h>

#include <QFileDialog>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>
#include <csignal>

#include "screen.h"

namespace vek::test {

namespace {

/// Calls `look` as soon as a dialog of this class is open.
template <class Dialog, class Look>
void whenOpen(Look look) {
    QTimer::singleShot(0, qApp, [look] {
        auto* const dialog = qobject_cast<Dialog*>(QApplication::activeModalWidget());
        dialog == nullptr ? whenOpen<Dialog>(look) : look(*dialog);
    });
}

class DesktopTest : public ::testing::Test {
  protected:
    Screen screen;
    Desktop& desktop = screen.frontEnd.desktop();
};

TEST_F(DesktopTest, MessageBoxShowsTextAndTitleExactly) {
    const MessageBox box{"Abbrechen  ->  Programm\n\n<b>R & S</b>", "Fehler", MessageIcon::Stop,
                         MessageButtons::OkCancel};
    whenOpen<QMessageBox>([&](QMessageBox& view) {
        EXPECT_EQ(view.textFormat(), Qt::PlainText);
        EXPECT_EQ(view.icon(), QMessageBox::Critical);
        EXPECT_EQ(view.button(QMessageBox::Ok)->text(), QStringLiteral("OK"));
        EXPECT_EQ(view.button(QMessageBox::Cancel)->text(), QStringLiteral("Abbrechen"));
        QTest::keyClick(&view, Qt::Key_Escape);
    });
    EXPECT_EQ(desktop.messageBox(box), MessageAnswer::Cancel);
    whenOpen<QMessageBox>([](QMessageBox& view) {
        EXPECT_EQ(view.icon(), QMessageBox::Information);
        EXPECT_EQ(view.buttons().size(), 1);
        QTest::keyClick(&view, Qt::Key_Escape);
    });
    EXPECT_EQ(desktop.messageBox({"Text", "Hinweis", MessageIcon::Information}), MessageAnswer::Ok);
}

TEST_F(DesktopTest, FileDialogGivesTheChosenPathOrNothing) {
    const FileDialog dialog{"Speichern", "gerät.GPM", "Parameter", "*.GPM", FileDialog::Purpose::Save};
    whenOpen<QFileDialog>([](QFileDialog& view) {
        EXPECT_EQ(view.nameFilters(), QStringList{QStringLiteral("Parameter (*.GPM)")});
        static_cast<QDialog&>(view).accept();
    });
    const auto chosen = desktop.chooseFile(dialog);
    ASSERT_TRUE(chosen.has_value());
    EXPECT_TRUE(chosen->ends_with("/gerät.GPM")) << *chosen;

    whenOpen<QFileDialog>([](QFileDialog& view) { static_cast<QDialog&>(view).reject(); });
    EXPECT_FALSE(desktop.chooseFile(dialog).has_value());
}

/// The end of the program from within event loops that handlers have started.
class EndTest : public ::testing::Test {
  protected:
    void start(const std::function<void(Desktop&)>& handler) {
        frontEnd.dispatcher().onEnd = [this] { ++ends; };
        status = frontEnd.exec([&] {
            windows.open(std::make_unique<DemoMain>());
            QTimer::singleShot(0, qApp, [this, handler] {
                frontEnd.dispatcher().run([&] {
                    handler(frontEnd.desktop());
                    wentOn = true;
                });
            });
        });
    }

    void TearDown() override {
        // An end before the event loop has begun leaves the toolkit refusing all loops but a new main loop.
        QTimer::singleShot(0, qApp, &QCoreApplication::quit);
        QApplication::exec();
    }

    FrontEnd frontEnd;
    Windows windows{frontEnd};
    int status = -1;
    int ends = 0;
    bool wentOn = false;
};

TEST_F(EndTest, FromBehindAMessageBoxUnwindsAllHandlers) {
    start([this](Desktop& desktop) {
        whenOpen<QMessageBox>([this](QMessageBox& /*view*/) {
            frontEnd.dispatcher().run([] { throw ProgramEnd(); });
            EXPECT_EQ(QApplication::activeModalWidget(), nullptr) << "nothing is shown any more";
        });
        desktop.messageBox({"Text", "Titel"});
    });
    EXPECT_EQ(status, 0);
    EXPECT_EQ(ends, 1);
    EXPECT_FALSE(wentOn);
}

TEST_F(EndTest, FromProcessedEventsUnwindsTheHandlerThatYielded) {
    start([this](Desktop& desktop) {
        QTimer::singleShot(0, qApp, [this] { frontEnd.dispatcher().run([] { throw ProgramEnd(); }); });
        while (true) {
            desktop.processEvents();
        }
    });
    EXPECT_EQ(status, 0);
    EXPECT_FALSE(wentOn);

    bool called = false;
    frontEnd.dispatcher().run([&] { called = true; });
    EXPECT_FALSE(called);
    EXPECT_THROW(frontEnd.desktop().messageBox({"Text", "Titel"}), ProgramEnd);
}

TEST_F(EndTest, ATerminateSignalIsAPressOfTheCloseBox) {
    auto form = std::make_unique<DemoMain>();
    form->close = [] { throw ProgramEnd(); };
    status = frontEnd.exec([&] {
        windows.open(std::move(form));
        std::raise(SIGTERM);
    });
    EXPECT_EQ(status, 0);
}

TEST_F(EndTest, AtTheStartShowsNothing) {
    status = frontEnd.exec([] { throw ProgramEnd(); });
    EXPECT_EQ(status, 0);
    windows.open(std::make_unique<DemoMain>());
    for (const QWidget* window : QApplication::topLevelWidgets()) {
        EXPECT_FALSE(window->isVisible());
    }
}

TEST(NumberLocaleTest, FollowsTheEnvironmentAlsoForLocalesThatAreNotInstalled) {
    const std::tuple<const char*, const char*, const char*> cases[] = {
        {"de_DE.UTF-8", ",", "."}, {"en_US.UTF-8", ".", ","}, {"C", ".", ""}, {"POSIX", ".", ""}};
    const QByteArray all = qgetenv("LC_ALL");
    for (const auto& [name, decimalPoint, groupSeparator] : cases) {
        qputenv("LC_ALL", name);
        const NumberLocale numbers = systemNumberLocale();
        EXPECT_EQ(numbers.decimalPoint, decimalPoint) << name;
        EXPECT_EQ(numbers.groupSeparator, groupSeparator) << name;
    }
    qputenv("LC_ALL", all);
}

}  // namespace

}  // namespace vek::test
