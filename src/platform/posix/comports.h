#pragma once

#include <string>

#include "platform/seams/rawline.h"

namespace vek {

/// Device that COM `number` (1 to 16) stands for: what the link `<dataFolder>/ports/com<number>` names, also
/// when that device is absent; without such a link the fixed device of the number. "" for other numbers.
std::string comDevicePath(const std::string& dataFolder, int number);

/// The same with the group that owns the device.
PortInfo comPortInfo(const std::string& dataFolder, int number);

}  // namespace vek
