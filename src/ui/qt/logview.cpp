#include "ui/qt/logview.h"

#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QFontDatabase>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <QSignalBlocker>
#include <QStyle>
#include <QStyleOptionSlider>
#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <utility>

#include "ui/qt/qttext.h"

namespace vek {

namespace {

constexpr int flushMs = 50;
constexpr int dragScrollMs = 40;
constexpr int margin = 3;
constexpr int hintCharacters = 40;
constexpr int hintLines = 24;
constexpr QColor markColor(173, 214, 255);

QColor inkOf(LogColor color) {
    constexpr QColor inks[] = {{0, 0, 0}, {255, 0, 0}, {0, 0, 255}};
    return inks[static_cast<int>(color)];
}

/// A scroll bar counts in int; far beyond any log that fits into memory.
int barValue(std::uint64_t value) {
    return static_cast<int>(std::min<std::uint64_t>(value, std::numeric_limits<int>::max()));
}

/// Draws itself only when its handle has moved on the screen: in a long log each line changes range and
/// value, which hardly ever shows.
class CalmScrollBar : public QScrollBar {
  public:
    using QScrollBar::QScrollBar;

  protected:
    void sliderChange(SliderChange change) override {
        if (handle() != drawn_) {
            QScrollBar::sliderChange(change);
        }
    }

    void paintEvent(QPaintEvent* event) override {
        drawn_ = handle();
        QScrollBar::paintEvent(event);
    }

  private:
    QRect handle() const {
        QStyleOptionSlider option;
        initStyleOption(&option);
        return style()->subControlRect(QStyle::CC_ScrollBar, &option, QStyle::SC_ScrollBarSlider, this);
    }

