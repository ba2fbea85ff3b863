#pragma once

#include <QMainWindow>

#include "platform/form.h"
#include "ui/qt/formwindow.h"
#include "ui/qt/links.h"
#include "ui/qt/windowgeometry.h"

class QMdiArea;

namespace vek {

/// The multi-document frame with menu, tool bar and status bar.
class MainWindow : public QMainWindow, public FormWindow {
    Q_OBJECT

  public:
    MainWindow(Form& form, Dispatcher& dispatcher);

    /// Where the child windows stand.
    QMdiArea& area() { return *area_; }

    /// The user or the system wants the window closed; the form decides what that means.
    void requestClose();

    void present() override;
    void discard() override;

  protected:
    void closeEvent(QCloseEvent* event) override;
    void changeEvent(QEvent* event) override;

  private:
    QSize roomOnScreen() const;
    void keepOnScreen();

    Form& form_;
    QMdiArea* area_;
    Links links_;
    WindowGeometry* geometry_;
    bool open_ = true;
};

}  // namespace vek
