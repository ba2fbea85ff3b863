#include "ui/qt/indicators.h"

#include <QEvent>
#include <QFontMetrics>
#include <QPainter>
#include <algorithm>

#include "ui/qt/icons.h"

namespace vek {

namespace {

constexpr double edgeWidth = 1.0;
constexpr QColor edgeColor(64, 64, 64);
constexpr int barCharacters = 40;
constexpr int pictureSize = 64;

}  // namespace

Lamp::Lamp(QWidget* parent) : QWidget(parent) {
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void Lamp::setColor(const QColor& color) {
    color_ = color;
    update();
}

QSize Lamp::sizeHint() const {
    const int side = fontMetrics().height() | 1;  // odd, so that one pixel is the middle
    return {side, side};
}

void Lamp::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(color_);
    painter.setPen(QPen(edgeColor, edgeWidth));
    const double diameter = std::min(width(), height()) - 2 * edgeWidth;
    QRectF disc(0, 0, diameter, diameter);
    disc.moveCenter(QRectF(rect()).center());
    painter.drawEllipse(disc);
}

PositionBar::PositionBar(QWidget* parent) : QSlider(Qt::Horizontal, parent) {
    setFocusPolicy(Qt::NoFocus);
    setTickPosition(QSlider::TicksBelow);
    // The style fills the groove up to the handle, as for an amount; a position has both sides alike.
    QPalette plain = palette();
    plain.setColor(QPalette::Highlight, plain.color(QPalette::Button));
    setPalette(plain);
}

QSize PositionBar::sizeHint() const {
    return {fontMetrics().averageCharWidth() * barCharacters, QSlider::sizeHint().height()};
}

bool PositionBar::event(QEvent* event) {
    switch (event->type()) {
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonDblClick:
        case QEvent::MouseMove:
        case QEvent::Wheel:
        case QEvent::KeyPress:
        case QEvent::HoverEnter:
        case QEvent::HoverMove:
            event->ignore();
            return true;
        default:
            return QSlider::event(event);
    }
}

ProgramPicture::ProgramPicture(QWidget* parent) : QWidget(parent) {
    setFixedSize(pictureSize, pictureSize);
}

void ProgramPicture::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    programIcon().paint(&painter, rect());
}

}  // namespace vek
