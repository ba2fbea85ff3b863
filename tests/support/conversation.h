#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "support/testprogram.h"

/// Conversations with a device as text. A file holds one row for each request:
///
///     operation   | request             | reply                  | result | boxes | ms
///     read 9820 1 | 03 03 26 5C 00 01 * | @20 03 03 02 12 34 *   | 4660   |       | 20
///
/// - operation: a name that the test gives a meaning, and what the operation works on. A row without one is
///   the next request of the operation above it. Always there: "wait 50" lets 50 ms pass, with "sending 70"
///   the line takes 70 ms a frame, "cancel" has the next box answered with Abbrechen.
/// - request: the frame that must go over the line; an empty cell: none.
/// - reply: what the device sends, "@ms" before a piece says when it arrives after the request (20 without);
///   an empty cell: nothing.
/// - result: what the operation gives, "END" when it ends the program.
/// - boxes: its message boxes, " // " between two; CRC is the question after a failed request, BYE the
///   farewell.
/// - ms: how long the operation takes; not looked at when empty.
///
/// Frames are hexadecimal on Modbus and text on the KDL bus, there with odd bytes as \0D; "*" is the right
/// checksum of all that stands before it, on the KDL bus with the "&" and the line end around it. Text behind
/// # is for the reader.
namespace vek {

/// What stands behind the name of an operation, and the numbers that it begins with.
struct Operand {
    std::string text;
    std::vector<std::uint16_t> numbers;
};

/// The operations by their names; each gives its result.
using Operations = std::map<std::string, std::function<std::string(const Operand&)>>;

/// Has the program talk as the file says, one row after the other on one line. Besides what the row tells,
/// the loop looks after each operation at the log, which must show what went over the line; at the events, of
/// which none may run inside a Modbus request and few beside a KDL one; and at the port, which must be as it
/// was before unless the operation is called "open" or "close", or ends the program.
void converse(TestProgram& test, const std::string& file, const Operations& operations);

/// Has a device send the reply of a row.
void reply(FakeSerial& serial, const std::string& cell, bool kdl = false);

/// The bytes of a request or reply of a row.
Bytes frameBytes(const std::string& cell, bool kdl = false);

/// The bytes as they stand in a row: "03 83 02".
std::string spacedHex(std::string_view bytes);

}  // namespace vek
