#include "ui/qt/windowgeometry.h"

#include <QEvent>
#include <QScopedValueRollback>
#include <QWidget>
#include <utility>

#include "ui/qt/twips.h"

namespace vek {

WindowGeometry::WindowGeometry(Geometry& geometry, QWidget& window, Links& links)
    : QObject(&window), geometry_(&geometry), window_(window), dispatcher_(links.dispatcher()) {
    const auto place = [this](int /*twips*/) { placeWindow(); };
    links.show(geometry.left, place);
    links.show(geometry.top, place);
    const auto sizeTo = [this](int /*twips*/) { sizeWindow(); };
    links.show(geometry.width, sizeTo);
    links.show(geometry.height, sizeTo);
    window.installEventFilter(this);
}

void WindowGeometry::apply() {
    placeWindow();
    sizeWindow();
}

QMargins WindowGeometry::frame() const {
    const QRect inner = window_.geometry();
    const QRect outer = window_.frameGeometry();
    return {inner.left() - outer.left(), inner.top() - outer.top(), outer.right() - inner.right(),
            outer.bottom() - inner.bottom()};
}

void WindowGeometry::placeWindow() {
    if (geometry_ == nullptr || reporting_) {
        return;
    }
    window_.move(pixelsFromTwips(geometry_->left), pixelsFromTwips(geometry_->top));
}

void WindowGeometry::sizeWindow() {
    if (geometry_ == nullptr || reporting_) {
        return;
    }
    wanted_ = QSize(pixelsFromTwips(geometry_->width), pixelsFromTwips(geometry_->height));
    frame_ = frame();
    const QSize inner = wanted_.shrunkBy(frame_);
    window_.resize(wanted_.width() > 0 ? inner.width() : window_.width(),
                   wanted_.height() > 0 ? inner.height() : window_.height());
}

/// The window manager adds its frame only some time after the window has been shown.
void WindowGeometry::allowForFrame() {
    if (frame() == frame_) {
        return;
    }
    frame_ = frame();
    if (!std::exchange(wanted_, QSize(0, 0)).isNull()) {
        sizeWindow();
    }
}

void WindowGeometry::report() {
    if (geometry_ == nullptr || !window_.isVisible() || window_.isMinimized()) {
        return;
    }
    dispatcher_.run([this] {
        const QScopedValueRollback guard(reporting_, true);
        const QRect outer = window_.frameGeometry();
        geometry_->left = twipsFromPixels(outer.left());
        geometry_->top = twipsFromPixels(outer.top());
        geometry_->width = twipsFromPixels(outer.width());
        geometry_->height = twipsFromPixels(outer.height());
    });
}

bool WindowGeometry::eventFilter(QObject* /*watched*/, QEvent* event) {
    if (event->type() == QEvent::Move || event->type() == QEvent::Resize) {
        allowForFrame();
        report();
    }
    return false;
}

}  // namespace vek
