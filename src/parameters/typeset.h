#pragma once

#include <cstdint>

namespace vek {

/// A set of device types: bit n for type n, bit 0 for every number outside 1 to 10.
using TypeSet = std::uint16_t;

inline constexpr std::uint8_t highestType = 10;

inline constexpr TypeSet otherTypes = 1;
inline constexpr TypeSet allTypes = 0x07FF;

template <class... Numbers>
constexpr TypeSet typeSet(Numbers... numbers) {
    return static_cast<TypeSet>(((1U << static_cast<unsigned>(numbers)) | ...));
}

constexpr TypeSet allBut(TypeSet types) {
    return static_cast<TypeSet>(allTypes & ~types);
}

constexpr bool contains(TypeSet types, std::uint8_t deviceType) {
    const bool known = deviceType <= highestType;
    return (types & (known ? typeSet(deviceType) : otherTypes)) != 0;
}

/// The types that measure impedance, and the battery model.
inline constexpr TypeSet impedanceTypes = typeSet(1, 2);
inline constexpr TypeSet batteryType = typeSet(9);

/// The first row whose member `types` has the type; nullptr when there is none.
template <class Rows>
const typename Rows::value_type* rowOfType(const Rows& rows, std::uint8_t deviceType) {
    for (const auto& row : rows) {
        if (contains(row.types, deviceType)) {
            return &row;
        }
    }
    return nullptr;
}

}  // namespace vek
