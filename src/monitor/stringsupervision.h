#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/color.h"
#include "platform/numberlocale.h"

namespace vek {

/// The battery data as the user enters them.
struct BatteryData {
    double moduleVoltage = 0;  ///< V, nominal, of one module
    double moduleCount = 0;    ///< modules in the string
    double positionLimit = 0;  ///< kOhm; above it a symmetric fault is not placed
    std::optional<double>
        offsetResistance;  ///< kOhm, parallel to the fault; nothing = not taken into account
};

/// A typed number with comma or point as decimal separator; 0 for a text that begins with no number. Not a
/// number, and nothing can be reckoned with it, where a point stands before three digits: who has typed
/// "20.000" or "1.234,5" means thousands.
double batteryNumber(std::string_view text);

/// What the channels of a battery string show, as numbers; nothing where a channel shows none.
struct StringValues {
    std::optional<double> resistance;     ///< kOhm, insulation of the whole string
    std::optional<double> stringVoltage;  ///< V
    std::optional<double> voltagePlus;    ///< V, L+ against earth
    std::optional<double> voltageMinus;   ///< V, L- against earth
    Color stringIndicator;                ///< of the string voltage
    Color plusIndicator;                  ///< of the voltage of L+
};

/// What is to be shown about a battery string. A text that is missing leaves what stands there.
struct StringState {
    std::string status;
    Color statusColor;
    std::optional<std::string> countCaption;  ///< from which pole the modules are counted
    std::string cellVoltage;                  ///< V
    std::string moduleNumber;
    std::optional<std::string> moduleCount;
};

/// Tells a healthy battery string from an open one, a wrong voltage and a cross fault, and counts the modules
/// up to the insulation fault where it can be placed. Whatever has no number (a missing channel, a division
/// by zero, an offset resistance that is not above the measured one) shows "---".
StringState superviseString(const StringValues& values, const BatteryData& battery,
                            const NumberLocale& locale);

}  // namespace vek
