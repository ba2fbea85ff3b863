#pragma once

#include <QAbstractScrollArea>
#include <QFontMetricsF>
#include <QTimer>
#include <cstdint>
#include <tuple>

#include "platform/logstore.h"
#include "platform/property.h"

namespace vek {

/// Shows a log of any length: only the lines in view are ever made into text. It follows the end until the
/// user scrolls up, and lets him mark and copy lines but change nothing.
class LogView : public QAbstractScrollArea {
    Q_OBJECT
    Q_PROPERTY(QString plainText READ plainText)

  public:
    /// `store` outlives the view.
    LogView(LogStore& store, QWidget* parent);

    /// The whole log, each line followed by a newline.
    QString plainText() const;

    /// The marked text, lines joined by newlines.
    QString selectedText() const;

    /// Height in pixels that the program wants, where there is room for it; 0 = none.
    void setWantedHeight(int height);

    QSize sizeHint() const override;

  public Q_SLOTS:
    void copy() const;
    void selectAll();

  protected:
    void paintEvent(QPaintEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    /// A place between two characters.
    struct Place {
        std::uint64_t line = 0;
        qsizetype column = 0;

        friend bool operator==(const Place&, const Place&) = default;
        friend bool operator<(const Place& a, const Place& b) {
            return std::tie(a.line, a.column) < std::tie(b.line, b.column);
        }
    };
    struct Span {
        Place begin;
        Place end;
    };

    QString lineText(std::uint64_t line) const;
    void linesAdded();
    void flush();
    void updateFrom(std::uint64_t line);
    void setLastLine(int line);
    void updateRanges();
    void setMetrics();
    bool atEnd() const;
    int visibleLines() const;
    int lineHeight() const;
    std::uint64_t firstLine() const;
    Place placeAt(const QPointF& position) const;
    Span selection() const;
    void select(const Place& anchor, const Place& caret);
    void selectWord(const Place& place);
    void dragTo(const QPointF& position);
    void scrollWhileDragging();
    void paintLine(QPainter& painter, std::uint64_t line, int top, const Span& marked) const;

    const LogStore& store_;
    double characterWidth_ = 1;
    std::uint64_t drawnLines_ = 0;  ///< lines that the scroll bar knows
    Place anchor_;
    Place caret_;
    QPointF dragPosition_;
    QTimer flushTimer_;
    QTimer dragTimer_;
    Subscription added_;
};

}  // namespace vek
