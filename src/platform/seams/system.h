#pragma once

#include <memory>
#include <string>

#include "platform/seams/folders.h"
#include "platform/seams/rawline.h"

namespace vek {

/// The services of the system that the program is built for.
std::unique_ptr<Folders> systemFolders();

/// `dataFolder` (UTF-8) is where the user can name the devices behind port numbers.
std::unique_ptr<RawLine> systemLine(const std::string& dataFolder);

}  // namespace vek
