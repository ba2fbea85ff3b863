#pragma once

#include <string>

#include "platform/seams/folders.h"

namespace vek {

/// Where the data folder may be, in the order of preference; "" = not available.
struct FolderCandidates {
    std::string shared;       ///< made by the administrator for all users
    std::string xdgDataHome;  ///< the user's choice; counts only when it is absolute
    std::string home;         ///< the user's home folder
};

/// The candidates of this machine and user.
FolderCandidates systemFolderCandidates();

class PosixFolders final : public Folders {
  public:
    explicit PosixFolders(FolderCandidates candidates = systemFolderCandidates());

    /// The shared folder if the user may write there, else the one of the user, made (with its parents, for
    /// the user alone) when it is missing. NotFound without a home, Failed when it cannot be made.
    Folder commonAppData() override;
    char separator() const override { return '/'; }

  private:
    FolderCandidates candidates_;
};

}  // namespace vek
