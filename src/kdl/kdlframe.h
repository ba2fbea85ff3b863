#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/seams/serialcontrol.h"

/// Frames of the KDL bus as text, without a port.
///
/// A request is ":;" and the address in three digits, the command, "&", a checksum trailer and CR LF. A reply
/// is six characters of header, the payload, "&", a trailer and CR LF.
namespace vek {

/// Result of a request that was not answered in time.
inline constexpr const char* kdlTimeOutError = "#TIMEOUT_ERROR#";

inline constexpr const char* kdlLineEnd = "\r\n";

/// The address prefix of every request, 5 characters, for an address text of one to three characters behind
/// leading blanks; nothing for any other length.
std::optional<std::string> kdlPrefix(std::string_view addressText);

/// Appends "&", the checksum trailer and CR LF to the request. The codes of all characters up to the
/// trailer's last then add up to a multiple of 256.
void KdlAppendChecksum(Bytes& request);

/// What a complete reply, without its CR LF, carries: the text between the sixth character and the first "&";
/// the whole reply when there is no "&" behind the sixth character.
Bytes kdlPayload(const Bytes& reply);

/// Whether a complete reply, without its CR LF, can be believed: where two or three characters stand behind
/// the first "&" behind the sixth character, they are the trailer that a request with the same beginning
/// would get; and none of its bytes has been spoiled on the way, which the driver hands on as NUL.
bool isSoundKdlReply(std::string_view reply);

/// Number of bytes that the beginning of a reply lacks at least, 1 or more; of a reply as above.
std::size_t kdlLeastMissing(std::string_view begun);

}  // namespace vek
