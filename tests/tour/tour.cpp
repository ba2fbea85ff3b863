#include "tour.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QElapsedTimer>
#include <QFile>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QPixmap>
#include <QPointer>
#include <QTest>
#include <QThread>
#include <algorithm>
#include <cstdio>

namespace {

using namespace Qt::StringLiterals;

constexpr int lookInterval = 10;  // milliseconds

/// How many times longer than usual everything may take, as under a tool that slows the program down.
int patience() {
    return std::max(1, qEnvironmentVariableIntValue("TOUR_PATIENCE"));
}

/// Starts in the program's thread without waiting for the end: it may open a message box.
void start(std::function<void()> action) {
    QMetaObject::invokeMethod(qApp, std::move(action), Qt::QueuedConnection);
}

QString withoutMarks(QString text) {
    text.replace(u"&&"_s, QString(QChar::Null)).remove(u'&').replace(QChar::Null, u'&');
    return text;
}

QAction* entry(const QWidget* menu, const QString& text) {
    const QList<QAction*> actions = menu->actions();
    const auto found = std::ranges::find_if(
        actions, [&](const QAction* action) { return withoutMarks(action->text()) == text; });
    return found == actions.end() ? nullptr : *found;
}

QMessageBox* openBox() {
    auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
    return box != nullptr && box->isVisible() ? box : nullptr;
}

void waitForWidget(const QString& name) {
    Tour::waitFor(u"a visible %1"_s.arg(name), [&] { return Tour::find(name) != nullptr; });
}

void clickOn(QWidget* widget) {
    const bool hasMark = widget->inherits("QRadioButton") || widget->inherits("QCheckBox");
    QTest::mouseClick(widget, Qt::LeftButton, {},
                      hasMark ? QPoint(8, widget->height() / 2) : widget->rect().center());
}

QWidget* windowInFront() {
    const auto* area = Tour::find(u"frmModBus"_s)->findChild<QMdiArea*>();
    const QMdiSubWindow* window = area->currentSubWindow();
    return window == nullptr ? Tour::find(u"frmModBus"_s) : window->widget();
}

/// Null unless just one button has the caption.
QAbstractButton* buttonWith(const QString& frame, const QString& caption) {
    QAbstractButton* found = nullptr;
    for (auto* button : windowInFront()->findChildren<QAbstractButton*>()) {
        const auto* group = qobject_cast<QGroupBox*>(button->parentWidget());
        const bool inFrame = frame.isEmpty() || (group != nullptr && Tour::textOf(group) == frame);
        if (button->isVisible() && inFrame && Tour::textOf(button) == caption) {
            if (found != nullptr) {
                return nullptr;
            }
            found = button;
        }
    }
    return found;
}

QRect placeOf(const QWidget* widget) {
    return {widget->mapTo(widget->window(), QPoint()), widget->size()};
}

/// The controls that hold no others.
QList<QWidget*> controlsOf(const QWidget* form) {
    QList<QWidget*> controls;
    for (QWidget* widget : form->findChildren<QWidget*>()) {
        const bool parts = widget->inherits("QGroupBox") || widget->inherits("QComboBox");
        const bool own = !widget->objectName().isEmpty() && !widget->objectName().startsWith(u"qt_"_s);
        if (own && !parts && widget->isVisible() && widget->window() == form->window()) {
            controls.append(widget);
        }
    }
    return controls;
}

/// What is not as it must be; empty when all is well.
QString faultIn(const QWidget* form) {
    const QList<QWidget*> controls = controlsOf(form);
    for (const QWidget* control : controls) {
        const bool shorter = control->inherits("QLabel") || control->inherits("QAbstractButton");
        const QSize needed = control->minimumSizeHint();
        if (shorter && (control->width() < needed.width() || control->height() < needed.height())) {
            return control->objectName() + u" is cut"_s;
        }
        if (!placeOf(form).contains(placeOf(control)) ||
            control->visibleRegion().boundingRect().size() != control->size()) {
            return control->objectName() + u" is not to be seen as a whole"_s;
        }
        for (const QWidget* other : controls) {
            if (other != control && !other->isAncestorOf(control) && !control->isAncestorOf(other) &&
                placeOf(other).intersects(placeOf(control))) {
                return control->objectName() + u" lies over "_s + other->objectName();
            }
        }
    }
    return {};
}

}  // namespace

void Tour::print(const QString& line) {
    std::printf("%s\n", line.toUtf8().constData());
    std::fflush(stdout);
}

