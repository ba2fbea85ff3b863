#pragma once

#include <QIcon>
#include <QProxyStyle>

namespace vek {

/// The toolkit's own style, but for what would cost at the start of the program: the mark for bars that are
/// too short is a picture file there, which would load the readers of all formats; and the half transparent
/// lines of its tool bars are mixed point by point, for which it starts threads. Buttons of dialogs have
/// plain texts.
class FrontStyle : public QProxyStyle {
    Q_OBJECT

  public:
    using QProxyStyle::QProxyStyle;

    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
    QIcon standardIcon(StandardPixmap which, const QStyleOption* option,
                       const QWidget* widget) const override;
    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* data) const override;
};

}  // namespace vek
