#pragma once

#include <string>

namespace vek {

/// Answer of the system to the question for a folder.
enum class FolderResult {
    Ok,
    InvalidArgument,  ///< the system does not know such a folder
    NotFound,         ///< it knows the folder, but it is not there
    Failed,           ///< any other refusal
};

struct Folder {
    FolderResult result = FolderResult::Failed;
    std::string path;  ///< UTF-8, without a trailing separator; "" unless Ok
};

/// The folders of the system that the program uses.
class Folders {
  public:
    virtual ~Folders() = default;

    /// The folder for the application data of all users, where the settings file stands.
    virtual Folder commonAppData() = 0;

    /// Separator of the path's parts: '/' here, '\\' on Windows.
    virtual char separator() const = 0;
};

}  // namespace vek