    QRect drawn_;
};

}  // namespace

LogView::LogView(LogStore& store, QWidget* parent) : QAbstractScrollArea(parent), store_(store) {
    setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    setFocusPolicy(Qt::StrongFocus);
    setVerticalScrollBar(new CalmScrollBar(Qt::Vertical, this));
    viewport()->setCursor(Qt::IBeamCursor);
    viewport()->setAutoFillBackground(false);
    viewport()->setAttribute(Qt::WA_OpaquePaintEvent);  // lines bring their background
    flushTimer_.setSingleShot(true);
    flushTimer_.setInterval(flushMs);
    connect(&flushTimer_, &QTimer::timeout, this, &LogView::flush);
    dragTimer_.setInterval(dragScrollMs);
    connect(&dragTimer_, &QTimer::timeout, this, &LogView::scrollWhileDragging);
    setMetrics();
    flush();
    added_ = store.count().observe([this](std::uint64_t /*count*/) { linesAdded(); });
}

void LogView::setMetrics() {
    characterWidth_ = QFontMetricsF(font()).horizontalAdvance(QLatin1Char('0'));
}

int LogView::lineHeight() const {
    return fontMetrics().lineSpacing();
}

QSize LogView::sizeHint() const {
    const int width = static_cast<int>(std::ceil(characterWidth_ * hintCharacters)) + 2 * margin;
    const QSize frame(2 * frameWidth() + verticalScrollBar()->sizeHint().width(), 2 * frameWidth());
    return QSize(width, lineHeight() * hintLines) + frame;
}

void LogView::setWantedHeight(int height) {
    // An upper bound: a view that insisted on it would push its window open where the frame is higher than
    // thought.
    setMaximumHeight(height > 0 ? height : QWIDGETSIZE_MAX);
}

QString LogView::lineText(std::uint64_t line) const {
    return toQt(store_.text(line));
}

QString LogView::plainText() const {
    QString text;
    for (std::uint64_t line = 0; line < store_.lineCount(); ++line) {
        text += lineText(line) + QLatin1Char('\n');
    }
    return text;
}

void LogView::linesAdded() {
    if (isVisible() && !flushTimer_.isActive()) {
        flushTimer_.start();
    }
}

/// Takes in all lines appended since the last time, at a pace that the eye can follow.
void LogView::flush() {
    const std::uint64_t firstNew = std::exchange(drawnLines_, store_.lineCount());
    updateRanges();
    updateFrom(firstNew);
}

/// Has the line and all below it drawn again, as far as they are in view.
void LogView::updateFrom(std::uint64_t line) {
    const std::uint64_t row = line - std::min(line, firstLine());
    if (row <= static_cast<std::uint64_t>(visibleLines())) {
        QRect below = viewport()->rect();
        below.setTop(static_cast<int>(row) * lineHeight());
        viewport()->update(below);
    }
}

/// Moves what is drawn already; only what comes into view is to be drawn then.
void LogView::scrollContentsBy(int dx, int dy) {
    if (std::abs(dy) > visibleLines()) {
        viewport()->update();
    } else {
        viewport()->scroll(dx, dy * lineHeight());
    }
}

/// The last line that can be the first in view.
void LogView::setLastLine(int line) {
    QScrollBar& bar = *verticalScrollBar();
    // Told that the range has changed, the scroll area lays out and draws both its bars, although one that
    // only grows neither shows nor hides them.
    const bool onlyGrows = 0 < bar.maximum() && bar.maximum() <= line;
    const QSignalBlocker quiet(onlyGrows ? &bar : nullptr);
    bar.setRange(0, line);
}

/// Whatever has changed the ranges, a view at the end stays there: one that fell behind once would never
/// follow again.
void LogView::updateRanges() {
    const bool follow = atEnd();
    const int lines = visibleLines();
    verticalScrollBar()->setPageStep(std::max(lines, 1));
    setLastLine(std::max(barValue(drawnLines_) - lines, 0));
    const double textWidth = characterWidth_ * static_cast<double>(store_.widestLine()) + 2 * margin;
    const double hidden = std::ceil(textWidth) - viewport()->width();
    horizontalScrollBar()->setSingleStep(static_cast<int>(characterWidth_));
    horizontalScrollBar()->setPageStep(viewport()->width());
    horizontalScrollBar()->setRange(0, static_cast<int>(std::clamp(hidden, 0.0, 1e9)));
    if (follow) {
        verticalScrollBar()->setValue(verticalScrollBar()->maximum());
    }
}

bool LogView::atEnd() const {
    return verticalScrollBar()->value() == verticalScrollBar()->maximum();
}

int LogView::visibleLines() const {
    return viewport()->height() / lineHeight();
}

std::uint64_t LogView::firstLine() const {
    return static_cast<std::uint64_t>(verticalScrollBar()->value());
}

LogView::Place LogView::placeAt(const QPointF& position) const {
    const double row = std::floor(position.y() / lineHeight());
    const double line = static_cast<double>(firstLine()) + row;
    if (line < 0 || drawnLines_ == 0) {
        return {};
    }
    if (line >= static_cast<double>(drawnLines_)) {
        return {drawnLines_ - 1, lineText(drawnLines_ - 1).size()};
    }
    const auto index = static_cast<std::uint64_t>(line);
    const double column = (position.x() + horizontalScrollBar()->value() - margin) / characterWidth_;
    const auto length = static_cast<double>(lineText(index).size());
    return {index, static_cast<qsizetype>(std::clamp(std::round(column), 0.0, length))};
}

LogView::Span LogView::selection() const {
    return {std::min(anchor_, caret_), std::max(anchor_, caret_)};
}

void LogView::select(const Place& anchor, const Place& caret) {
    anchor_ = anchor;
    caret_ = caret;
    viewport()->update();
}

void LogView::selectWord(const Place& place) {
    if (drawnLines_ == 0) {
        return;
    }
    const QString text = lineText(place.line);
    const auto inWord = [&text](qsizetype at) { return !text.at(at).isSpace(); };
    qsizetype begin = place.column;
    while (begin > 0 && inWord(begin - 1)) {
        --begin;
    }
    qsizetype end = place.column;
    while (end < text.size() && inWord(end)) {
        ++end;
    }
    select({place.line, begin}, {place.line, end});
}

void LogView::selectAll() {
    if (drawnLines_ > 0) {
        select({}, {drawnLines_ - 1, lineText(drawnLines_ - 1).size()});
    }
}

QString LogView::selectedText() const {
    const auto [begin, end] = selection();
    if (begin == end) {
        return {};
    }
    QString text;
    for (std::uint64_t line = begin.line; line <= end.line; ++line) {
        const QString whole = lineText(line);
        const qsizetype from = line == begin.line ? begin.column : 0;
        const qsizetype to = line == end.line ? end.column : whole.size();
        text += whole.sliced(from, to - from);
        if (line != end.line) {
            text += QLatin1Char('\n');
        }
    }
    return text;
}

void LogView::copy() const {
    if (const QString text = selectedText(); !text.isEmpty()) {
        QApplication::clipboard()->setText(text);
    }
}

void LogView::paintLine(QPainter& painter, std::uint64_t line, int top, const Span& marked) const {
    const QString text = lineText(line);
    const double left = margin - horizontalScrollBar()->value();
    if (marked.begin.line <= line && line <= marked.end.line && marked.begin != marked.end) {
        const qsizetype from = line == marked.begin.line ? marked.begin.column : 0;
        const qsizetype to =
            line == marked.end.line ? marked.end.column : text.size() + 1;  // the line end too
        painter.fillRect(QRectF(left + characterWidth_ * static_cast<double>(from), top,
                                characterWidth_ * static_cast<double>(to - from), lineHeight()),
                         markColor);
    }
    painter.setPen(inkOf(store_.line(line).color));
    painter.drawText(QPointF(left, top + fontMetrics().ascent()), text);
}

void LogView::paintEvent(QPaintEvent* event) {
    QPainter painter(viewport());
    const QRect& part = event->rect();
    painter.fillRect(part, Qt::white);
    const Span marked = selection();
    int top = part.top() - part.top() % lineHeight();
    for (std::uint64_t line = firstLine() + static_cast<std::uint64_t>(top / lineHeight());
         line < drawnLines_ && top <= part.bottom(); ++line) {
        paintLine(painter, line, top, marked);
        top += lineHeight();
    }
}

void LogView::showEvent(QShowEvent* event) {
    QAbstractScrollArea::showEvent(event);
    flush();
}

/// Out of sight the log is not looked at, so that it may go before its view.
void LogView::hideEvent(QHideEvent* event) {
    QAbstractScrollArea::hideEvent(event);
    flushTimer_.stop();
    dragTimer_.stop();
}

void LogView::resizeEvent(QResizeEvent* event) {
    QAbstractScrollArea::resizeEvent(event);
    updateRanges();
}

void LogView::changeEvent(QEvent* event) {
    QAbstractScrollArea::changeEvent(event);
    if (event->type() == QEvent::FontChange) {
        setMetrics();
        updateRanges();
    }
}

void LogView::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) {
        return;
    }
    const Place place = placeAt(event->position());
    select(event->modifiers().testFlag(Qt::ShiftModifier) ? anchor_ : place, place);
}

