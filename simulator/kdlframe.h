#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace vek::sim {

inline constexpr std::string_view kdlLineEnd = "\r\n";

// The two or three characters that end a frame after its "&": with them the codes of all characters add up to
// a multiple of 256. `text` is the frame through the "&".
std::string kdlTrailer(std::string_view text);

// A request to one device.
struct KdlRequest {
    std::uint16_t address;  // 0..999
    std::string command;    // begins with ":"
};

// The request at the end of a line, given without its CR LF; whatever comes before it is noise. Nothing when
// there is none or when its sum is wrong.
std::optional<KdlRequest> parseKdlRequest(std::span<const std::uint8_t> line);

// A whole reply. Its header names the device in six characters; characters of the payload that seven bits
// cannot carry are sent as "?".
std::string kdlReply(std::uint16_t address, std::string_view payload);

}  // namespace vek::sim
