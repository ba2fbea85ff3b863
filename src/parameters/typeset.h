#pragma once

#include <array>
#include <cstdint>
#include <optional>

#include "devicemodel/devicetypes.h"

namespace vek {

/// A set of device types: bit n for type n, bit 0 for every number that is no type.
using TypeSet = std::uint16_t;

inline constexpr TypeSet otherTypes = 1;
inline constexpr TypeSet allTypes = (2U << highestDeviceType) - 1U;

template <class... Numbers>
constexpr TypeSet typeSet(Numbers... numbers) {
    return static_cast<TypeSet>(((1U << static_cast<unsigned>(numbers)) | ...));
}

constexpr TypeSet allBut(TypeSet types) {
    return static_cast<TypeSet>(allTypes & ~types);
}

constexpr bool contains(TypeSet types, std::uint8_t deviceType) {
    const bool known = deviceType <= highestDeviceType;
    return (types & (known ? typeSet(deviceType) : otherTypes)) != 0;
}

/// The types that measure impedance, and the battery model.
inline constexpr TypeSet impedanceTypes = typeSet(1, 2);
inline constexpr TypeSet batteryType = typeSet(9);

/// A number by which some types know a parameter, and perhaps another one by which others do.
class TypedNumbers {
  public:
    constexpr TypedNumbers() = default;
    constexpr TypedNumbers(TypeSet types, std::uint16_t number, TypeSet differentTypes = 0,
                           std::uint16_t differentNumber = 0)
        : rows_{{{types, number}, {differentTypes, differentNumber}}} {}

    /// Nothing for a type that does not know the parameter.
    constexpr std::optional<std::uint16_t> of(std::uint8_t deviceType) const {
        for (const Row& row : rows_) {
            if (contains(row.types, deviceType)) {
                return row.number;
            }
        }
        return std::nullopt;
    }

  private:
    struct Row {
        TypeSet types = 0;
        std::uint16_t number = 0;
    };
    std::array<Row, 2> rows_{};
};

}  // namespace vek
