#pragma once

#include <QIcon>
#include <QObject>
#include <QProxyStyle>
#include <QString>

class QAbstractButton;
class QAction;
class QMenu;
class QMenuBar;

namespace vek {

/// Letters that press a button or open a menu together with Alt. The toolkit wants such a letter as "&"
/// within the text; here a text is what is read on the screen, and the letter is kept beside it.

/// Sets the text as it is to be read ("&" included) and its letter, 0 = none.
void setButtonText(QAbstractButton& button, const QString& text, char letter);

/// Gives the action its letter, 0 = none.
void setActionLetter(QAction& action, char letter);

/// Alt with the letter of `action`, an action of `bar`, opens its menu or runs it. To be called once for
/// each.
void addMenuBarKey(QMenuBar& bar, QAction& action);

/// Makes the letters of the menu's items work while it is open. To be called once for each menu.
void addMenuKeys(QMenu& menu);

/// Draws the texts with their letters underlined and every "&" as what it is; buttons of dialogs have plain
/// texts. Its mark for bars that are too short is drawn, too: the toolkit's own one is a picture file, which
/// at the start of the program would load the readers of all formats. So are tool bars: the half transparent
/// lines of the toolkit's own ones are mixed point by point, for which it starts threads.
class MnemonicStyle : public QProxyStyle {
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
