#pragma once

#include "platform/layout.h"
#include "ui/qt/links.h"

class QWidget;

namespace vek {

/// Fills `content`, which has no layout yet, with the widgets of the controls in `box`, arranged as it says.
void layOut(const Box& box, QWidget& content, Links& links);

}  // namespace vek
