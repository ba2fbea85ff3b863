#include "platform/seams/system.h"

#include "platform/posix/posixfolders.h"
#include "platform/posix/posixline.h"

namespace vek {

std::unique_ptr<Folders> systemFolders() {
    return std::make_unique<PosixFolders>();
}

std::unique_ptr<RawLine> systemLine(const std::string& dataFolder) {
    return std::make_unique<PosixLine>(dataFolder);
}

}  // namespace vek
