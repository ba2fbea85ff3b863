#include "ui/qt/childwindow.h"

#include <QCloseEvent>
#include <QLayout>
#include <QMdiArea>
#include <QScrollArea>
#include <QScrollBar>
#include <algorithm>

namespace vek {

ChildWindow::ChildWindow(Form& form, Dispatcher& dispatcher, QMdiArea& area)
    : form_(form),
      area_(area),
      scroll_(new QScrollArea(this)),
      view_(new FormView(form, dispatcher, scroll_)),
      links_(dispatcher) {
    setWindowFlags(Qt::SubWindow | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowCloseButtonHint);
    setSystemMenu(nullptr);
    scroll_->setFrameShape(QFrame::NoFrame);
    scroll_->setFocusPolicy(Qt::NoFocus);
    scroll_->setWidgetResizable(true);
    scroll_->setWidget(view_);
    setWidget(scroll_);
    view_->installEventFilter(this);
    area.installEventFilter(this);
    connect(view_, &QWidget::windowTitleChanged, this, &QWidget::setWindowTitle);
    setWindowTitle(view_->windowTitle());
    area.addSubWindow(this);
}

QSize ChildWindow::fittingSize() const {
    const QMargins border = contentsMargins();
    const QSize content = view_->layout()->totalSizeHint().expandedTo(view_->layout()->totalMinimumSize());
    QSize size = content.grownBy(border);
    const QSize room = area_.viewport()->size();
    // A scroll bar in one direction takes room in the other.
    const int barWidth = scroll_->verticalScrollBar()->sizeHint().width();
    if (size.height() > room.height()) {
        size.rwidth() += barWidth;
    }
    if (size.width() > room.width()) {
        size.rheight() += barWidth;
    }
    return size.boundedTo(room);
}

void ChildWindow::fit() {
    const QSize least = fittingSize();
    setMinimumSize(least);
    if (!isMaximized()) {
        resize(size().expandedTo(least).boundedTo(area_.viewport()->size()));
    }
}

void ChildWindow::centre() {
    const QRect room = area_.viewport()->rect();
    QRect place(QPoint(), size());
    place.moveCenter(room.center());
    move(std::max(place.left(), 0), std::max(place.top(), 0));
}

void ChildWindow::present() {
    links_.show(form_.visible, [this](bool visible) { setVisible(visible); });
    resize(fittingSize());
    fit();
    centre();
    area_.setActiveSubWindow(this);
    view_->focusFirst();
}

void ChildWindow::discard() {
    open_ = false;
    links_.cut();
    view_->removeEventFilter(this);
    area_.removeEventFilter(this);
    view_->detach();
    hide();
    area_.removeSubWindow(this);
    deleteLater();
}

bool ChildWindow::eventFilter(QObject* watched, QEvent* event) {
    const bool contentsChanged = watched == view_ && event->type() == QEvent::LayoutRequest;
    const bool roomChanged = watched == &area_ && event->type() == QEvent::Resize;
    if (contentsChanged || roomChanged) {
        fit();
    }
    return QMdiSubWindow::eventFilter(watched, event);
}

void ChildWindow::closeEvent(QCloseEvent* event) {
    event->ignore();
    if (open_) {
        links_.call([this] { form_.closeBoxPressed(); });
    }
}

}  // namespace vek
