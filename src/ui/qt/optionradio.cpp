#include "ui/qt/optionradio.h"

#include <QKeyEvent>
#include <algorithm>

#include "ui/qt/formview.h"
#include "ui/qt/qttext.h"

namespace vek {

namespace {

int stepOf(int key) {
    switch (key) {
        case Qt::Key_Up:
        case Qt::Key_Left:
            return -1;
        case Qt::Key_Down:
        case Qt::Key_Right:
            return 1;
        default:
            return 0;
    }
}

}  // namespace

OptionRadio::OptionRadio(OptionButton& control, QWidget& parent) : QRadioButton(&parent), control_(control) {
    setObjectName(toQt(control.name));  // by which the others of the group find it
    setAutoExclusive(false);
}

OptionRadio* OptionRadio::viewOf(const OptionButton* option) const {
    // Within its own window only: another one may have options of the same name.
    const QWidget* form = this;
    while (qobject_cast<const FormView*>(form) == nullptr && form->parentWidget() != nullptr) {
        form = form->parentWidget();
    }
    return form->findChild<OptionRadio*>(toQt(option->name));
}

bool OptionRadio::choosable(const OptionButton* option) const {
    return option->enabled.get() && option->visible.get();
}

const OptionButton* OptionRadio::tabStop() const {
    const auto& options = control_.group.options;
    const auto set = std::find_if(options.begin(), options.end(), [this](const OptionButton* option) {
        return option->value.get() && choosable(option);
    });
    if (set != options.end()) {
        return *set;
    }
    const auto first = std::find_if(options.begin(), options.end(),
                                    [this](const OptionButton* option) { return choosable(option); });
    return first == options.end() ? nullptr : *first;
}

void OptionRadio::updateTabStop() {
    const OptionButton* const stop = tabStop();
    for (const OptionButton* option : control_.group.options) {
        if (OptionRadio* view = viewOf(option)) {
            view->setFocusPolicy(option == stop ? Qt::StrongFocus : Qt::ClickFocus);
        }
    }
}

void OptionRadio::choose(int step) {
    const auto& options = control_.group.options;
    const auto count = static_cast<int>(options.size());
    const auto own = std::find(options.begin(), options.end(), &control_) - options.begin();
    for (int distance = 1; distance < count; ++distance) {
        const auto next = (static_cast<int>(own) + count + step * distance) % count;
        const OptionButton* option = options[static_cast<std::size_t>(next)];
        OptionRadio* view = choosable(option) ? viewOf(option) : nullptr;
        if (view != nullptr) {
            view->setFocus(Qt::OtherFocusReason);
            view->click();
            return;
        }
    }
}

void OptionRadio::keyPressEvent(QKeyEvent* event) {
    const int step = stepOf(event->key());
    if (step == 0) {
        QRadioButton::keyPressEvent(event);
        return;
    }
    choose(step);
}

}  // namespace vek
