#include <gtest/gtest.h>

#include <QApplication>
#include <QClipboard>
#include <QFontMetricsF>
#include <QImage>
#include <QScreen>
#include <QScrollBar>
#include <QTest>
#include <algorithm>
#include <functional>
#include <set>
#include <string>
#include <vector>

#include "ui/qt/logview.h"

namespace vek::test {

namespace {

class LogViewTest : public ::testing::Test {
  protected:
    LogViewTest() {
        view.resize(300, 200);
        view.show();
    }

    void append(int lines) {
        for (int line = 0; line < lines; ++line) {
            store.append(LogColor::Black, LogForm::Text, "line " + std::to_string(store.lineCount()));
        }
    }

    void settle() { QTest::qWait(80); }

    QPoint at(int row, double column) const {
        const double width = QFontMetricsF(view.font()).horizontalAdvance(QLatin1Char('0'));
        return {static_cast<int>(3 + column * width),
                static_cast<int>((row + 0.5) * view.fontMetrics().lineSpacing())};
    }

    QScrollBar& bar() { return *view.verticalScrollBar(); }

    LogStore store;
    LogView view{store, nullptr};
};

// A technician who watches the end must not find the view standing still, whatever becomes of its window.
TEST_F(LogViewTest, FollowsTheEndWhateverBecomesOfItsWindow) {
    const std::vector<std::pair<const char*, std::function<void()>>> events = {
        {"lower", [this] { view.resize(300, 90); }},
        {"higher", [this] { view.resize(300, 400); }},
        {"a line wider than the view",
         [this] { store.append(LogColor::Red, LogForm::Text, std::string(200, 'x')); }},
        {"a larger font", [this] { view.setFont(QFont(view.font().family(), 30)); }},
        {"narrower", [this] { view.resize(120, 400); }},
        {"hidden and shown while the log goes on",
         [this] {
             view.hide();
             append(50);
             view.show();
         }},
        {"minimised", [this] { view.showMinimized(); }},
        {"restored", [this] { view.showNormal(); }},
    };
    constexpr int longestLag = 1000;  // milliseconds
    const auto isAtEnd = [this] {
        const int linesKnown = bar().maximum() + bar().pageStep();
        return linesKnown == static_cast<int>(store.lineCount()) && bar().value() == bar().maximum();
    };
    append(100);
    settle();
    for (const auto& [what, happen] : events) {
        append(7);
        happen();
        EXPECT_TRUE(QTest::qWaitFor(isAtEnd, longestLag)) << what;
    }
    bar().setValue(10);  // but the user has scrolled up
    append(100);
    settle();
    EXPECT_EQ(bar().value(), 10);
    QTest::keyClick(&view, Qt::Key_End);
    append(1);
    EXPECT_TRUE(QTest::qWaitFor(isAtEnd, longestLag));
}

TEST_F(LogViewTest, LinesHaveTheirColours) {
    store.append(LogColor::Red, LogForm::Hex, std::string(40, '\xEE'));
    store.append(LogColor::Blue, LogForm::Hex, std::string(40, '\xEE'));
    settle();
    const QImage picture = view.viewport()->grab().toImage();
    const int height = view.fontMetrics().lineSpacing();
    std::set<QRgb> found[2];
    for (int y = 0; y < 2 * height; ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            found[y / height].insert(picture.pixel(x, y));
        }
    }
    EXPECT_TRUE(found[0].contains(0xFFFF0000) && found[1].contains(0xFF0000FF));
}

// Appending and scrolling draw only what comes into view, and the scroll bar only when its handle has moved.
TEST_F(LogViewTest, TheScreenAlwaysShowsWhatAWholeRepaintWould) {
    const auto compare = [this](const std::string& when) {
        settle();
        const QImage shown = view.screen()->grabWindow(view.winId()).toImage();
        const QImage whole = view.grab().toImage().convertToFormat(shown.format());
        ASSERT_FALSE(shown.isNull());
        EXPECT_EQ(shown, whole) << when;
    };
    for (const int lines : {1, 4, 6, 30, 1, 2000, 1}) {
        append(lines);
        compare("appended " + std::to_string(lines));
    }
    for (const int value : {bar().maximum() - 1, 900, 903, 0}) {
        bar().setValue(value);
        append(2);
        compare("scrolled to " + std::to_string(value));
    }
    view.horizontalScrollBar()->setValue(17);
    compare("scrolled to the side");
    view.resize(250, 317);
    append(1);
    compare("resized");
}

TEST_F(LogViewTest, MarksWithMouseAndKeysAndCopies) {
    append(5);
    settle();
    QWidget* const page = view.viewport();
    QTest::mousePress(page, Qt::LeftButton, Qt::NoModifier, at(1, 2));
    QTest::mouseMove(page, at(2, 4));
    QTest::mouseRelease(page, Qt::LeftButton, Qt::NoModifier, at(2, 4));
    EXPECT_EQ(view.selectedText(), QStringLiteral("ne 1\nline"));

    QTest::mouseClick(page, Qt::LeftButton, Qt::ShiftModifier, at(1, 4));
    EXPECT_EQ(view.selectedText(), QStringLiteral("ne"));

    QTest::mouseDClick(page, Qt::LeftButton, Qt::NoModifier, at(3, 1));
    EXPECT_EQ(view.selectedText(), QStringLiteral("line"));

    view.setFocus();
    QTest::keyClick(&view, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(&view, Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QApplication::clipboard()->text(), QStringLiteral("line 0\nline 1\nline 2\nline 3\nline 4"));
}

}  // namespace

}  // namespace vek::test
