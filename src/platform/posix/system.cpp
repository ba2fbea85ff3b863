#include "platform/seams/system.h"

#include "platform/posix/posixfolders.h"
#include "platform/posix/posixprofilefiles.h"
#include "platform/posix/posixserial.h"

namespace vek {

std::unique_ptr<Folders> systemFolders() {
    return std::make_unique<PosixFolders>();
}

std::unique_ptr<ProfileFiles> systemProfileFiles() {
    return std::make_unique<PosixProfileFiles>();
}

std::unique_ptr<SerialControl> systemSerialControl(const std::string& dataFolder) {
    return std::make_unique<PosixSerial>(dataFolder);
}

}  // namespace vek
