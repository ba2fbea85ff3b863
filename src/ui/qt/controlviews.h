#pragma once

#include "platform/controls.h"
#include "ui/qt/links.h"

class QWidget;

namespace vek {

/// Makes the widget that shows `control`, as a child of `parent`, tied to it by `links`. Frames are made
/// without their contents.
QWidget* makeControlView(PlacedControl control, QWidget& parent, Links& links);

/// Ties what every control has: name, visibility, enabling, tool tip.
void bindCommon(Control& control, QWidget& widget, Links& links);

}  // namespace vek
