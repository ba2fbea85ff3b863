#include <gtest/gtest.h>

#include <QAction>
#include <QIcon>
#include <QMainWindow>
#include <QMdiSubWindow>
#include <QMenu>
#include <QPalette>
#include <QPixmap>
#include <QThreadPool>
#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <functional>
#include <optional>
#include <ranges>
#include <utility>

#include "screen.h"

namespace vek::test {

namespace {

using Happened = std::vector<std::string>;

/// Sees what there is when something is painted for the first time.
class FirstPainting : public QObject {
  public:
    explicit FirstPainting(std::function<void()> seen) : seen_(std::move(seen)) {
        qApp->installEventFilter(this);
    }

    bool eventFilter(QObject* /*watched*/, QEvent* event) override {
        if (event->type() == QEvent::Paint) {
            if (const auto seen = std::exchange(seen_, nullptr)) {
                seen();
            }
        }
        return false;
    }

  private:
    std::function<void()> seen_;
};

std::ptrdiff_t besideViews() {
    return std::ranges::count(QApplication::allWidgets(), QStringLiteral("frmBeside"), &QWidget::objectName);
}

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
}

TEST_F(MainWindowTest, LettersOfEntriesThatCannotBeUsedAreFreeForTheWindowInside) {
    DemoChild& child = screen.open(std::make_unique<DemoChild>());
    for (MenuItem* entry : form.menu()) {
        entry->enabled = false;
    }
    screen.view("txtAdresse").setFocus();
    screen.press(Qt::Key_S, Qt::AltModifier);
    EXPECT_TRUE(QTest::qWaitFor([&] { return child.happened == Happened{"cancel"}; }));
    form.info.enabled = true;
    screen.press(Qt::Key_I, Qt::AltModifier);
    EXPECT_EQ(form.happened, Happened{"info"});
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

TEST_F(MainWindowTest, CloseBoxesOnlyAskTheirForms) {
    DemoChild& child = screen.open(std::make_unique<DemoChild>());
    auto& window = screen.view<QMdiSubWindow>("");
    window.showMaximized();
    screen.settle();
    EXPECT_EQ(screen.mainView().windowTitle(), QStringLiteral("Demo   V1.2.3")) << "without the child's";
    form.caption = "Demo   mit Gerät";
    EXPECT_EQ(screen.mainView().windowTitle(), QStringLiteral("Demo   mit Gerät"));
    window.close();
    EXPECT_EQ(child.happened, Happened{"close"});
    EXPECT_TRUE(screen.view("frmChild").isVisible());

    LogStore store;
    DemoBeside& beside = screen.open(std::make_unique<DemoBeside>(store));
    QWidget* const terminal = screen.view("frmBeside").window();
    terminal->close();
    EXPECT_FALSE(beside.visible || terminal->isVisible());
    beside.visible = true;
    EXPECT_TRUE(terminal->isVisible());

    screen.mainView().close();
    EXPECT_TRUE(screen.mainView().isVisible());
    screen.windows.closeAll();
}

TEST_F(MainWindowTest, StandsBeforeTheWindowsBesideItAreMade) {
    screen.windows.closeAll();
    screen.settle();
    LogStore store;
    Form& closed = screen.open(std::make_unique<DemoBeside>(store));
    screen.windows.close(closed);
    screen.open(std::make_unique<DemoBeside>(store));
    std::optional<bool> alone;
    const FirstPainting watch([&] { alone = screen.mainView().isVisible() && besideViews() == 0; });
    screen.open(std::make_unique<DemoMain>());
    EXPECT_EQ(alone, true);
    EXPECT_EQ(besideViews(), 1);
    EXPECT_TRUE(screen.view("frmBeside").isVisible());
}

TEST_F(MainWindowTest, IsPaintedWithoutThreads) {
    QThreadPool::globalInstance()->waitForDone();  // those of the tests before, which it keeps for a while
    const auto threads = [] {
        return std::ranges::distance(std::filesystem::directory_iterator("/proc/self/task"));
    };
    const auto before = threads();
    screen.mainView().grab();
    EXPECT_LE(threads(), before);
}

TEST_F(MainWindowTest, PicturesAreDrawnOnceForEachOfTheirLooks) {
    const QIcon icon = action("DEV_MONITOR").icon();
    const QPixmap picture = icon.pixmap(24);
    EXPECT_EQ(icon.pixmap(24).cacheKey(), picture.cacheKey());
    EXPECT_EQ(icon.pixmap(32).width(), 32);
    EXPECT_NE(icon.pixmap(24, QIcon::Disabled).toImage(), picture.toImage());

    const QPalette usual = QGuiApplication::palette();
    QGuiApplication::setPalette(QPalette(Qt::darkBlue));
    EXPECT_NE(icon.pixmap(24).toImage(), picture.toImage()) << "it has the ink of the palette";
    QGuiApplication::setPalette(usual);
}

}  // namespace

}  // namespace vek::test
