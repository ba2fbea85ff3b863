#include <gtest/gtest.h>

#include <QCursor>
#include <QMessageBox>
#include <QPushButton>
#include <csignal>
#include <filesystem>

#include "platform/pseudoterminal.h"
#include "platform/seams/system.h"
#include "platform/serialport.h"
#include "platform/temporaryfolder.h"
#include "screen.h"

namespace vek::test {

namespace {

using namespace std::chrono_literals;

class DesktopTest : public ::testing::Test {
  protected:
    Screen screen;
    QtDesktop& desktop = screen.frontEnd.desktop();
};

TEST_F(DesktopTest, MessageBoxShowsTextAndTitleExactly) {
    const MessageBox box{"Abbrechen  ->  Programm\n\n<b>R & S</b>", "Fehler", MessageIcon::Stop,
                         MessageButtons::OkCancel};
    for (const auto& [key, answer] :
         {std::pair(Qt::Key_Escape, MessageAnswer::Cancel), std::pair(Qt::Key_Return, MessageAnswer::Ok)}) {
        whenOpen<QMessageBox>([key = key](QMessageBox& view) {
            EXPECT_EQ(view.textFormat(), Qt::PlainText);
            EXPECT_EQ(view.button(QMessageBox::Ok)->text(), QStringLiteral("OK"));
            EXPECT_EQ(view.button(QMessageBox::Cancel)->text(), QStringLiteral("Abbrechen"));
            QTest::keyClick(&view, key);
        });
        EXPECT_EQ(desktop.messageBox(box), answer) << key;
    }
    const MessageBox leavable{"Text", "Titel", MessageIcon::None, MessageButtons::OkCancel,
                              MessageAnswer::Ok};
    for (const MessageBox& other : {MessageBox{"Text", "Hinweis", MessageIcon::Information}, leavable}) {
        whenOpen<QMessageBox>([](QMessageBox& view) { QTest::keyClick(&view, Qt::Key_Escape); });
        EXPECT_EQ(desktop.messageBox(other), MessageAnswer::Ok);
    }
}

/// Counts what the user does with the mouse.
class MouseWatch : public QObject {
  public:
    MouseWatch() { qApp->installEventFilter(this); }
    bool eventFilter(QObject* /*watched*/, QEvent* event) override {
        moves += event->type() == QEvent::MouseMove ? 1 : 0;
        return false;
    }

    int moves = 0;
};

TEST_F(DesktopTest, WhatTheUserDoesWhileInputIsHeldComesAfterwards) {
    const MouseWatch mouse;
    QWidget& window = screen.view("frmModBus");
    {
        const InputHold hold(desktop);
        QCursor::setPos(window.mapToGlobal(QPoint(50, 100)));
        desktop.processEvents();
        desktop.waitForEvents(desktop.now() + 5ms);
        EXPECT_EQ(mouse.moves, 0);
    }
    desktop.processEvents();
    EXPECT_GT(mouse.moves, 0);
}

TEST_F(DesktopTest, AWaitEndsWithItsTimeOrWithAByteOnTheLine) {
    PseudoTerminal device;
    const TemporaryFolder folder;
    std::filesystem::create_directory(folder.path() / "ports");
    std::filesystem::create_symlink(device.path(), folder.file("ports/com1"));
    SerialPort line(systemLine(folder.path().string()));
    ASSERT_TRUE(line.setPortNumber(1) && line.setSettings("9600,e,8,1"));
    ASSERT_EQ(line.open(), PortError::None);
    desktop.watchLine(line);
    screen.main->Timer2.enabled = false;  // which would wake it, too
    screen.settle();

    const auto waited = [this](Milliseconds longest) {
        const TimePoint begin = desktop.now();
        desktop.waitForEvents(begin + longest);
        return desktop.now() - begin;
    };
    EXPECT_GE(waited(200ms), 190ms);
    device.send("x");
    EXPECT_LT(waited(5s), 2s);
    line.close();
}

/// The end of the program from within event loops that handlers have started.
class EndTest : public DesktopTest {
  protected:
    void start(const std::function<void()>& handler) {
        dispatcher.onEnd = [this] { ++ends; };
        QTimer::singleShot(0, qApp, [this, handler] {
            dispatcher.run([&] {
                handler();
                wentOn = true;
            });
        });
        EXPECT_EQ(screen.frontEnd.exec([] {}), 0);
        EXPECT_EQ(ends, 1);
    }

    void TearDown() override {
        // After an end the toolkit refuses all loops but a new main loop.
        QTimer::singleShot(0, qApp, &QCoreApplication::quit);
        QApplication::exec();
    }

    Dispatcher& dispatcher = screen.frontEnd.dispatcher();
    int ends = 0;
    bool wentOn = false;
};

TEST_F(EndTest, FromBehindAMessageBoxUnwindsAllHandlers) {
    start([this] {
        whenOpen<QMessageBox>([this](QMessageBox& /*view*/) {
            dispatcher.run([] { throw ProgramEnd(); });
            EXPECT_EQ(QApplication::activeModalWidget(), nullptr) << "nothing is shown any more";
        });
        desktop.messageBox({"Text", "Titel"});
    });
    EXPECT_FALSE(wentOn);
}

TEST_F(EndTest, FromProcessedEventsUnwindsTheHandlerThatYielded) {
    start([this] {
        QTimer::singleShot(0, qApp, [this] { dispatcher.run([] { throw ProgramEnd(); }); });
        while (true) {
            desktop.processEvents();
        }
    });
    EXPECT_FALSE(wentOn);
    EXPECT_THROW(desktop.messageBox({"Text", "Titel"}), ProgramEnd);
}

TEST_F(EndTest, ATerminateSignalIsAPressOfTheCloseBox) {
    start([] { std::raise(SIGTERM); });
}

TEST(StartTest, ATerminateSignalEndsTheProgramBehindItsFirstMessageBox) {
    FrontEnd frontEnd;
    bool wentOn = false;
    EXPECT_EQ(frontEnd.exec([&] {
        whenOpen<QMessageBox>([](QMessageBox& /*view*/) { std::raise(SIGTERM); });
        frontEnd.desktop().messageBox({"Text", "Titel"});
        wentOn = true;
    }),
              0);
    EXPECT_FALSE(wentOn);
    QTimer::singleShot(0, qApp, &QCoreApplication::quit);
    QApplication::exec();
}

TEST(NumberLocaleTest, FollowsTheEnvironmentAlsoForLocalesThatAreNotInstalled) {
    const char* const cases[][3] = {
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
