#include "ui/qt/besidewindow.h"

#include <QCloseEvent>
#include <QVBoxLayout>

namespace vek {

BesideWindow::BesideWindow(Form& form, Dispatcher& dispatcher)
    : form_(form), view_(new FormView(form, dispatcher, this)), links_(dispatcher) {
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(view_);
    connect(view_, &QWidget::windowTitleChanged, this, &QWidget::setWindowTitle);
    setWindowTitle(view_->windowTitle());
    adjustSize();
    geometry_ = new WindowGeometry(form.geometry, *this, links_);
}

void BesideWindow::attachTo(QWidget& mainWindow) {
    setParent(&mainWindow,
              Qt::Tool | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowCloseButtonHint);
    geometry_->apply();
}

void BesideWindow::present() {
    setAttribute(Qt::WA_ShowWithoutActivating);
    links_.show(form_.visible, [this](bool visible) { setVisible(visible); });
    geometry_->report();
}

void BesideWindow::discard() {
    links_.cut();
    geometry_->detach();
    view_->detach();
    hide();
    deleteLater();
}

void BesideWindow::closeEvent(QCloseEvent* event) {
    event->ignore();
    links_.call([this] { form_.closeBoxPressed(); });
}

}  // namespace vek
