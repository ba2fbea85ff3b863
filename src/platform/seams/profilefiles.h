#pragma once

#include <string>
#include <vector>

namespace vek {

/// One key=value line of one section of a profile file. All texts are UTF-8.
struct ProfileEntry {
    std::string section;
    std::string key;
    std::string value;
    bool removed = false;  ///< the file is to have no such line
};

/// Profile (INI) files: `[section]` lines and key=value lines, Windows-1252 on disk, UTF-8 here. Sections and
/// keys compare without regard to case, umlauts included; the first matching section and key count.
class ProfileFiles {
  public:
    virtual ~ProfileFiles() = default;

    /// The bytes of the file, for readProfileText(); "" when it is missing or unreadable.
    virtual std::string text(const std::string& path) = 0;

    /// Writes all entries in one atomic replacement of the file: afterwards it holds the old text or the
    /// whole new one. Everything else in the file stays byte for byte. Missing file, section or key is
    /// created (new sections at the end of the file, new keys at the end of their section). Characters
    /// without a Windows-1252 code are written as "?"; CR, LF and NUL in a value as blanks. False when the
    /// file could not be written; it is then unchanged.
    virtual bool write(const std::string& path, const std::vector<ProfileEntry>& entries) = 0;
};

}  // namespace vek
