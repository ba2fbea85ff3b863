#pragma once

#include <QApplication>
#include <QString>
#include <QTest>
#include <QTimer>
#include <QWidget>
#include <memory>
#include <stdexcept>

#include "app/frmModBus.h"
#include "support/testprogram.h"
#include "ui/qt/frontend.h"

namespace vek::test {

/// Calls `look` as soon as a dialog of this class is open.
template <class Dialog, class Look>
void whenOpen(Look look) {
    QTimer::singleShot(0, qApp, [look] {
        auto* const dialog = qobject_cast<Dialog*>(QApplication::activeModalWidget());
        dialog == nullptr ? whenOpen<Dialog>(look) : look(*dialog);
    });
}

/// The program's own main window on the screen, handled as a user would.
class Screen {
  public:
    Screen() {
        frontEnd.dispatcher().serve(program);
        main = &open<frmModBus>();
        QApplication::setActiveWindow(&view("frmModBus"));
    }

    /// Ends as the program does, from within the event loop, which leaves the toolkit ready for the next one.
    ~Screen() {
        frontEnd.exec([this] {
            QTimer::singleShot(0, qApp, [this] { frontEnd.dispatcher().run([] { throw ProgramEnd(); }); });
        });
    }

    template <class FormClass>
    FormClass& open() {
        FormClass* opened = nullptr;
        frontEnd.dispatcher().run(
            [&] { opened = &program.windows.open(std::make_unique<FormClass>(program)); });
        settle();
        return *opened;
    }

    /// The widget with this object name.
    template <class View = QWidget>
    View& view(const char* name) {
        for (QWidget* widget : QApplication::allWidgets()) {
            auto* const found = qobject_cast<View*>(widget);
            if (found != nullptr && widget->objectName() == QString::fromUtf8(name)) {
                return *found;
            }
        }
        throw std::runtime_error(std::string("no widget ") + name);
    }

    /// Near the left edge, where a box or circle is that has its text beside it.
    void click(const char* name) {
        QWidget& widget = view(name);
        QTest::mouseClick(&widget, Qt::LeftButton, Qt::NoModifier, QPoint(8, widget.height() / 2));
    }

    static void settle() {
        QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    FrontEnd frontEnd;
    FakeClock clock;
    FakeSerial serial{clock};
    FakeProfileFiles files;
    FakeFolders folders;
    Program program{{frontEnd.desktop(), frontEnd, serial, files, folders, {}}};
    frmModBus* main = nullptr;
};

}  // namespace vek::test
