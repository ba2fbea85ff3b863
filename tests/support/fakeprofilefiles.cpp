#include "support/fakeprofilefiles.h"

#include "platform/profiletext.h"

namespace vek {

std::string FakeProfileFiles::read(const std::string& path, std::string_view section, std::string_view key,
                                   std::size_t maxBytes) {
    const auto file = files.find(path);
    return refuseReads || file == files.end() ? "" : readProfileText(file->second, section, key, maxBytes);
}

bool FakeProfileFiles::write(const std::string& path, const std::vector<ProfileEntry>& entries) {
    if (refuseWrites || path.empty()) {
        return false;
    }
    writeProfileText(files[path], entries);
    ++writeCount;
    return true;
}

}  // namespace vek
