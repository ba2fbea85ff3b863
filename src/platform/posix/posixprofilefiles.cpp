#include "platform/posix/posixprofilefiles.h"

#include "platform/posix/atomicfile.h"
#include "platform/profiletext.h"

namespace vek {

std::string PosixProfileFiles::read(const std::string& path, std::string_view section, std::string_view key,
                                    std::size_t maxBytes) {
    std::string file;
    readRegularFile(path, file);
    return readProfileText(file, section, key, maxBytes);
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
