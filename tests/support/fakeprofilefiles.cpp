#include "support/fakeprofilefiles.h"

#include "platform/profiletext.h"

namespace vek {

std::string FakeProfileFiles::text(const std::string& path) {
    ++readCount;
    const auto file = files.find(path);
    return refuseReads || file == files.end() ? "" : file->second;
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
