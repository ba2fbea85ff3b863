#include "ui/qt/icons.h"

#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPainterPath>
#include <QPalette>
#include <QPixmap>
#include <QPixmapCache>
#include <algorithm>
#include <array>
#include <cstdlib>
#include <span>
#include <string_view>

namespace vek {

namespace {

constexpr double gridSize = 24;
constexpr double lineWidth = 1.8;

enum class Ink { Line, Accent, Alert, Paper };

/// A line or an area in a grid of 24 by 24. `path`: M x y = begin at, L x y = line to, Z = back to the
/// beginning, O x y r = circle, R x y w h r = rectangle with round corners.
struct Figure {
    enum class Draw { Stroke, Fill, Outline };  // Outline: filled with paper, then stroked

    Ink ink;
    Draw draw;
    std::string_view path;
};

using enum Ink;
using enum Figure::Draw;

constexpr Figure monitor[] = {
    {Line, Outline, "R 2.5 3.5 19 13.5 2"},
    {Line, Stroke, "M 12 17 L 12 20.5 M 7.5 20.5 L 16.5 20.5"},
    {Accent, Stroke, "M 5 10.5 L 8.5 10.5 L 10.5 6.5 L 13.5 14 L 15.5 10.5 L 19 10.5"},
};
constexpr Figure parameters[] = {
    {Line, Stroke, "M 2.5 5.5 L 21.5 5.5 M 2.5 12 L 21.5 12 M 2.5 18.5 L 21.5 18.5"},
    {Accent, Outline, "O 15.5 5.5 2.4 O 7.5 12 2.4 O 17 18.5 2.4"},
};
constexpr Figure measuredValues[] = {
    {Line, Outline, "O 10 10 7.2"},
    {Line, Stroke, "M 15.4 15.4 L 21.2 21.2"},
    {Accent, Stroke, "M 8 7.6 L 10.4 6 L 10.4 13.6 M 7.8 13.6 L 13 13.6"},
};
constexpr Figure parameterRegisters[] = {
    {Line, Outline, "R 3 2.8 14.5 18.4 1.5"},
    {Line, Stroke, "M 6.5 7.5 L 14 7.5 M 6.5 12 L 11 12 M 6.5 16.5 L 8.5 16.5"},
    {Accent, Outline, "M 19 8.5 L 22 11.5 L 14.2 19.3 L 10.6 19.9 L 11.2 16.3 Z"},
};
constexpr Figure serialConnector[] = {
    {Line, Outline, "M 2 6.5 L 22 6.5 L 19.2 17.5 L 4.8 17.5 Z"},
    {Accent, Fill, "O 6.4 10.2 1.15 O 9.2 10.2 1.15 O 12 10.2 1.15 O 14.8 10.2 1.15 O 17.6 10.2 1.15"},
    {Accent, Fill, "O 7.8 13.9 1.15 O 10.6 13.9 1.15 O 13.4 13.9 1.15 O 16.2 13.9 1.15"},
};
constexpr Figure addressTag[] = {
    {Line, Outline, "M 2.5 5 L 16 5 L 22 12 L 16 19 L 2.5 19 Z"},
    {Line, Fill, "O 18 12 1.3"},
    {Accent, Stroke, "M 8.6 8 L 7.4 16 M 12.6 8 L 11.4 16 M 5.6 10.5 L 14.4 10.5 M 5.2 13.5 L 14 13.5"},
};
constexpr Figure terminal[] = {
    {Line, Outline, "R 2.5 3.5 19 17 2"},
    {Accent, Stroke, "M 6 8.5 L 10 12 L 6 15.5 M 12 16 L 17.5 16"},
};
constexpr Figure information[] = {
    {Accent, Outline, "O 12 12 9.3"},
    {Accent, Fill, "O 12 7.4 1.4"},
    {Accent, Stroke, "M 12 11 L 12 17.2"},
};
constexpr Figure exitDoor[] = {
    {Line, Stroke, "M 13.5 3.5 L 4.5 3.5 L 4.5 20.5 L 13.5 20.5"},
    {Alert, Stroke, "M 10 12 L 21 12 M 16.8 7.8 L 21 12 L 16.8 16.2"},
};
constexpr Figure more[] = {
    {Line, Stroke, "M 5 5 L 12 12 L 5 19 M 12 5 L 19 12 L 12 19"},
};
constexpr Figure program[] = {
    {Accent, Fill, "R 1 1 22 22 4.5"},
    {Paper, Stroke, "M 3.8 9.5 L 8 9.5 L 10 4.8 L 13.6 13.6 L 15.4 9.5 L 20.2 9.5"},
    {Paper, Stroke, "M 7 17.2 L 17 17.2 M 10 20.2 L 14 20.2"},
};

struct Drawing {
    std::string_view key;
    std::span<const Figure> figures;
};

constexpr std::string_view programKey;
constexpr std::string_view moreKey = "MORE";
constexpr Drawing drawings[] = {
    {"DEV_MONITOR", monitor},
    {"DEV_PARA", parameters},
    {"DEBUG_VALUE", measuredValues},
    {"DEBUG_PARA", parameterRegisters},
    {"INTERFACE", serialConnector},
    {"DEV_ADR", addressTag},
    {"TERMINAL", terminal},
    {"INFO", information},
    {"MODBUS_EXIT", exitDoor},
    {programKey, program},
    {moreKey, more},
};

/// Takes the figures' path texts apart.
class PathReader {
  public:
    explicit PathReader(std::string_view text) : text_(text) {}

