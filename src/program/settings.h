#pragma once

#include <string>
#include <utility>

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

/// As GetProfileValue.
inline std::string settingText(Program& program, const Setting& setting) {
    return GetProfileValue(program, setting.key, setting.section);
}

}  // namespace vek
