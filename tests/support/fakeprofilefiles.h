#pragma once

#include <map>
#include <string>
#include <vector>

#include "platform/profilefiles.h"

namespace vek {

/// Profile files in memory, with the text rules of the real ones.
class FakeProfileFiles final : public ProfileFiles {
  public:
    std::map<std::string, std::string> files;  ///< path and the bytes as they would stand on disk
    bool refuseReads = false;
    bool refuseWrites = false;
    int readCount = 0;
    int writeCount = 0;  ///< successful writes

    std::string text(const std::string& path) override;
    bool write(const std::string& path, const std::vector<ProfileEntry>& entries) override;
};

}  // namespace vek
