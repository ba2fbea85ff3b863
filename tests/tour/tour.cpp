#include "tour.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QElapsedTimer>
#include <QFile>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QPixmap>
#include <QPointer>
#include <QTest>
#include <QThread>
#include <algorithm>
#include <cstdio>

namespace {

constexpr int lookInterval = 10;  // milliseconds

/// How many times longer than usual everything may take, as under a tool that slows the program down.
int patience() {
    return std::max(1, qEnvironmentVariableIntValue("TOUR_PATIENCE"));
}

void print(const QString& line) {
    std::printf("%s\n", line.toUtf8().constData());
    std::fflush(stdout);
}

QString textOf(const QWidget* widget) {
    if (const auto* label = qobject_cast<const QLabel*>(widget)) {
        return label->text();
    }
    if (const auto* button = qobject_cast<const QAbstractButton*>(widget)) {
        return button->text();
    }
    if (const auto* edit = qobject_cast<const QLineEdit*>(widget)) {
        return edit->text();
    }
    if (const auto* combo = qobject_cast<const QComboBox*>(widget)) {
        return combo->currentText();
    }
    if (const auto* group = qobject_cast<const QGroupBox*>(widget)) {
        return group->title();
    }
    const QVariant plainText = widget->property("plainText");
    return plainText.isValid() ? plainText.toString() : widget->windowTitle();
}

/// The menu bar's or menu's entry with this text, mnemonic mark or not.
QAction* entry(const QWidget* menu, const QString& text) {
    for (QAction* action : menu->actions()) {
        if (action->text().remove(QLatin1Char('&')) == text) {
            return action;
        }
    }
    return nullptr;
}

QMessageBox* openBox() {
    auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
    return box != nullptr && box->isVisible() ? box : nullptr;
}

}  // namespace

void Tour::chapter(const QString& title) {
    print(QStringLiteral("\n== %1").arg(title));
}

void Tour::step(const QString& what) {
    print(QStringLiteral("%1. %2").arg(++steps_, 3).arg(what));
}

void Tour::saw(const QString& what) {
    print(QStringLiteral("       -> %1").arg(what));
}

void Tour::waitFor(const QString& what, const std::function<bool()>& condition, int seconds) {
    QElapsedTimer timer;
    timer.start();
    while (!inProgram(condition)) {
        if (timer.elapsed() > qint64{seconds} * 1000 * patience()) {
            throw TourFailure(QStringLiteral("not seen within %1 s: %2").arg(seconds).arg(what));
        }
        QThread::msleep(lookInterval);
    }
}

QWidget* Tour::find(const QString& name) {
    for (QWidget* window : QApplication::topLevelWidgets()) {
        if (!window->isVisible()) {
            continue;
        }
        if (window->objectName() == name) {
            return window;
        }
        for (QWidget* widget : window->findChildren<QWidget*>(name)) {
            if (widget->isVisible()) {
                return widget;
            }
        }
    }
    return nullptr;
}

void Tour::waitForWidget(const QString& name) {
    waitFor(QStringLiteral("a visible %1").arg(name), [&] { return find(name) != nullptr; });
}

QString Tour::text(const QString& name) {
    waitForWidget(name);
    return inProgram([&] { return textOf(find(name)); });
}

void Tour::expectText(const QString& name, const QString& expected) {
    waitForWidget(name);
    waitFor(QStringLiteral("%1 = \"%2\", but \"%3\"").arg(name, expected, text(name)),
            [&] { return textOf(find(name)) == expected; });
    saw(QStringLiteral("%1 shows \"%2\"").arg(name, expected));
}

bool Tour::isEnabled(const QString& name) {
    waitForWidget(name);
    return inProgram([&] { return find(name)->isEnabled(); });
}

QColor Tour::indicator(const QString& name) {
    waitForWidget(name);
    return inProgram([&] {
        QWidget* widget = find(name);
        return widget->grab().toImage().pixelColor(widget->rect().center());
    });
}

void Tour::start(std::function<void()> action) {
    QMetaObject::invokeMethod(qApp, std::move(action), Qt::QueuedConnection);
}

