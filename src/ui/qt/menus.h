#pragma once

#include <vector>

#include "platform/controls.h"
#include "ui/qt/links.h"

class QMainWindow;

namespace vek {

/// Make the main window's menu, tool bar and status bar; all of them tied by `links`.
void makeMenu(const std::vector<MenuItem*>& items, QMainWindow& window, Links& links);
void makeToolBar(ToolBar& control, QMainWindow& window, Links& links);
void makeStatusBar(StatusBar& control, QMainWindow& window, Links& links);

}  // namespace vek
