#pragma once

#include "platform/seams/profilefiles.h"

namespace vek {

/// Profile files on disk. Links are followed; pipes, devices and folders are refused without blocking. What
/// the program does not read or write stays untouched, permissions included.
class DiskProfileFiles final : public ProfileFiles {
  public:
    std::string text(const std::string& path) override;
    bool write(const std::string& path, const std::vector<ProfileEntry>& entries) override;
};

}  // namespace vek