    QPainterPath read() {
        QPainterPath path;
        while (!text_.empty()) {
            add(path, text_.front());
            text_.remove_prefix(std::min(text_.find_first_not_of(' '), text_.size()));
        }
        return path;
    }

  private:
    double number() {
        text_.remove_prefix(std::min(text_.find_first_not_of(' '), text_.size()));
        const std::size_t length = std::min(text_.find(' '), text_.size());
        const double value = std::strtod(std::string(text_.substr(0, length)).c_str(), nullptr);
        text_.remove_prefix(length);
        return value;
    }

    template <std::size_t count>
    std::array<double, count> numbers() {
        std::array<double, count> values{};
        std::generate(values.begin(), values.end(), [this] { return number(); });
        return values;
    }

    void add(QPainterPath& path, char command) {
        text_.remove_prefix(1);
        if (command == 'M') {
            const auto [x, y] = numbers<2>();
            path.moveTo(x, y);
        } else if (command == 'L') {
            const auto [x, y] = numbers<2>();
            path.lineTo(x, y);
        } else if (command == 'O') {
            const auto [x, y, radius] = numbers<3>();
            path.addEllipse(QPointF(x, y), radius, radius);
        } else if (command == 'R') {
            const auto [x, y, width, height, radius] = numbers<5>();
            path.addRoundedRect(x, y, width, height, radius, radius);
        } else if (command == 'Z') {
            path.closeSubpath();
        }
    }

    std::string_view text_;
};

QColor colorOf(Ink ink, QIcon::Mode mode) {
    if (ink == Paper) {
        return Qt::white;
    }
    if (mode == QIcon::Disabled) {
        return {160, 160, 160};
    }
    switch (ink) {
        case Accent:
            return {21, 101, 192};
        case Alert:
            return {211, 47, 47};
        default:
            return QGuiApplication::palette().color(QPalette::ButtonText);
    }
}

void draw(QPainter& painter, const Figure& figure, QIcon::Mode mode) {
    const QPainterPath path = PathReader(figure.path).read();
    const QColor color = colorOf(figure.ink, mode);
    if (figure.draw != Stroke) {
        painter.fillPath(path, figure.draw == Fill ? color : colorOf(Paper, mode));
    }
    if (figure.draw != Fill) {
        painter.strokePath(path, QPen(color, lineWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    }
}

/// Paints a drawing at whatever size is asked for. Pictures once drawn are kept: the system wants all sizes
/// of the program's icon anew for each window, and a tool bar wants those of its buttons whenever it is
/// painted.
class DrawingEngine : public QIconEngine {
  public:
    explicit DrawingEngine(const Drawing& drawing) : drawing_(drawing) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State /*state*/) override {
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        const double side = std::min(rect.width(), rect.height());
        painter->translate(QRectF(rect).center() - QPointF(side, side) / 2);
        painter->scale(side / gridSize, side / gridSize);
        for (const Figure& figure : drawing_.figures) {
            draw(*painter, figure, mode);
        }
        painter->restore();
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
        const QString key = keptAs(size, mode);
        QPixmap pixmap;
        if (QPixmapCache::find(key, &pixmap)) {
            return pixmap;
        }
        pixmap = QPixmap(size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        paint(&painter, pixmap.rect(), mode, state);
        painter.end();
        QPixmapCache::insert(key, pixmap);
        return pixmap;
    }

    QIconEngine* clone() const override { return new DrawingEngine(drawing_); }

  private:
    QString keptAs(const QSize& size, QIcon::Mode mode) const {
        return QString::asprintf("drawing %p %dx%d %d %lld", static_cast<const void*>(&drawing_),
                                 size.width(), size.height(), mode, QGuiApplication::palette().cacheKey());
    }

    const Drawing& drawing_;
};

QIcon iconFor(std::string_view key) {
    const auto found = std::find_if(std::begin(drawings), std::end(drawings),
                                    [key](const Drawing& drawing) { return drawing.key == key; });
    return found == std::end(drawings) ? QIcon() : QIcon(new DrawingEngine(*found));
}

}  // namespace

QIcon toolIcon(const std::string& key) {
    return iconFor(key);
}

QIcon programIcon() {
    return iconFor(programKey);
}

QIcon moreIcon() {
    return iconFor(moreKey);
}

}  // namespace vek
