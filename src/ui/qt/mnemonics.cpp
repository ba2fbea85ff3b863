#include "ui/qt/mnemonics.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QKeyEvent>
#include <QKeySequence>
#include <QMenu>
#include <QMenuBar>
#include <QPainter>
#include <QShortcut>
#include <QStyleOption>
#include <QVariant>

#include "ui/qt/icons.h"

namespace vek {

namespace {

constexpr const char* letterProperty = "mnemonicLetter";

QString letterOf(const QObject* object) {
    return object == nullptr ? QString() : object->property(letterProperty).toString();
}

void setLetter(QObject& object, char letter) {
    object.setProperty(letterProperty, letter == 0 ? QString() : QString(QLatin1Char(letter)));
}

QKeySequence altKey(const QString& letter) {
    return letter.isEmpty() ? QKeySequence() : QKeySequence(QStringLiteral("Alt+") + letter.toUpper());
}

/// The text as the toolkit's own drawing wants it.
QString marked(QString text, const QString& letter) {
    const qsizetype at = letter.isEmpty() ? -1 : text.indexOf(letter, 0, Qt::CaseInsensitive);
    const QString tail = at < 0 ? QString() : text.sliced(at).replace(QLatin1Char('&'), QStringLiteral("&&"));
    text = (at < 0 ? text : text.first(at)).replace(QLatin1Char('&'), QStringLiteral("&&"));
    return at < 0 ? text : text + QLatin1Char('&') + tail;
}

const QAction* actionUnder(const QStyleOption& option, const QWidget* widget) {
    const QPoint middle = option.rect.center();
    if (const auto* bar = qobject_cast<const QMenuBar*>(widget)) {
        return bar->actionAt(middle);
    }
    const auto* menu = qobject_cast<const QMenu*>(widget);
    return menu == nullptr ? nullptr : menu->actionAt(middle);
}

QAction* actionWithLetter(const QWidget& menu, const QString& letter) {
    for (QAction* action : menu.actions()) {
        if (action->isEnabled() && action->isVisible() &&
            letterOf(action).compare(letter, Qt::CaseInsensitive) == 0) {
            return action;
        }
    }
    return nullptr;
}

/// Turns the letter of an item into a choice of the item. A plain QObject filter: it lives as long as its
/// menu.
class LetterKeys : public QObject {
  public:
    explicit LetterKeys(QWidget& menu) : QObject(&menu) { menu.installEventFilter(this); }

    bool eventFilter(QObject* watched, QEvent* event) override {
        auto* const menu = qobject_cast<QMenu*>(watched);
        if (menu == nullptr || event->type() != QEvent::KeyPress) {
            return false;
        }
        const auto* const key = dynamic_cast<const QKeyEvent*>(event);
        const QString letter = key == nullptr ? QString() : key->text();
        QAction* const action = letter.size() == 1 ? actionWithLetter(*menu, letter) : nullptr;
        if (action == nullptr) {
            return false;
        }
        menu->setActiveAction(action);
        QKeyEvent choose(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
        QCoreApplication::sendEvent(menu, &choose);
        return true;
    }
};

/// Flat, with a line below.
void drawToolBar(const QStyleOption& option, QPainter& painter) {
    QRect line = option.rect;
    line.setTop(line.bottom());
    painter.fillRect(option.rect, option.palette.window());
    painter.fillRect(line, option.palette.mid());
}

}  // namespace

void setButtonText(QAbstractButton& button, const QString& text, char letter) {
    setLetter(button, letter);
    button.setText(text);
    button.setShortcut(
        altKey(letterOf(&button)));  // after the text, which brings a key of its own for an "&"
}

void setActionLetter(QAction& action, char letter) {
    setLetter(action, letter);
}

void addMenuBarKey(QMenuBar& bar, QAction& action) {
    const QKeySequence keys = altKey(letterOf(&action));
    if (keys.isEmpty()) {
        return;
    }
    auto* const shortcut = new QShortcut(keys, &bar);
    const auto follow = [shortcut, &action] {
        shortcut->setEnabled(action.isEnabled() && action.isVisible());
    };
    follow();
    QObject::connect(&action, &QAction::changed, shortcut, follow);
    QObject::connect(shortcut, &QShortcut::activated, &bar, [&bar, &action] {
        if (action.menu<QMenu*>() == nullptr) {
            action.trigger();
        } else {
            bar.setActiveAction(&action);
        }
    });
}

void addMenuKeys(QMenu& menu) {
    new LetterKeys(menu);
}

QIcon MnemonicStyle::standardIcon(StandardPixmap which, const QStyleOption* option,
                                  const QWidget* widget) const {
    return which == SP_ToolBarHorizontalExtensionButton ? moreIcon()
                                                        : QProxyStyle::standardIcon(which, option, widget);
}

int MnemonicStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                             QStyleHintReturn* data) const {
    if (hint == SH_DialogButtonBox_ButtonsHaveIcons) {
        return 0;
    }
    return QProxyStyle::styleHint(hint, option, widget, data);
}

void MnemonicStyle::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                                const QWidget* widget) const {
    if (element == CE_ToolBar) {
        drawToolBar(*option, *painter);
        return;
    }
    if (element == CE_PushButtonLabel || element == CE_CheckBoxLabel || element == CE_RadioButtonLabel) {
        if (const auto* button = qstyleoption_cast<const QStyleOptionButton*>(option)) {
            QStyleOptionButton copy(*button);
            copy.text = marked(copy.text, letterOf(widget));
            QProxyStyle::drawControl(element, &copy, painter, widget);
            return;
        }
    }
    if (element == CE_MenuBarItem || element == CE_MenuItem) {
        if (const auto* item = qstyleoption_cast<const QStyleOptionMenuItem*>(option)) {
            QStyleOptionMenuItem copy(*item);
            copy.text = marked(copy.text, letterOf(actionUnder(*option, widget)));
            QProxyStyle::drawControl(element, &copy, painter, widget);
            return;
        }
    }
    QProxyStyle::drawControl(element, option, painter, widget);
}

}  // namespace vek