void Tour::menu(const QStringList& path, const QString& pictureFile) {
    const auto popUp = [](const QString& text) {
        return [text] {
            auto* shown = qobject_cast<QMenu*>(QApplication::activePopupWidget());
            return shown != nullptr && entry(shown, text) != nullptr;
        };
    };
    waitForWidget(QStringLiteral("frmModBus"));
    start([text = path.first()] {
        auto* bar = qobject_cast<QMainWindow*>(find(QStringLiteral("frmModBus")))->menuBar();
        QTest::mouseClick(bar, Qt::LeftButton, {}, bar->actionGeometry(entry(bar, text)).center());
    });
    for (int index = 1; index < path.size(); ++index) {
        const QString text = path[index];
        waitFor(QStringLiteral("menu entry %1").arg(text), popUp(text));
        if (index == path.size() - 1 && !pictureFile.isEmpty()) {
            const QString file = folder_ + QLatin1Char('/') + pictureFile;
            inProgram([&] { return QApplication::activePopupWidget()->grab().save(file); });
        }
        start([text] {
            QWidget* shown = QApplication::activePopupWidget();
            auto* menu = qobject_cast<QMenu*>(shown);
            QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(entry(menu, text)).center());
        });
    }
}

void Tour::press(const QString& name) {
    waitForWidget(name);
    waitFor(QStringLiteral("%1 can be pressed").arg(name), [&] { return find(name)->isEnabled(); });
    start([name] {
        if (QWidget* widget = find(name)) {
            const bool hasMark = widget->inherits("QRadioButton") || widget->inherits("QCheckBox");
            const QPoint place = hasMark ? QPoint(8, widget->height() / 2) : widget->rect().center();
            QTest::mouseClick(widget, Qt::LeftButton, {}, place);
        }
    });
}

void Tour::type(const QString& name, const QString& typed) {
    waitForWidget(name);
    inProgram([&] {
        QWidget* widget = find(name);
        widget->setFocus();
        QTest::keyClick(widget, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClicks(widget, typed);
        return true;
    });
}

void Tour::key(const QString& name, Qt::Key pressed) {
    waitForWidget(name);
    start([name, pressed] {
        if (QWidget* widget = find(name)) {
            QTest::keyClick(widget, pressed);
        }
    });
}

void Tour::answer(const QString& title, const QString& boxText, QMessageBox::StandardButton button,
                  const QString& pictureFile) {
    waitFor(QStringLiteral("a message box \"%1\"").arg(title), [] { return openBox() != nullptr; });
    const QString seenTitle = inProgram([] { return openBox()->windowTitle(); });
    const QString seenText = inProgram([] { return openBox()->text(); });
    saw(QStringLiteral("message box \"%1\": %2")
            .arg(seenTitle, QString(seenText).replace(QLatin1Char('\n'), QLatin1Char('|'))));
    if (seenTitle != title || seenText != boxText) {
        throw TourFailure(QStringLiteral("expected message box \"%1\": %2").arg(title, boxText));
    }
    if (!pictureFile.isEmpty()) {
        const QString file = folder_ + QLatin1Char('/') + pictureFile;
        inProgram([&] { return openBox()->grab().save(file); });
    }
    const auto box = inProgram([] { return QPointer<QMessageBox>(openBox()); });
    start([button] {
        if (QMessageBox* shown = openBox()) {
            QTest::mouseClick(shown->button(button), Qt::LeftButton);
        }
    });
    waitFor(QStringLiteral("the message box closes"), [&] { return box.isNull() || !box->isVisible(); });
}

void Tour::picture(const QString& name, const QString& file) {
    waitForWidget(name);
    const QString path = folder_ + QLatin1Char('/') + file;
    if (!inProgram([&] { return find(name)->window()->grab().save(path); })) {
        throw TourFailure(QStringLiteral("cannot write %1").arg(path));
    }
    saw(QStringLiteral("picture %1").arg(file));
}

void Tour::complete() {
    QFile mark(folder_ + QStringLiteral("/complete"));
    if (!mark.open(QIODevice::WriteOnly)) {
        throw TourFailure(QStringLiteral("cannot write %1").arg(mark.fileName()));
    }
}
