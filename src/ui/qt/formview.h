#pragma once

#include <QWidget>
#include <memory>

#include "platform/form.h"
#include "ui/qt/links.h"

class QPushButton;

namespace vek {

/// Lets the form's timers tick, for as long as `links` and `window`.
void runTimers(Form& form, QObject& window, Links& links);

/// The contents of one window: its controls as the form arranges them. It carries the form's name and
/// caption.
class FormView : public QWidget {
    Q_OBJECT

  public:
    FormView(Form& form, Dispatcher& dispatcher, QWidget* parent);
    ~FormView() override;

    /// The form is closed: from now on nothing refers to it.
    void detach() { links_.reset(); }

    /// Gives the keyboard to the first control, but to the default button where that is a button, too.
    void focusFirst();

  protected:
    void keyPressEvent(QKeyEvent* event) override;

  private:
    QPushButton* viewOf(const Button* button) const;
    QWidget* firstTabStop() const;
    void press(Button* button);

    Form& form_;
    std::unique_ptr<Links> links_;
};

}  // namespace vek
