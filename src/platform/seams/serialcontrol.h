#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "platform/clock.h"
#include "platform/seams/rawline.h"

namespace vek {

/// Bytes as they go over the line; each char is one byte.
using Bytes = std::string;

/// The serial port of the program: one port at a time, one user at a time, bytes in and out.
///
/// No call throws; none but the two waits and open() takes noticeable time. A device that vanishes while the
/// port is open behaves like one that does not answer: writes are accepted and lost, nothing is received,
/// waits last until their deadline (sleeping), and the next writeOutput() after the device is back reaches it
/// again.
class SerialControl {
  public:
    virtual ~SerialControl() = default;

    /// Selects port COM1 to COM16 for the next open(). False, and nothing changed, for any other number or
    /// while the port is open. Initially 1.
    virtual bool setPortNumber(int number) = 0;

    /// Baud rate, parity letter, data bits, stop bits, such as "9600,e,8,1", for the next open(). False, and
    /// nothing changed, when the text is not of that form: rates 1200, 2400, 4800, 9600, 19200, 38400, 57600,
    /// 115200; parity n, e, o; data bits 7, 8; stop bits 1, 2. Initially "9600,n,8,1".
    virtual bool setSettings(std::string_view settings) = 0;

    virtual bool isOpen() const = 0;

    /// Whether the port is open and its device is there, as far as the last read, write or wait has shown.
    virtual bool isConnected() const = 0;

    /// Opens the selected port with the settings in force, exclusively. PortError::InUse when this object has
    /// it open already (it then stays open as it is).
    virtual PortError open() = 0;

    /// Closes the port; does nothing on a closed one. Bytes still in the send queue are dropped (see
    /// waitSent()), bytes not yet read too.
    virtual void close() = 0;

    /// Number of bytes received and not yet read; 0 on a closed port.
    virtual std::size_t receivedCount() = 0;

    /// All bytes received so far, which are then no longer waiting.
    virtual Bytes readInput() = 0;

    /// Queues the bytes for sending; they are dropped on a closed port.
    virtual void writeOutput(std::string_view bytes) = 0;

    /// Number of bytes queued and not yet on the line.
    virtual std::size_t sendQueueCount() = 0;

    /// Sleeps until the send queue is empty. A line that stands still (no byte leaves for a second longer
    /// than the queue takes at the baud rate) ends the wait too.
    virtual void waitSent() = 0;

    /// Sleeps until `count` bytes wait to be read, or until `deadline`. Wakes at the byte that completes the
    /// count. On a closed port it sleeps until the deadline. Returns whether the bytes are there.
    virtual bool waitReceived(std::size_t count, TimePoint deadline) = 0;

    /// Takes what the system has received; whether there was anything. Bytes that nobody has taken would wake
    /// an event loop that watches systemInput() for ever.
    virtual bool takeReceived() = 0;

    /// What an event loop can watch for received bytes; null when there is nothing to watch: on a closed port
    /// or while the device is away.
    virtual const SystemInput* systemInput() const = 0;

    /// What COM `number` (1 to 16) stands for on this machine.
    virtual PortInfo portInfo(int number) const = 0;
};

}  // namespace vek
