#pragma once

#include <string>
#include <utility>
#include <vector>

#include "program/IOatINI.h"

/// What the settings file holds.
namespace vek {

/// Where a value stands in the settings file.
struct Setting {
    const char* section;
    const char* key;

    ProfileEntry with(std::string value) const { return {section, key, std::move(value)}; }
};

inline constexpr Setting comSetting{"RS485", "COM"};
inline constexpr Setting baudSetting{"RS485", "BAUD"};
inline constexpr Setting frameSetting{"RS485", "FRAME"};
inline constexpr Setting moduleVoltageSetting{"BATTERIE_PARA", "U_MODUL"};
inline constexpr Setting offsetOnSetting{"BATTERIE_PARA", "ON_ROFF"};
inline constexpr Setting offsetSetting{"BATTERIE_PARA", "ROFF_VAL"};
inline constexpr Setting moduleCountSetting{"BATTERIE_PARA", "ANZ_MODULE"};
inline constexpr Setting moduleRangeSetting{"BATTERIE_PARA", "MODUL_BER"};

/// The setting in the settings file, whatever ProfilePath is; as GetProfileValue otherwise.
std::string settingText(Program& program, const Setting& setting);

/// Writes to the settings file in one step, whatever ProfilePath is. A message when it cannot be written.
void storeSettings(Program& program, const std::vector<ProfileEntry>& settings);

}  // namespace vek
