#pragma once

#include <termios.h>

#include "platform/seams/rawline.h"
#include "platform/serialsettings.h"

namespace vek {

/// The error that a failed system call on a port stands for; `code` is its errno.
PortError portErrorOf(int code);

/// The terminal state as a plain byte line with these settings: nothing translated, no handshake, modem lines
/// ignored, and read() without data fails with EAGAIN, so that zero bytes mean a hang-up.
termios byteLine(termios line, const SerialSettings& settings);

/// Makes the terminal such a line. The settings are read back; SettingsRefused when the device took others.
PortError applySettings(int terminal, const SerialSettings& settings);

/// Has the driver hand on received bytes at once instead of collecting them for up to 16 ms. False when it
/// was on already or the driver has no such switch.
bool raiseLowLatency(int terminal);
void lowerLowLatency(int terminal);

}  // namespace vek
