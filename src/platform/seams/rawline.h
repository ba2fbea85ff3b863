#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

#include "platform/clock.h"
#include "platform/serialsettings.h"

namespace vek {

/// Why a port could not be opened. Each has another cure.
enum class PortError {
    None,
    NotThere,         ///< no such device, or the device is no serial port
    InUse,            ///< another program (or another port of this one) holds it
    NotPermitted,     ///< the user lacks the right; see PortInfo::permitted
    SettingsRefused,  ///< the device did not take baud rate, parity or data bits
    Failed,           ///< anything else the system reports
};

/// What stands behind a port number, in the system's own words and UTF-8.
struct PortInfo {
    std::string device;  ///< what COM n stands for, also when the device is absent
    std::string
        permitted;  ///< who may use it, such as "nur für Mitglieder der Gruppe dialout"; "" when unknown
};

/// What the system's event loop watches for received bytes; each system has its own, and with it the
/// notifier that knows it.
struct SystemInput;

/// The line of a serial port as the system gives it. Few calls, none but open() and wait() takes noticeable
/// time, none throws. One that finds the device gone closes the line.
class RawLine {
  public:
    enum class Event { Input, Room };

    virtual ~RawLine() = default;

    /// Opens COM `number` (1 to 16), which nobody else then can, as a plain byte line with these settings,
    /// read back: nothing translated, no handshake, spoiled bytes of a 7 bit frame with parity do not pass.
    /// Only on a closed line. What came before is dropped.
    virtual PortError open(int number, const SerialSettings& settings) = 0;

    /// Does nothing on a closed line. Bytes still in the send queue are dropped.
    virtual void close() = 0;

    virtual bool isOpen() const = 0;

    /// Takes bytes that have come, as many as there is room for. Fewer when there were no more.
    virtual std::size_t read(std::span<char> room) = 0;

    /// Queues as many of the bytes as the system takes at once, and returns their number.
    virtual std::size_t write(std::string_view bytes) = 0;

    /// Number of bytes queued and not yet on the line.
    virtual std::size_t queued() = 0;

    /// Sleeps until there is something to read, or room for writing, or the device is gone, or the deadline
    /// has passed: false then. May return early. Only on an open line.
    virtual bool wait(Event event, TimePoint deadline) = 0;

    /// Null when there is nothing to watch: on a closed line.
    virtual const SystemInput* input() const = 0;

    /// What COM `number` (1 to 16) stands for on this machine.
    virtual PortInfo info(int number) const = 0;
};

}  // namespace vek
