#pragma once

#include <QApplication>
#include <QMessageBox>
#include <QString>
#include <QWidget>
#include <functional>
#include <type_traits>

/// What stands on the screen and how it is used. Everything here belongs into the program's own thread: into
/// inProgram() or start().
namespace screen {

/// Runs in the program's thread and gives back the result.
template <class Function>
auto inProgram(Function function) {
    std::invoke_result_t<Function> result{};
    QMetaObject::invokeMethod(
        qApp, [&] { result = function(); }, Qt::BlockingQueuedConnection);
    return result;
}

/// Starts in the program's thread without waiting for the end: it may open a message box.
void start(std::function<void()> action);

/// The visible widget of this object name, among all visible windows; nullptr when there is none.
QWidget* find(const QString& name);

/// The buttons, boxes and options with this caption that can be pressed. "Relais 1 > Ruhestrom (n.c.)" is the
/// one in that frame.
QList<QWidget*> buttons(const QString& caption);

/// The button of the tool bar with this tool tip.
QWidget* toolButton(const QString& caption);

/// What a widget shows, or one of its properties: "LED_0.color", "optCom_9.enabled", "chkMemory.checked",
/// "Slider1.value", "btnOk.toolTip", "prgFortschritt.full". Null when there is no such widget.
QString state(const QString& name);

QMessageBox* openBox();

/// Clicks where the mark of a box or option is, else in the middle.
void click(QWidget& widget);

/// Clicks an entry of the menu bar, or of the menu that is open; false when it is not there (yet).
bool clickMenu(const QString& entry, bool inBar);

/// What overlaps or is cut in the window of this name; empty when all is well.
QString faultOfLayout(const QString& name);

}  // namespace screen
