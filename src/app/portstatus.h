#pragma once

#include <string>

#include "program/program.h"

namespace vek {

/// Text of status bar panel 1: protocol, port number, baud rate and frame.
std::string portStatusText(const Program& program);

/// Text that a choice of device address leaves in the main window's caption: protocol title, version and,
/// when a device was found, its name.
std::string searchCaption(const std::string& title, const std::string& deviceName);

}  // namespace vek
