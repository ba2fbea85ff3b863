#pragma once

#include <QMdiSubWindow>
#include <QSize>

#include "platform/form.h"
#include "ui/qt/formview.h"
#include "ui/qt/formwindow.h"

class QMdiArea;
class QScrollArea;

namespace vek {

/// A form inside the main window: as large as its contents, or, where the room is smaller, scrolled.
class ChildWindow : public QMdiSubWindow, public FormWindow {
    Q_OBJECT

  public:
    ChildWindow(Form& form, Dispatcher& dispatcher, QMdiArea& area);

    void present() override;
    void discard() override;

    bool eventFilter(QObject* watched, QEvent* event) override;

  protected:
    void closeEvent(QCloseEvent* event) override;

  private:
    QSize fittingSize() const;
    void fit();
    void centre();

    Form& form_;
    QMdiArea& area_;
    QScrollArea* scroll_;
    FormView* view_;
    Links links_;
    bool open_ = true;
};

}  // namespace vek
