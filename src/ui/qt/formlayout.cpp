#include "ui/qt/formlayout.h"

#include <QBoxLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QPushButton>
#include <algorithm>
#include <memory>
#include <vector>

#include "ui/qt/controlviews.h"

namespace vek {

namespace {

constexpr int gapSize = 12;
constexpr int frameMargin = 7;
constexpr int frameMarginAbove = 3;  // the caption stands above the frame; many frames make a window high
constexpr int gridLineSpacing = 3;   // tables are read along their lines

/// Builds the layouts of one window. Widgets come into being in the order of the parts, which makes the tab
/// order.
class Builder {
  public:
    explicit Builder(Links& links) : links_(links) {}

    /// The item for one part, its widgets being children of `parent`. A layout is owned by the caller.
    struct Item {
        QWidget* widget = nullptr;
        std::unique_ptr<QLayout> layout;
        std::unique_ptr<QSpacerItem> space;
    };
    Item make(const Box& box, QWidget& parent);

  private:
    Item line(const Box& box, QWidget& parent, QBoxLayout::Direction direction);
    Item gridOf(const Box& box, QWidget& parent);
    Item framed(const Box& box, QWidget& parent);

    Links& links_;
};

void add(QBoxLayout& layout, Builder::Item item) {
    if (item.widget != nullptr) {
        layout.addWidget(item.widget);
    } else if (item.layout) {
        layout.addLayout(item.layout.release());
    } else if (item.space) {
        layout.addItem(item.space.release());
    }
}

void add(QGridLayout& layout, Builder::Item item, int line, int column, int span) {
    if (item.widget != nullptr) {
        layout.addWidget(item.widget, line, column, 1, span);
    } else if (item.layout) {
        layout.addLayout(item.layout.release(), line, column, 1, span);
    } else if (item.space) {
        layout.addItem(item.space.release(), line, column, 1, span);
    }
}

/// Buttons side by side are of one size.
void equalize(const QBoxLayout& layout) {
    std::vector<QPushButton*> buttons;
    int width = 0;
    for (int index = 0; index < layout.count(); ++index) {
        if (auto* button = qobject_cast<QPushButton*>(layout.itemAt(index)->widget())) {
            buttons.push_back(button);
            width = std::max(width, button->sizeHint().width());
        }
    }
    for (QPushButton* button : buttons) {
        button->setMinimumWidth(width);
    }
}

Builder::Item Builder::line(const Box& box, QWidget& parent, QBoxLayout::Direction direction) {
    auto layout = std::make_unique<QBoxLayout>(direction);
    for (const Box& part : box.parts) {
        add(*layout, make(part, parent));
    }
    if (direction == QBoxLayout::LeftToRight) {
        equalize(*layout);
    }
    return {nullptr, std::move(layout), nullptr};
}

Builder::Item Builder::gridOf(const Box& box, QWidget& parent) {
    auto layout = std::make_unique<QGridLayout>();
    layout->setVerticalSpacing(gridLineSpacing);
    int line = 0;
    int column = 0;
    for (const Box& part : box.parts) {
        if (column + part.span > box.columns) {
            ++line;
            column = 0;
        }
        add(*layout, make(part, parent), line, column, part.span);
        column += part.span;
    }
    for (const int stretched : box.stretchColumns) {
        layout->setColumnStretch(stretched, 1);
    }
    return {nullptr, std::move(layout), nullptr};
}

/// Only in a layout that has its widget: the question fixes the spacings, which come from there.
void addStretchBelow(QBoxLayout& layout) {
    if ((layout.expandingDirections() & Qt::Vertical) == 0) {
        layout.addStretch();
    }
}

Builder::Item Builder::framed(const Box& box, QWidget& parent) {
    QWidget* const group = makeControlView(box.control, parent, links_);
    auto* const layout = new QVBoxLayout(group);
    layout->setContentsMargins(frameMargin, frameMarginAbove, frameMargin, frameMarginAbove);
    for (const Box& part : box.parts) {
        add(*layout, make(part, *group));
    }
    addStretchBelow(*layout);
    return {group, nullptr, nullptr};
}

Builder::Item Builder::make(const Box& box, QWidget& parent) {
    switch (box.kind) {
        case Box::Kind::Cell:
            return {makeControlView(box.control, parent, links_), nullptr, nullptr};
        case Box::Kind::Row:
            return line(box, parent, QBoxLayout::LeftToRight);
        case Box::Kind::Column:
            return line(box, parent, QBoxLayout::TopToBottom);
        case Box::Kind::Grid:
            return gridOf(box, parent);
        case Box::Kind::Framed:
            return framed(box, parent);
        case Box::Kind::Stretch:
            return {nullptr, nullptr,
                    std::make_unique<QSpacerItem>(0, 0, QSizePolicy::Expanding, QSizePolicy::Expanding)};
        case Box::Kind::Gap:
            return {nullptr, nullptr,
                    std::make_unique<QSpacerItem>(gapSize, gapSize, QSizePolicy::Fixed, QSizePolicy::Fixed)};
    }
    return {};
}

}  // namespace

void layOut(const Box& box, QWidget& content, Links& links) {
    auto* const layout = new QVBoxLayout(&content);
    add(*layout, Builder(links).make(box, content));
    if (box.kind == Box::Kind::Cell) {  // one control that fills the window
        layout->setContentsMargins(0, 0, 0, 0);
    } else {
        addStretchBelow(*layout);
    }
}

}  // namespace vek
