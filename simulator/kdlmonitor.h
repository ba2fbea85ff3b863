#pragma once

#include <cstddef>
#include <string>

#include "simulator/device.h"

namespace vek::sim {

// The two lists that a device shows on the KDL bus. Row i of both lists is the same place, counted from 1: a
// place shows its alarm while there is one, and otherwise its operating value. What the places are depends on
// the type.

// Number of active alarms, or which test is running.
std::string kdlAlarmCount(const Device& device);
// The alarm of a row; "no 0" when there is none, also for a row that does not exist.
std::string kdlAlarm(const Device& device, std::size_t row);

// Number of rows.
std::string kdlValueCount(const Device& device);
// The operating value of a row; "no 0" when there is none to be had, "stop 0" behind the last row.
std::string kdlValue(const Device& device, std::size_t row);

}  // namespace vek::sim
