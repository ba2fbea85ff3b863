#include "platform/posix/posixprofilefiles.h"

#include "platform/posix/atomicfile.h"
#include "platform/profiletext.h"

namespace vek {

std::string PosixProfileFiles::text(const std::string& path) {
    std::string file;
    readRegularFile(path, file);
    return file;
}

bool PosixProfileFiles::write(const std::string& path, const std::vector<ProfileEntry>& entries) {
    std::string file;
    if (readRegularFile(path, file) == FileRead::Refused) {
        return false;
    }
    writeProfileText(file, entries);
    return replaceFile(path, file);
}

}  // namespace vek
