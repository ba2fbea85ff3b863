#include "program/IOatINI.h"

#include <algorithm>

#include "platform/profiletext.h"

namespace vek {

namespace {

constexpr std::size_t maximumValueLength = 254;

}  // namespace

std::string GetCommonAppDataFolder(Program& program) {
    const Folder folder = program.folders.commonAppData();
    switch (folder.result) {
        case FolderResult::Ok:
            return folder.path;
        case FolderResult::InvalidArgument:
            showError(program, "Ungültiges Verzeichnis");
            return "";
        case FolderResult::NotFound:
            showError(program, "Datei-Pfad nicht gefunden");
            return "";
        case FolderResult::Failed:
            return "";
    }
    return "";
}

std::string settingsFilePath(Program& program) {
    return GetCommonAppDataFolder(program) + program.folders.separator() + "vekXX731_Monitor.ini";
}

std::string GetProfileValue(Program& program, std::string_view key, std::string_view section) {
    return ProfileSnapshot(program).value(key, section);
}

ProfileSnapshot::ProfileSnapshot(Program& program) {
    if (program.ProfilePath.empty()) {
        program.ProfilePath = program.DeviceName + ".GPM";
    }
    text_ = program.profileFiles.text(program.ProfilePath);
}

std::string ProfileSnapshot::value(std::string_view key, std::string_view section) const {
    if (key.empty()) {
        return "";
    }
    std::string value = readProfileText(text_, section, key, maximumValueLength);
    std::erase(value, '\0');
    return value;
}

void SetProfileValue(Program& program, std::vector<ProfileEntry> values) {
    if (program.ProfilePath.empty()) {
        for (std::size_t index = 0; index < values.size(); ++index) {
            showError(program, "Keine gültige Parameter-Datei vorhanden");
        }
        return;
    }
    std::erase_if(values, [](const ProfileEntry& value) { return value.key.empty(); });
    if (!values.empty()) {
        program.profileFiles.write(program.ProfilePath, values);
    }
}

}  // namespace vek
