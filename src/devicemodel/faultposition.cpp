#include "devicemodel/faultposition.h"

#include <algorithm>
#include <cmath>

#include "devicemodel/devicetypes.h"
#include "platform/numberlocale.h"

namespace vek {
namespace {

constexpr double endOfBar = 100;
constexpr double nearTheMiddle = 15;

std::string_view signOf(double percent) {
    if (std::abs(percent) <= nearTheMiddle) {
        return "~";
    }
    return percent > 0 ? "+" : "-";
}

/// The two sides act as parallel resistors that make up the measured one: each is as many times larger as its
/// share of the bar, 0 to 200, is smaller. Rounded to the nearest whole number, halves to even (the
/// processor's default).
std::string sideText(std::optional<double> kiloOhms, double share, int limit) {
    if (limit == 0 || !kiloOhms) {
        return noValueText;
    }
    const double side = share == 0 ? limit : std::nearbyint(200 * *kiloOhms / share);
    return side >= limit ? ">" + std::to_string(limit) : NumberLocale{}.fixed(side, 0);
}

}  // namespace

FaultPosition faultPosition(std::optional<double> percent, std::optional<double> kiloOhms,
                            std::uint8_t deviceType) {
    if (!percent || std::isnan(*percent)) {
        return {.slider = 0, .sign = "~", .reNegative = noValueText, .rePositive = noValueText};
    }
    const double position = std::clamp(*percent, -endOfBar, endOfBar);
    const int limit = deviceTypeFacts(deviceType).faultLimit;
    return {.slider = static_cast<int>(std::nearbyint(position)),
            .sign = signOf(position),
            .reNegative = sideText(kiloOhms, endOfBar - position, limit),
            .rePositive = sideText(kiloOhms, endOfBar + position, limit)};
}

}  // namespace vek
