#include "simulator/kdlframe.h"

#include <algorithm>
#include <array>
#include <numeric>

#include "simulator/numbers.h"

namespace vek::sim {
namespace {

constexpr std::string_view requestMark = ":;";
constexpr std::size_t addressDigits = 3;
constexpr std::uint16_t highestAddress = 999;
constexpr char payloadEnd = '&';
constexpr unsigned sumModulus = 256;
constexpr std::size_t shortestTrailer = 2;
constexpr std::size_t longestTrailer = 3;

unsigned sumOf(std::string_view text) {
    return std::accumulate(text.begin(), text.end(), 0U,
                           [](unsigned sum, char c) { return sum + static_cast<unsigned char>(c); }) %
           sumModulus;
}

// What is missing to a multiple of 256, up to `last`, is made of fixed characters and one whose code is the
// missing number plus `offset`: that way all of them are printable and none of them is "&".
struct TrailerRow {
    unsigned last;
    std::string_view fixed;
    int offset;
};
constexpr std::array<TrailerRow, 5> trailerRows{
    {{56, "dZ", 66}, {110, "zz", 12}, {160, "(", -40}, {214, "00", -96}, {255, "KK", -150}}};

std::string threeDigits(std::uint16_t number) {
    const std::string digits = std::to_string(number);
    return std::string(addressDigits - std::min(digits.size(), addressDigits), '0') + digits;
}

std::string inSevenBits(std::string_view text) {
    std::string result(text);
    std::ranges::replace_if(
        result, [](char c) { return static_cast<unsigned char>(c) > 0x7F; }, '?');
    return result;
}

}  // namespace

std::string kdlTrailer(std::string_view text) {
    const unsigned missing = (sumModulus - sumOf(text)) % sumModulus;
    const auto* row = std::ranges::lower_bound(trailerRows, missing, {}, &TrailerRow::last);
    return std::string(row->fixed) + static_cast<char>(static_cast<int>(missing) + row->offset);
}

std::optional<KdlRequest> parseKdlRequest(std::span<const std::uint8_t> line) {
    const std::string received(line.begin(), line.end());
    const std::size_t start = received.rfind(requestMark);
    if (start == std::string::npos) {
        return std::nullopt;
    }
    const std::string_view frame = std::string_view(received).substr(start);
    const std::string_view afterMark = frame.substr(requestMark.size());
    const auto address = parseNumber<std::uint16_t>(afterMark.substr(0, addressDigits), 0, highestAddress);
    const std::size_t commandEnd = afterMark.find(payloadEnd);
    if (!address.has_value() || commandEnd == std::string_view::npos || commandEnd <= addressDigits ||
        afterMark[addressDigits] != ':') {
        return std::nullopt;
    }
    const std::size_t trailerLength = afterMark.size() - commandEnd - 1;
    if (trailerLength < shortestTrailer || trailerLength > longestTrailer || sumOf(frame) != 0) {
        return std::nullopt;
    }
    return KdlRequest{*address, std::string(afterMark.substr(addressDigits, commandEnd - addressDigits))};
}

std::string kdlReply(std::uint16_t address, std::string_view payload) {
    std::string frame = "=;" + threeDigits(address) + ":" + inSevenBits(payload) + payloadEnd;
    return frame + kdlTrailer(frame).append(kdlLineEnd);
}

}  // namespace vek::sim
