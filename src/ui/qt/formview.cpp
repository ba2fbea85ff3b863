#include "ui/qt/formview.h"

#include <QKeyEvent>
#include <QPointer>
#include <QPushButton>
#include <QTimer>

#include "ui/qt/formlayout.h"
#include "ui/qt/qttext.h"

namespace vek {

namespace {

void runTimer(Timer& control, QObject& window, Links& links) {
    auto* const timer = new QTimer(&window);
    timer->setTimerType(Qt::PreciseTimer);
    links.show(control.interval, [timer](int milliseconds) { timer->setInterval(milliseconds); });
    links.show(control.enabled, [timer](bool enabled) {
        if (enabled) {
            timer->start();
        } else {
            timer->stop();
        }
    });
    links.on(timer, &QTimer::timeout, [&control, &links] { links.call(control.tick); });
}

}  // namespace

void runTimers(Form& form, QObject& window, Links& links) {
    for (Timer* timer : form.timers()) {
        runTimer(*timer, window, links);
    }
}

FormView::FormView(Form& form, Dispatcher& dispatcher, QWidget* parent)
    : QWidget(parent), form_(form), links_(std::make_unique<Links>(dispatcher)) {
    setObjectName(toQt(form.name));
    layOut(form.layout(), *this, *links_);
    links_->show(form.caption, [this](const std::string& text) { setWindowTitle(toQt(text)); });
    if (QPushButton* view = viewOf(form.defaultButton())) {
        view->setDefault(true);
    }
    runTimers(form, *this, *links_);
    form.giveKeyboard = [view = QPointer(this)](const Control& control) {
        auto* const widget = view ? view->findChild<QWidget*>(toQt(control.name)) : nullptr;
        if (widget != nullptr) {
            widget->setFocus(Qt::OtherFocusReason);
        }
    };
}

FormView::~FormView() = default;

QPushButton* FormView::viewOf(const Button* button) const {
    return button == nullptr ? nullptr : findChild<QPushButton*>(toQt(button->name));
}

QWidget* FormView::firstTabStop() const {
    for (QWidget* widget = nextInFocusChain(); widget != nullptr && widget != this;
         widget = widget->nextInFocusChain()) {
        const bool reachable = (widget->focusPolicy() & Qt::TabFocus) != 0 && widget->focusProxy() == nullptr;
        if (isAncestorOf(widget) && reachable && widget->isEnabled() && widget->isVisibleTo(this)) {
            return widget;
        }
    }
    return nullptr;
}

void FormView::focusFirst() {
    QWidget* first = firstTabStop();
    QPushButton* const usual = viewOf(form_.defaultButton());
    // A button with the keyboard takes Enter for itself: a command must not be one key away by its place.
    if (usual != nullptr && usual->isEnabled() && qobject_cast<QPushButton*>(first) != nullptr) {
        first = usual;
    }
    if (first != nullptr) {
        first->setFocus(Qt::OtherFocusReason);
    }
}

void FormView::press(Button* button) {
    if (QPushButton* view = viewOf(button); view != nullptr && view->isVisible()) {
        view->click();
    }
}

void FormView::keyPressEvent(QKeyEvent* event) {
    if (!links_) {
        return;
    }
    const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    const bool escape = event->matches(QKeySequence::Cancel);
    Button* const button = enter ? form_.defaultButton() : escape ? form_.cancelButton() : nullptr;
    if (button != nullptr) {
        press(button);
    } else if (escape && form_.escapeCloses()) {
        links_->call([this] { form_.closeBoxPressed(); });
    } else {
        QWidget::keyPressEvent(event);
    }
}

}  // namespace vek
