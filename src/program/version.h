#pragma once

namespace vek {

/// The program's title, as the about box names it.
inline constexpr const char* programTitle = "MODBUS RTU / KDL - Monitor";

/// Major, minor and revision number.
inline constexpr const char* versionText = "2.2.2";

}  // namespace vek
