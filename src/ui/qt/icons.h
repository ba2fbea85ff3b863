#pragma once

#include <QIcon>
#include <string>

namespace vek {

/// The picture of the tool bar button with this key, sharp at every size; without a picture for an unknown
/// key.
QIcon toolIcon(const std::string& key);

/// The picture of the program itself.
QIcon programIcon();

/// What stands at the end of a bar that has no room for all its entries.
QIcon moreIcon();

}  // namespace vek
