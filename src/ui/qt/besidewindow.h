#pragma once

#include <QWidget>

#include "platform/form.h"
#include "ui/qt/formview.h"
#include "ui/qt/formwindow.h"
#include "ui/qt/windowgeometry.h"

namespace vek {

/// A form that stands on the screen beside the main window.
class BesideWindow : public QWidget, public FormWindow {
    Q_OBJECT

  public:
    BesideWindow(Form& form, Dispatcher& dispatcher);

    /// Binds the window to the main window, with which it is minimized.
    void attachTo(QWidget& mainWindow);

    void present() override;
    void discard() override;

  protected:
    void closeEvent(QCloseEvent* event) override;

  private:
    Form& form_;
    FormView* view_;
    Links links_;
    WindowGeometry* geometry_;
};

}  // namespace vek
