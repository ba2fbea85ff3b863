#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "program/program.h"

namespace vek {

/// The all-users application data folder without a trailing separator. When the system does not give it, ""
/// (after a message where the cause is known).
std::string GetCommonAppDataFolder(Program& program);

/// Full path of the settings file in that folder (in the root folder when there is none).
std::string settingsFilePath(Program& program);

/// Value of the key in the section of the file at ProfilePath: at most 254 characters, without NUL
/// characters; "" when key, section or file is missing. An empty ProfilePath first becomes DeviceName with
/// ".GPM".
std::string GetProfileValue(Program& program, std::string_view key, std::string_view section);

/// The file at ProfilePath at one moment: values of it that belong together, whoever writes it meanwhile. An
/// empty ProfilePath is treated as by GetProfileValue.
class ProfileSnapshot {
  public:
    explicit ProfileSnapshot(Program& program);

    /// The file at this path.
    ProfileSnapshot(Program& program, const std::string& path) : text_(program.profileFiles.text(path)) {}

    /// As GetProfileValue.
    std::string value(std::string_view key, std::string_view section) const;

  private:
    std::string text_;
};

/// Writes all values to the file at ProfilePath in one step: whenever the program is stopped, the file holds
/// all the old values or all the new ones. Without a ProfilePath: a message for each value and nothing is
/// written. Values without a key are left out. A file that cannot be written stays as it is.
void SetProfileValue(Program& program, std::vector<ProfileEntry> values);

}  // namespace vek
