#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/numberlocale.h"
#include "platform/seams/serialcontrol.h"

/// How a reply text of the alarm or operating-value list becomes a row of the monitor. Replies have no fixed
/// form; the rules look for texts in them, in an order that counts.
namespace vek {

/// Reply for a place behind the last alarm.
inline constexpr std::string_view kdlNoAlarm = "no 0";
/// Reply for a place behind the last operating value.
inline constexpr std::string_view kdlEndOfList = "stop 0";
/// Reply for a capacitance above the measuring range.
inline constexpr std::string_view kdlPeak = "peak 0";

/// Unit of the row; nothing when the row keeps the one it shows.
std::optional<std::string_view> kdlRowUnit(std::string_view reply);

/// Name of the row; nothing when the row keeps the one it shows.
std::optional<std::string_view> kdlRowName(std::string_view reply);

/// What a reply changes in the value fields of its row. Fields that are not set stay as they are.
struct KdlRowValue {
    std::optional<std::string> value;
    std::string range;
    bool forcesRed;  ///< the indicator turns red whatever list the reply comes from

    friend bool operator==(const KdlRowValue&, const KdlRowValue&) = default;
};
KdlRowValue kdlRowValue(std::string_view reply, const NumberLocale& locale);

/// The number that stands from the third character on; 0 when there is none.
double kdlCount(std::string_view reply);

}  // namespace vek
