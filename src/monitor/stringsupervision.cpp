#include "monitor/stringsupervision.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include "platform/leadingnumber.h"

namespace vek {

namespace {

constexpr const char* fromPlus = "Von L+ Anz. Module bis Rf";
constexpr const char* fromMinus = "Von L- Anz. Module bis Rf";

/// How far a string's voltage may stand above the nominal one.
constexpr double overvoltageFactor = 1.2;
/// Volts between L+ and earth below which neither pole counts as faulty.
constexpr double leastPoleVoltage = 0.5;
/// kOhm below which a cross fault may come from outside the string.
constexpr double foreignFaultLimit = 100;

/// The device's own resistances in kOhm that the two position formulas reckon with.
constexpr double crossFaultResistance = 120;
constexpr double couplingResistance = 118.8;

constexpr int shownDecimals = 1;
constexpr double missing = std::numeric_limits<double>::quiet_NaN();

/// What decides how a fault is placed, if at all.
enum class Situation { CrossFault, Healthy, Other };

struct SituationRow {
    Color stringIndicator;
    Color plusIndicator;
    Situation situation;
    const char* text;
    Color color;
};

constexpr std::array<SituationRow, 4> situations = {{
    {colors::red, colors::green, Situation::CrossFault, "CrossFault", colors::red},
    {colors::green, colors::red, Situation::Other, "Strang offen", colors::green},
    {colors::red, colors::red, Situation::Other, "Spannungsfehler", colors::red},
    {colors::green, colors::green, Situation::Healthy, "Batteriespannung OK", colors::green},
}};
constexpr SituationRow unknownSituation = {colors::grey, colors::grey, Situation::Other, noValueText,
                                           colors::grey};

const SituationRow& situationOf(const StringValues& values) {
    const auto found = std::find_if(situations.begin(), situations.end(), [&](const SituationRow& row) {
        return row.stringIndicator == values.stringIndicator && row.plusIndicator == values.plusIndicator;
    });
    return found == situations.end() ? unknownSituation : *found;
}

/// Pole voltages that the string itself cannot produce come from another one.
bool isForeign(const StringValues& values) {
    return values.resistance && values.stringVoltage && values.voltagePlus && values.voltageMinus &&
           *values.resistance < foreignFaultLimit && std::abs(*values.voltagePlus) > *values.stringVoltage &&
           std::abs(*values.voltageMinus) > *values.resistance;
}

/// The fault resistance in whole kOhm without the share of the offset resistance; infinite when the offset
/// alone makes up what is measured.
double faultResistance(double measured, const BatteryData& battery) {
    const double offset = battery.offsetResistance.value_or(0);
    if (offset <= 0) {
        return std::nearbyint(measured);
    }
    if (offset <= measured) {
        return std::numeric_limits<double>::infinity();
    }
    return std::nearbyint(measured * offset / (offset - measured));  // halves to even
}

void showNoPosition(StringState& state) {
    state.cellVoltage = noValueText;
    state.moduleNumber = noValueText;
    state.moduleCount = noValueText;
}

/// Places the fault from the pole that still has a voltage against earth. The number counts the modules from
/// there; from L+ the count gives what is left of the string.
void placeCrossFault(StringState& state, const StringValues& values, const BatteryData& battery,
                     const NumberLocale& locale) {
    const double plus = values.voltagePlus.value_or(0);
    if (std::abs(plus) < leastPoleVoltage) {
        return;
    }
    const bool countedFromPlus = plus > 0;
    state.countCaption = countedFromPlus ? fromPlus : fromMinus;
    const double poleVoltage = countedFromPlus ? plus : values.voltageMinus.value_or(missing);
    const double scale = faultResistance(*values.resistance, battery) / crossFaultResistance + 1;
    const double faultVoltage = poleVoltage * scale;
    const double highest = battery.moduleVoltage * battery.moduleCount * overvoltageFactor;
    const bool plausible = (countedFromPlus ? faultVoltage : std::abs(faultVoltage)) <= highest;
    if (!plausible) {
        return;
    }
    state.cellVoltage = locale.fixed(faultVoltage, shownDecimals);
    const double modules = (countedFromPlus ? faultVoltage : -faultVoltage) / battery.moduleVoltage;
    if (!std::isfinite(modules)) {
        return;
    }
    state.moduleNumber = locale.fixed(modules, shownDecimals);
    const double count = countedFromPlus ? battery.moduleCount - modules : modules;
    state.moduleCount = modules > 0 ? std::optional(locale.fixed(count, shownDecimals)) : std::nullopt;
}

/// Zero, or what the last bits of a calculation leave of it.
bool isZero(double value) {
    return std::abs(value) < 1e-9;
}

/// Where a fault without a cross fault lies, -100 (on L-) to +100 (on L+), from the asymmetry of the pole
/// voltages. Nothing without one of the voltages and where the formula divides by zero.
std::optional<double> symmetricPosition(const StringValues& values, double resistance) {
    if (!values.voltagePlus || !values.voltageMinus || values.stringVoltage.value_or(0) == 0) {
        return std::nullopt;
    }
    const double asymmetry = 100 * (*values.voltagePlus + *values.voltageMinus) / *values.stringVoltage;
    const double divisor = (couplingResistance + resistance) * (100 - asymmetry) / 100 - resistance;
    if (isZero(divisor)) {
        return std::nullopt;
    }
    // A side has 2 * couplingResistance * resistance / divisor kOhm, and 200 * resistance is shared out by
    // it: the resistance cancels out, so that a fault of 0 kOhm has its place, too.
    const double percent = 100 * divisor / couplingResistance - 100;
    return isZero(percent) ? 0 : percent;
}

void estimatePosition(StringState& state, const StringValues& values, const BatteryData& battery,
                      const NumberLocale& locale) {
    const double resistance = faultResistance(*values.resistance, battery);
    const auto percent =
        resistance <= battery.positionLimit ? symmetricPosition(values, resistance) : std::nullopt;
    if (!percent) {
        return;
    }
    state.countCaption = *percent < 0 ? fromMinus : fromPlus;
    const double middle = battery.moduleCount / 2;
    const double shift = *percent * battery.moduleCount / 200;
    const bool beyondPlus = middle + shift > battery.moduleCount;
    const bool beyondMinus = !beyondPlus && middle + shift < 0;
    const double position = beyondPlus ? battery.moduleCount : beyondMinus ? 0 : middle + shift;
    const double distance = beyondPlus || beyondMinus ? 0 : middle - std::abs(shift);
    state.moduleCount = locale.fixed(position, shownDecimals);
    state.moduleNumber = locale.fixed(distance, shownDecimals);
}

bool isDigit(char character) {
    return character >= '0' && character <= '9';
}

/// Whether a point stands before three digits, as Germans group thousands.
bool hasThousandsPoint(std::string_view text) {
    const std::size_t point = text.find('.');
    if (point == std::string_view::npos) {
        return false;
    }
    const std::string_view behind = text.substr(point + 1);
    const auto end = std::find_if_not(behind.begin(), behind.end(), isDigit);
    return end - behind.begin() == 3;
}

}  // namespace

double batteryNumber(std::string_view text) {
    if (hasThousandsPoint(text)) {
        return missing;
    }
    std::string number(text);
    std::replace(number.begin(), number.end(), ',', '.');
    return leadingNumber(number);
}

StringState superviseString(const StringValues& values, const BatteryData& battery,
                            const NumberLocale& locale) {
    const SituationRow& row = situationOf(values);
    StringState state;
    state.status = row.text;
    state.statusColor = row.color;
    showNoPosition(state);
    if (row.situation == Situation::CrossFault && isForeign(values)) {
        state.status = "unrelevanter Crossfault";
        state.statusColor = colors::green;
    }
    if (values.resistance && row.situation == Situation::CrossFault) {
        placeCrossFault(state, values, battery, locale);
    } else if (values.resistance && row.situation == Situation::Healthy) {
        estimatePosition(state, values, battery, locale);
    }
    return state;
}

}  // namespace vek
