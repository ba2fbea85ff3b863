#include "platform/diskprofilefiles.h"

#include "platform/profiletext.h"
#include "platform/seams/atomicfile.h"

namespace vek {

std::string DiskProfileFiles::text(const std::string& path) {
    std::string file;
    readRegularFile(path, file);
    return file;
}

bool DiskProfileFiles::write(const std::string& path, const std::vector<ProfileEntry>& entries) {
    std::string file;
    if (readRegularFile(path, file) == FileRead::Refused) {
        return false;
    }
    writeProfileText(file, entries);
    return replaceFile(path, file);
}

}  // namespace vek
