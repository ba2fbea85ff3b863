#pragma once

#include <string>
#include <string_view>

namespace vek {

enum class FileRead {
    Ok,
    Missing,
    Refused,  ///< there, but unreadable, no regular file, or beyond 8 MiB
};

/// Reads a whole regular file; links are followed. `bytes` is unchanged unless Ok. Never blocks on a pipe or
/// a device.
FileRead readRegularFile(const std::string& path, std::string& bytes);

/// Puts `bytes` in the place of the file, or creates it, in one step: whatever fails and whenever the machine
/// stops, the path names the old bytes or all the new ones. Permissions stay, and group and owner where the
/// user may give them. A link stays and its target is replaced, or created when it is missing. False when the
/// file (read-only, no regular file) or the system refuses; nothing has changed then.
bool replaceFile(const std::string& path, std::string_view bytes);

}  // namespace vek
