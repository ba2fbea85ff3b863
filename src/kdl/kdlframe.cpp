#include "kdl/kdlframe.h"

#include <algorithm>
#include <array>

namespace vek {

namespace {

constexpr std::size_t headerLength = 6;
constexpr std::size_t shortestTrailer = 2;
constexpr std::size_t longestTrailer = 3;

/// Trailer for a checksum c up to `last`: two fixed characters (or one) and the character with code c +
/// offset, so that all of them are printable.
struct TrailerRow {
    int last;
    const char* fixed;
    int offset;
};

constexpr std::array<TrailerRow, 5> trailerRows = {{
    {56, "dZ", 66},
    {110, "zz", 12},
    {160, "(", -40},
    {214, "00", -96},
    {255, "KK", -150},
}};

std::string trailer(int checksum) {
    const auto row = std::find_if(trailerRows.begin(), trailerRows.end(),
                                  [&](const TrailerRow& each) { return checksum <= each.last; });
    return row->fixed + std::string(1, static_cast<char>(checksum + row->offset));
}

int checksumOf(std::string_view text) {
    unsigned sum = 0;
    for (const char character : text) {
        sum += static_cast<unsigned char>(character);
    }
    return static_cast<int>((256 - sum % 256) % 256);
}

}  // namespace

std::optional<std::string> kdlPrefix(std::string_view addressText) {
    addressText.remove_prefix(std::min(addressText.find_first_not_of(' '), addressText.size()));
    if (addressText.empty() || addressText.size() > 3) {
        return std::nullopt;
    }
    return ":;" + std::string(3 - addressText.size(), '0') + std::string(addressText);
}

void KdlAppendChecksum(Bytes& request) {
    request += '&';
    request += trailer(checksumOf(request));
    request += kdlLineEnd;
}

Bytes kdlPayload(const Bytes& reply) {
    const std::size_t end = reply.find('&');
    return end == Bytes::npos || end < headerLength ? reply : reply.substr(headerLength, end - headerLength);
}

bool isSoundKdlReply(std::string_view reply) {
    if (reply.find('\0') != std::string_view::npos) {
        return false;
    }
    const std::size_t end = reply.find('&', headerLength);
    const std::string_view checked = reply.substr(0, end == std::string_view::npos ? reply.size() : end + 1);
    const std::string_view behind = reply.substr(checked.size());
    const bool hasTrailer = behind.size() == shortestTrailer || behind.size() == longestTrailer;
    return end == std::string_view::npos || !hasTrailer || behind == trailer(checksumOf(checked));
}

std::size_t kdlLeastMissing(std::string_view begun) {
    constexpr std::size_t lineEnd = 2;
    constexpr std::size_t payloadEnd = 1;
    if (begun.ends_with('\r')) {
        return 1;
    }
    if (begun.size() < headerLength) {
        return headerLength - begun.size() + payloadEnd + lineEnd;
    }
    return begun.find('&', headerLength) == std::string_view::npos ? payloadEnd + lineEnd : lineEnd;
}

}  // namespace vek
