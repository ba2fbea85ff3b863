#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace vek {

/// Where an insulation fault lies between the two conductors, as the monitor's bar and labels show it.
struct FaultPosition {
    int slider;              ///< -100 (all of it on the negative conductor) to +100
    std::string_view sign;   ///< "+", "-", or "~" near the middle or without a position
    std::string reNegative;  ///< fault resistance in kOhm on the negative side, without grouping
    std::string rePositive;  ///< the same on the positive side

    friend bool operator==(const FaultPosition&, const FaultPosition&) = default;
};

/// The bar for a fault position in percent and an insulation resistance in kOhm, both as their slots show
/// them. Without a position, and without a resistance, both sides are "---". A
/// resistance that reaches what the device type can measure reads ">" and that limit, and "---" for types
/// without a limit. Positions beyond -100 and +100, which would turn a resistance negative, count as the end
/// of the bar.
FaultPosition faultPosition(std::optional<double> percent, std::optional<double> kiloOhms,
                            std::uint8_t deviceType);

}  // namespace vek
