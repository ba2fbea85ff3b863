#include "ui/qt/dispatcher.h"

#include <QApplication>
#include <QWidget>

#include "platform/desktop.h"

namespace vek {

void Dispatcher::run(const std::function<void()>& call) noexcept {
    if (ending_) {
        return;
    }
    ++depth_;
    try {
        call();
    } catch (const ProgramEnd&) {
        end();
    }
    --depth_;
    if (depth_ == 0 && onIdle) {
        onIdle();
    }
}

void Dispatcher::throwIfEnding() const {
    if (ending_) {
        throw ProgramEnd();
    }
}

void Dispatcher::end() {
    if (ending_) {
        return;  // a handler further out, unwinding after the end came from within its event loop
    }
    ending_ = true;
    if (onEnd) {
        onEnd();
    }
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (QWidget* window : windows) {
        window->hide();
    }
    QCoreApplication::exit(0);
}

}  // namespace vek
