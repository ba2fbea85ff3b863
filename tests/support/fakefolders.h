#pragma once

#include "platform/folders.h"

namespace vek {

/// Folders that answer what the test sets.
class FakeFolders final : public Folders {
  public:
    Folder answer{FolderResult::Ok, "/daten"};

    Folder commonAppData() override { return answer; }
    char separator() const override { return '/'; }
};

}  // namespace vek
