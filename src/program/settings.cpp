#include "program/settings.h"

namespace vek {

std::string settingText(Program& program, const Setting& setting) {
    return ProfileSnapshot(program, program.settingsPath).value(setting.key, setting.section);
}

void storeSettings(Program& program, const std::vector<ProfileEntry>& settings) {
    if (!program.profileFiles.write(program.settingsPath, settings)) {
        showError(program, "Die Einstellungen konnten nicht gespeichert werden.");
    }
}

}  // namespace vek
