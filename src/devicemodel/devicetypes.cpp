#include "devicemodel/devicetypes.h"

#include <algorithm>
#include <array>

namespace vek {
namespace {

struct NamedType {
    std::string_view name;
    std::uint8_t type;
};

constexpr std::uint8_t typeOfUnknownNames = 1;

constexpr auto namedTypes = std::to_array<NamedType>({
    // article names
    {"vekQB731-K7W-2", 1},
    {"vekQC731-K7W-2", 2},
    {"vekQA731-K75-2", 3},
    {"vekQA731-K7-2", 3},
    {"vekQD731-K7-5", 4},
    {"vekQD731-K7-2", 4},
    {"vekQC731QF-K7W-2", 5},
    {"vekQE731-K7-2", 6},
    {"vekQF731-K7-2", 7},
    {"vekQG731-K7-2", 8},
    {"vekQH731-K7-2", 9},
    {"vekQJK731-K7-2", 9},
    {"vekQLN729-K7-2", 10},
    // display names
    {"vekQC 731", 2},
    {"vekQB 731", 1},
    {"vekQA 731", 3},
    {"vekQD 731", 4},
    {"vekQE 731", 6},
    {"vekQF 731", 7},
    {"vekQC 731QF", 5},
    {"vekQG 731", 8},
    {"vekQH 731", 9},
    {"vekQJ 731", 9},
    {"vekQL 729", 10},
});

}  // namespace

std::uint8_t deviceTypeFromName(std::string_view name) {
    const auto* row = std::ranges::find(namedTypes, name, &NamedType::name);
    return row == namedTypes.end() ? typeOfUnknownNames : row->type;
}

}  // namespace vek
