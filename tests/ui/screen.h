#pragma once

#include <QApplication>
#include <QString>
#include <QTest>
#include <QTimer>
#include <QWidget>
#include <memory>
#include <utility>

#include "demoforms.h"
#include "program/windows.h"
#include "ui/qt/frontend.h"

namespace vek::test {

/// A front end with the demo's main window on the screen, handled as a user would.
class Screen {
  public:
    Screen() {
        frontEnd.dispatcher().onIdle = [this] { windows.collect(); };
        main = &open(std::make_unique<DemoMain>());
        QApplication::setActiveWindow(&mainView());
    }

    template <class FormClass>
    FormClass& open(std::unique_ptr<FormClass> form) {
        FormClass& opened = *form;
        frontEnd.dispatcher().run([&] { windows.open(std::move(form)); });
        settle();
        return opened;
    }

    /// The widget with this object name.
    template <class View = QWidget>
    View& view(const char* name) {
        for (QWidget* window : QApplication::topLevelWidgets()) {
            if (auto* found = window->findChild<View*>(QString::fromUtf8(name))) {
                return *found;
            }
        }
        throw std::runtime_error(std::string("no widget ") + name);
    }

    QWidget& mainView() {
        for (QWidget* window : QApplication::topLevelWidgets()) {
            if (window->objectName() == QStringLiteral("frmDemo")) {
                return *window;
            }
        }
        throw std::runtime_error("no main window");
    }

    /// Near the left edge, where a box or circle is that has its text beside it.
    void click(const char* name) {
        QWidget& widget = view(name);
        QTest::mouseClick(&widget, Qt::LeftButton, Qt::NoModifier, QPoint(8, widget.height() / 2));
    }

    /// A key for whatever has the keyboard.
    static void press(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QWidget* const popup = QApplication::activePopupWidget();
        QWidget* const target = popup != nullptr ? popup : QApplication::focusWidget();
        QTest::keyClick(target, static_cast<Qt::Key>(key), modifiers);
    }

    static QString focused() {
        return QApplication::focusWidget() == nullptr ? QString() : QApplication::focusWidget()->objectName();
    }

    static void settle() {
        QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    /// Ends as the program does, from within the event loop, which leaves the toolkit ready for the next one.
    ~Screen() {
        frontEnd.exec([this] {
            QTimer::singleShot(0, qApp, [this] { frontEnd.dispatcher().run([] { throw ProgramEnd(); }); });
        });
    }

    FrontEnd frontEnd;
    Windows windows{frontEnd};
    DemoMain* main = nullptr;
};

}  // namespace vek::test
