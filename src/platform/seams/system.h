#pragma once

#include <memory>
#include <string>

#include "platform/seams/folders.h"
#include "platform/seams/profilefiles.h"
#include "platform/seams/serialcontrol.h"

namespace vek {

/// The services of the system that the program is built for.
std::unique_ptr<Folders> systemFolders();
std::unique_ptr<ProfileFiles> systemProfileFiles();

/// `dataFolder` (UTF-8) is where the user can name the devices behind port numbers.
std::unique_ptr<SerialControl> systemSerialControl(const std::string& dataFolder);

}  // namespace vek
