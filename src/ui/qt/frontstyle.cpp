#include "ui/qt/frontstyle.h"

#include <QPainter>
#include <QStyleOption>

#include "ui/qt/icons.h"

namespace vek {

void FrontStyle::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                             const QWidget* widget) const {
    if (element != CE_ToolBar) {
        QProxyStyle::drawControl(element, option, painter, widget);
        return;
    }
    // Flat, with a line below.
    QRect line = option->rect;
    line.setTop(line.bottom());
    painter->fillRect(option->rect, option->palette.window());
    painter->fillRect(line, option->palette.mid());
}

QIcon FrontStyle::standardIcon(StandardPixmap which, const QStyleOption* option,
                               const QWidget* widget) const {
    return which == SP_ToolBarHorizontalExtensionButton ? moreIcon()
                                                        : QProxyStyle::standardIcon(which, option, widget);
}

int FrontStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                          QStyleHintReturn* data) const {
    return hint == SH_DialogButtonBox_ButtonsHaveIcons ? 0
                                                       : QProxyStyle::styleHint(hint, option, widget, data);
}

}  // namespace vek
