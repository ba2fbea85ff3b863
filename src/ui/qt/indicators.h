#pragma once

#include <QColor>
#include <QSlider>
#include <QWidget>

namespace vek {

/// A round indicator: a disc of exactly one colour with a thin dark edge.
class Lamp : public QWidget {
    Q_OBJECT
    Q_PROPERTY(QColor color READ color)

  public:
    explicit Lamp(QWidget* parent);

    QColor color() const { return color_; }
    void setColor(const QColor& color);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    QColor color_;
};

/// A slider that shows a position: only the program moves it, yet it does not look disabled.
class PositionBar : public QSlider {
    Q_OBJECT

  public:
    static constexpr int tickSpaces = 8;

    explicit PositionBar(QWidget* parent);

    QSize sizeHint() const override;

  protected:
    bool event(QEvent* event) override;
};

/// The program's icon as a picture inside a window.
class ProgramPicture : public QWidget {
    Q_OBJECT

  public:
    explicit ProgramPicture(QWidget* parent);

  protected:
    void paintEvent(QPaintEvent* event) override;
};

}  // namespace vek
