#include "ui/qt/menus.h"

#include <QAction>
#include <QLabel>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QStatusBar>
#include <QToolBar>
#include <algorithm>

#include "ui/qt/controlviews.h"
#include "ui/qt/icons.h"
#include "ui/qt/qttext.h"

namespace vek {

namespace {

constexpr int toolIconSize = 24;
constexpr int panelMargin = 6;

/// What actions have in common with widgets.
void bindAction(Control& control, QAction& action, Links& links) {
    action.setObjectName(toQt(control.name));
    links.show(control.visible, [&action](bool visible) { action.setVisible(visible); });
    links.show(control.enabled, [&action](bool enabled) {
        if (auto* menu = action.menu<QMenu*>()) {
            menu->setEnabled(enabled);  // takes its action along
        } else {
            action.setEnabled(enabled);
        }
    });
}

/// The toolkit turns the check mark over before the program hears of the click; the program decides itself
/// what a click means, so the mark goes back to what the program has set.
void keepMark(QAction& action, const Property<bool>& mark) {
    action.setChecked(mark.get());
}

QAction* addItem(MenuItem& item, QWidget& parent, Links& links);

QAction* addSubmenu(MenuItem& item, QWidget& parent, Links& links) {
    auto* const menu = new QMenu(&parent);
    menu->setObjectName(toQt(item.name));
    for (MenuItem* child : item.items) {
        addItem(*child, *menu, links);
    }
    parent.addAction(menu->menuAction());
    return menu->menuAction();
}

QAction* addPlainItem(MenuItem& item, QWidget& parent, Links& links) {
    auto* const action = new QAction(&parent);
    action->setSeparator(item.isSeparator());
    action->setCheckable(item.checkable);
    links.show(item.checked, [action](bool checked) { action->setChecked(checked); });
    links.on(action, &QAction::triggered, [&item, &links, action] {
        keepMark(*action, item.checked);
        links.call(item.click);
    });
    parent.addAction(action);
    return action;
}

QAction* addItem(MenuItem& item, QWidget& parent, Links& links) {
    QAction* const action =
        item.items.empty() ? addPlainItem(item, parent, links) : addSubmenu(item, parent, links);
    if (!item.isSeparator()) {  // which the toolkit would draw with its text
        links.show(item.caption, [action, letter = item.mnemonic](const std::string& text) {
            action->setText(captionText(text, letter));
        });
    }
    bindAction(item, *action, links);
    return action;
}

void addToolButton(ToolButton& button, const ToolBar& control, QToolBar& bar, Links& links) {
    auto* const action = new QAction(toolIcon(button.name), toQt(button.caption), &bar);
    action->setToolTip(toQt(button.caption));
    action->setSeparator(button.kind == ToolButton::Kind::Separator);
    action->setCheckable(button.kind == ToolButton::Kind::Check);
    bindAction(button, *action, links);
    links.show(button.pressed, [action](bool pressed) { action->setChecked(pressed); });
    links.on(action, &QAction::triggered, [&button, &control, &links](bool pressed) {
        links.dispatcher().run([&] {
            button.pressed = button.kind == ToolButton::Kind::Check && pressed;
            if (control.buttonClick) {
                control.buttonClick(button.name);
            }
        });
    });
    bar.addAction(action);
}

/// The toolkit's bar keeps the letters of its entries while they cannot be used; a button of the window
/// inside may have the same ones.
void giveUpLetters(QMenuBar& bar) {
    const auto actions = bar.actions();
    bar.setEnabled(std::any_of(actions.begin(), actions.end(),
                               [](const QAction* action) { return action->isEnabled(); }));
}

}  // namespace

void makeMenu(const std::vector<MenuItem*>& items, QMainWindow& window, Links& links) {
    if (items.empty()) {
        return;
    }
    QMenuBar& bar = *window.menuBar();
    for (MenuItem* item : items) {
        addItem(*item, bar, links);
        links.show(item->enabled, [&bar](bool /*enabled*/) { giveUpLetters(bar); });
    }
}

void makeToolBar(ToolBar& control, QMainWindow& window, Links& links) {
    auto* const bar = new QToolBar(&window);
    bar->setIconSize({toolIconSize, toolIconSize});
    bar->setMovable(false);
    bar->setFloatable(false);
    window.setContextMenuPolicy(Qt::NoContextMenu);  // else a menu of the toolkit hides the bar for good
    window.addToolBar(bar);
    for (ToolButton* button : control.buttons) {
        addToolButton(*button, control, *bar, links);
    }
    bindCommon(control, *bar, links);
}

void makeStatusBar(StatusBar& control, QMainWindow& window, Links& links) {
    QStatusBar& bar = *window.statusBar();
    bar.setSizeGripEnabled(true);
    for (Label* panel : control.panels) {
        QWidget* const view = makeControlView(panel, bar, links);
        view->setContentsMargins(panelMargin, 0, panelMargin, 0);
        bar.addWidget(view);
    }
    bindCommon(control, bar, links);
}

}  // namespace vek
