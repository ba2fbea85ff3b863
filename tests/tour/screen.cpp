#include "screen.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QProgressBar>
#include <QSlider>
#include <QTest>
#include <QToolButton>

namespace screen {

namespace {

using namespace Qt::StringLiterals;

QString withoutMark(QString text) {
    return text.remove(u'&');
}

QString textOf(const QWidget& widget) {
    if (const auto* button = qobject_cast<const QAbstractButton*>(&widget)) {
        return withoutMark(button->text());
    }
    for (const char* property : {"text", "currentText", "title", "plainText"}) {
        if (const QVariant text = widget.property(property); text.isValid()) {
            return text.toString();
        }
    }
    return widget.windowTitle();
}

QString colorOf(QWidget& widget) {
    static const QHash<QString, QString> names = {{u"#00ff00"_s, u"green"_s},
                                                  {u"#ffff00"_s, u"yellow"_s},
                                                  {u"#ff0000"_s, u"red"_s},
                                                  {u"#c0c0c0"_s, u"grey"_s}};
    const bool hasText = qobject_cast<QLabel*>(&widget) != nullptr;
    const QPoint place = hasText ? QPoint(4, 4) : widget.rect().center();
    const QString color = widget.grab().toImage().pixelColor(place).name();
    return names.value(color, color);
}

QString onOff(bool set) {
    return set ? u"on"_s : u"off"_s;
}

QString propertyOf(QWidget& widget, const QString& property) {
    if (property == u"color") {
        return colorOf(widget);
    }
    if (property == u"full") {
        const auto& bar = dynamic_cast<QProgressBar&>(widget);
        return onOff(bar.value() == bar.maximum());
    }
    const QVariant value = widget.property(property.toUtf8().constData());
    return value.typeId() == QMetaType::Bool ? onOff(value.toBool()) : value.toString();
}

QList<QWidget*> visibleWidgets() {
    QList<QWidget*> all;
    for (QWidget* window : QApplication::topLevelWidgets()) {
        if (window->isVisible()) {
            all << window << window->findChildren<QWidget*>();
        }
    }
    all.removeIf([](const QWidget* widget) { return !widget->isVisible(); });
    return all;
}

bool stands(const QWidget* widget, const QString& frame) {
    const auto* group = qobject_cast<const QGroupBox*>(widget->parentWidget());
    return frame.isEmpty() || (group != nullptr && group->title() == frame);
}

bool overlaps(const QWidget* one, const QList<QWidget*>& others) {
    return std::any_of(others.begin(), others.end(), [one](const QWidget* other) {
        return other != one && other->parentWidget() == one->parentWidget() &&
               other->geometry().intersects(one->geometry());
    });
}

}  // namespace

void start(std::function<void()> action) {
    QMetaObject::invokeMethod(qApp, std::move(action), Qt::QueuedConnection);
}

QWidget* find(const QString& name) {
    for (QWidget* widget : visibleWidgets()) {
        if (widget->objectName() == name) {
            return widget;
        }
    }
    return nullptr;
}

QList<QWidget*> buttons(const QString& caption) {
    const QString frame = caption.section(u" > "_s, 0, -2);
    const QString text = caption.section(u" > "_s, -1);
    QList<QWidget*> found = visibleWidgets();
    found.removeIf([&](const QWidget* widget) {
        const auto* button = qobject_cast<const QAbstractButton*>(widget);
        const bool called = button != nullptr && qobject_cast<const QToolButton*>(button) == nullptr &&
                            textOf(*button) == text;
        return !called || !button->isEnabled() || !stands(button, frame);
    });
    return found;
}

QWidget* toolButton(const QString& caption) {
    for (QWidget* widget : visibleWidgets()) {
        if (qobject_cast<QToolButton*>(widget) != nullptr && widget->toolTip() == caption) {
            return widget;
        }
    }
    return nullptr;
}

QString state(const QString& name) {
    QWidget* widget = find(name.section(u'.', 0, 0));
    const QString property = name.section(u'.', 1);
    return widget == nullptr    ? QString()
           : property.isEmpty() ? textOf(*widget)
                                : propertyOf(*widget, property);
}

QMessageBox* openBox() {
    auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
    return box != nullptr && box->isVisible() ? box : nullptr;
}

void click(QWidget& widget) {
    const bool hasMark = widget.inherits("QRadioButton") || widget.inherits("QCheckBox");
    QTest::mouseClick(&widget, Qt::LeftButton, {},
                      hasMark ? QPoint(8, widget.height() / 2) : widget.rect().center());
}

bool clickMenu(const QString& entry, bool inBar) {
    auto* window = qobject_cast<QMainWindow*>(find(u"frmModBus"_s));
    QWidget* menu = inBar && window != nullptr ? window->menuBar() : QApplication::activePopupWidget();
    for (QAction* action : menu == nullptr ? QList<QAction*>() : menu->actions()) {
        if (withoutMark(action->text()) == entry) {
            const QRect place = inBar ? qobject_cast<QMenuBar*>(menu)->actionGeometry(action)
                                      : qobject_cast<QMenu*>(menu)->actionGeometry(action);
            start([menu, place] { QTest::mouseClick(menu, Qt::LeftButton, {}, place.center()); });
            return true;
        }
    }
    return false;
}

QString faultOfLayout(const QString& name) {
    QList<QWidget*> parts = find(name)->findChildren<QWidget*>();
    parts.removeIf([](const QWidget* part) {
        return !part->isVisible() || part->objectName().isEmpty() || part->objectName().startsWith(u"qt_"_s);
    });
    QStringList letters;
    for (const QWidget* part : parts) {
        const QSize least = part->minimumSizeHint();
        if (part->visibleRegion().boundingRect() != part->rect() || part->width() < least.width() ||
            part->height() < least.height()) {
            return part->objectName() + u" is cut"_s;
        }
        if (overlaps(part, parts)) {
            return part->objectName() + u" overlaps another"_s;
        }
        const QString letter = part->property("shortcut").toString();
        if (letters.contains(letter)) {
            return part->objectName() + u" has the letter of another"_s;
        }
        letters += letter.isEmpty() ? QStringList() : QStringList(letter);
    }
    return {};
}

}  // namespace screen
