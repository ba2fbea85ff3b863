#pragma once

#include <type_traits>
#include <utility>
#include <vector>

#include "platform/controls.h"

namespace vek {

/// How the controls of a window are arranged: rows, columns and grids of controls, some in frames. Their
/// order is the tab order.
struct Box {
    enum class Kind {
        Cell,     ///< one control
        Row,      ///< the parts side by side
        Column,   ///< the parts one below the other
        Grid,     ///< the parts line by line in `columns` columns of equal lines
        Framed,   ///< one part inside the frame `control`
        Stretch,  ///< takes the space that is left
        Gap,      ///< a small fixed space
    };

    /// A control stands for its own cell in a list of parts.
    template <class Kind>
    requires std::is_constructible_v<PlacedControl, Kind*> Box(Kind& cell)
        : control(&cell) {}  // NOLINT: see above
    Box(Kind boxKind, std::vector<Box> boxParts) : kind(boxKind), parts(std::move(boxParts)) {}

    Kind kind = Kind::Cell;
    PlacedControl control;  ///< of a cell or a frame, else null
    std::vector<Box> parts;
    int columns = 1;
    std::vector<int> stretchColumns;  ///< of a grid: columns that take the space left over
    int span = 1;                     ///< columns that this part takes in its grid
};

inline Box row(std::vector<Box> parts) {
    return {Box::Kind::Row, std::move(parts)};
}

inline Box column(std::vector<Box> parts) {
    return {Box::Kind::Column, std::move(parts)};
}

inline Box grid(int columns, std::vector<Box> parts, std::vector<int> stretchColumns = {}) {
    Box box(Box::Kind::Grid, std::move(parts));
    box.columns = columns;
    box.stretchColumns = std::move(stretchColumns);
    return box;
}

inline Box framed(Frame& frame, Box content) {
    Box box(Box::Kind::Framed, {std::move(content)});
    box.control = &frame;
    return box;
}

inline Box spanning(int columns, Box part) {
    part.span = columns;
    return part;
}

inline Box stretch() {
    return {Box::Kind::Stretch, {}};
}

inline Box gap() {
    return {Box::Kind::Gap, {}};
}

}  // namespace vek
