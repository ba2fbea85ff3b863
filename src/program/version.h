#pragma once

#include <string>

namespace vek {

/// The program's title, as the about box names it.
inline constexpr const char* programTitle = "MODBUS RTU / KDL - Monitor";

inline constexpr int versionMajor = 2;
inline constexpr int versionMinor = 2;
inline constexpr int versionRevision = 2;

/// Major, minor and revision number with points between them: 2.2.2.
inline std::string versionText() {
    return std::to_string(versionMajor) + "." + std::to_string(versionMinor) + "." +
           std::to_string(versionRevision);
}

}  // namespace vek