void Tour::waitFor(const QString& what, const std::function<bool()>& condition, int seconds) {
    QElapsedTimer timer;
    timer.start();
    while (!inProgram(condition)) {
        if (timer.elapsed() > qint64{seconds} * 1000 * patience()) {
            throw TourFailure(u"not seen within %1 s: %2"_s.arg(seconds).arg(what));
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

QString Tour::textOf(const QWidget* widget) {
    for (const char* property : {"text", "currentText", "title", "plainText"}) {
        const QVariant text = widget->property(property);
        if (text.isValid()) {
            const bool marked = widget->inherits("QAbstractButton") || widget->inherits("QGroupBox");
            return marked ? withoutMarks(text.toString()) : text.toString();
        }
    }
    return widget->windowTitle();
}

void Tour::menu(const QStringList& path, const QString& pictureFile) const {
    waitForWidget(u"frmModBus"_s);
    start([text = path.first()] {
        auto* bar = qobject_cast<QMainWindow*>(find(u"frmModBus"_s))->menuBar();
        QTest::mouseClick(bar, Qt::LeftButton, {}, bar->actionGeometry(entry(bar, text)).center());
    });
    for (const QString& text : path.sliced(1)) {
        const auto shown = [] { return qobject_cast<QMenu*>(QApplication::activePopupWidget()); };
        waitFor(u"menu entry %1"_s.arg(text),
                [&] { return shown() != nullptr && entry(shown(), text) != nullptr; });
        if (text == path.last() && !pictureFile.isEmpty()) {
            inProgram([&] { return shown()->grab().save(folder_ + u'/' + pictureFile); });
        }
        start([text, shown] {
            QTest::mouseClick(shown(), Qt::LeftButton, {},
                              shown()->actionGeometry(entry(shown(), text)).center());
        });
    }
}

void Tour::press(const QString& frame, const QString& caption) {
    waitFor(u"just one button %1 %2 that can be pressed"_s.arg(frame, caption), [&] {
        const QAbstractButton* button = buttonWith(frame, caption);
        return button != nullptr && button->isEnabled();
    });
    start([frame, caption] { clickOn(buttonWith(frame, caption)); });
}

void Tour::click(const QString& name) {
    waitFor(u"%1 can be pressed"_s.arg(name),
            [&] { return find(name) != nullptr && find(name)->isEnabled(); });
    start([name] { clickOn(find(name)); });
}

void Tour::type(const QString& name, const QString& typed) {
    waitForWidget(name);
    inProgram([&] {
        QWidget* widget = find(name);
        widget->setFocus();
        QTest::keyClick(widget, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClick(widget, Qt::Key_Delete);
        QTest::keyClicks(widget, typed);
        return true;
    });
}

void Tour::key(const QString& name, Qt::Key pressed) {
    waitForWidget(name);
    start([name, pressed] { QTest::keyClick(find(name), pressed); });
}

void Tour::answer(const QString& title, const QString& boxText, const QString& pictureFile) const {
    waitFor(u"a message box \"%1\""_s.arg(title), [] { return openBox() != nullptr; });
    const QString seen = inProgram([] { return openBox()->windowTitle() + u": "_s + openBox()->text(); });
    if (seen != title + u": "_s + boxText) {
        throw TourFailure(u"expected message box \"%1: %2\", not \"%3\""_s.arg(title, boxText, seen));
    }
    if (!pictureFile.isEmpty()) {
        inProgram([&] { return openBox()->grab().save(folder_ + u'/' + pictureFile); });
    }
    const auto box = inProgram([] { return QPointer<QMessageBox>(openBox()); });
    start([box] { QTest::mouseClick(box->button(QMessageBox::Ok), Qt::LeftButton); });
    waitFor(u"the message box closes"_s, [&] { return box.isNull() || !box->isVisible(); });
}

void Tour::picture(const QString& name, const QString& file) const {
    waitForWidget(name);
    const QString fault = inProgram([&] {
        const bool saved = find(name)->window()->grab().save(folder_ + u'/' + file);
        return saved ? faultIn(find(name)) : u"it cannot be written"_s;
    });
    if (!fault.isEmpty()) {
        throw TourFailure(u"picture %1: %2"_s.arg(file, fault));
    }
}

void Tour::complete() const {
    QFile mark(folder_ + u"/complete"_s);
    if (!mark.open(QIODevice::WriteOnly)) {
        throw TourFailure(u"cannot write %1"_s.arg(mark.fileName()));
    }
}