void LogView::dragTo(const QPointF& position) {
    dragPosition_ = position;
    select(anchor_, placeAt(position));
    if (viewport()->rect().contains(position.toPoint())) {
        dragTimer_.stop();
    } else if (!dragTimer_.isActive()) {
        dragTimer_.start();
    }
}

void LogView::mouseMoveEvent(QMouseEvent* event) {
    if (event->buttons().testFlag(Qt::LeftButton)) {
        dragTo(event->position());
    }
}

/// Scrolls as long as the mouse is held beyond an edge, the faster the farther.
void LogView::scrollWhileDragging() {
    const QRectF view = viewport()->rect();
    const auto beyond = [](double at, double low, double high) {
        return at < low ? at - low : std::max(at - high, 0.0);
    };
    const double down = beyond(dragPosition_.y(), view.top(), view.bottom());
    const double right = beyond(dragPosition_.x(), view.left(), view.right());
    const auto steps = [](double distance, double unit) {
        return static_cast<int>(distance < 0 ? std::floor(distance / unit) : std::ceil(distance / unit));
    };
    verticalScrollBar()->setValue(verticalScrollBar()->value() + steps(down, lineHeight()));
    horizontalScrollBar()->setValue(horizontalScrollBar()->value() + steps(right, 1));
    select(anchor_, placeAt(dragPosition_));
}

void LogView::mouseReleaseEvent(QMouseEvent* /*event*/) {
    dragTimer_.stop();
}

void LogView::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) {
        selectWord(placeAt(event->position()));
    }
}

void LogView::contextMenuEvent(QContextMenuEvent* event) {
    QMenu menu(this);
    QAction* const copyAction = menu.addAction(QStringLiteral("Kopieren"), this, &LogView::copy);
    copyAction->setEnabled(anchor_ != caret_);
    menu.addAction(QStringLiteral("Alles markieren"), this, &LogView::selectAll);
    menu.exec(event->globalPos());
}

void LogView::keyPressEvent(QKeyEvent* event) {
    QScrollBar& bar = *verticalScrollBar();
    if (event->matches(QKeySequence::Copy)) {
        copy();
    } else if (event->matches(QKeySequence::SelectAll)) {
        selectAll();
    } else if (event->key() == Qt::Key_Home) {
        bar.setValue(bar.minimum());
    } else if (event->key() == Qt::Key_End) {
        bar.setValue(bar.maximum());
    } else {
        QAbstractScrollArea::keyPressEvent(event);
    }
}

}  // namespace vek
