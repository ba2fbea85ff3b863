#pragma once

#include <map>
#include <string>
#include <vector>

#include "platform/profiletext.h"
#include "platform/seams/folders.h"
#include "platform/seams/profilefiles.h"

namespace vek {

/// Profile files in memory, with the text rules of the real ones.
class FakeProfileFiles final : public ProfileFiles {
  public:
    std::map<std::string, std::string> files;  ///< path and the bytes as they would stand on disk
    bool refuseWrites = false;
    int readCount = 0;
    int writeCount = 0;  ///< successful writes

    std::string text(const std::string& path) override {
        ++readCount;
        return !files.contains(path) ? "" : files[path];
    }

    bool write(const std::string& path, const std::vector<ProfileEntry>& entries) override {
        if (refuseWrites || path.empty()) {
            return false;
        }
        writeProfileText(files[path], entries);
        ++writeCount;
        return true;
    }
};

/// Folders that answer what the test sets.
class FakeFolders final : public Folders {
  public:
    Folder answer{FolderResult::Ok, "/daten"};

    Folder commonAppData() override { return answer; }
    char separator() const override { return '/'; }
};

}  // namespace vek
