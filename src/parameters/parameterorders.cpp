#include "parameters/parameterorders.h"

#include <algorithm>
#include <array>

namespace vek {

namespace {

using enum ParameterField;

/// The place of a parameter in each order, from 1 on; 0 = does not occur in it.
struct Places {
    ParameterField field;
    std::array<std::uint8_t, parameterOrderCount> places;  ///< by ParameterOrder
};

constexpr std::array<Places, parameterCount> orders = {{
    // Read, Write, File, KdlRead, KdlWrite
    {ZWarnung, {10, 5, 20, 9, 9}},
    {ZAlarm, {11, 6, 21, 10, 10}},
    {RWarnungAktiv, {12, 7, 16, 11, 0}},
    {RAlarmAktiv, {13, 8, 18, 12, 0}},
    {RWarnung, {14, 9, 17, 13, 11}},
    {RAlarm, {15, 10, 19, 14, 12}},
    {UnterSpgAktiv, {16, 11, 23, 15, 0}},
    {UnterSpg, {17, 12, 24, 16, 13}},
    {UeberSpgAktiv, {18, 13, 25, 17, 0}},
    {UeberSpg, {19, 14, 26, 18, 14}},
    {BattH, {3, 15, 32, 2, 2}},
    {BattL, {4, 16, 33, 3, 3}},
    {CrossH, {5, 17, 34, 4, 4}},
    {CrossL, {6, 18, 35, 5, 5}},
    {Fehlerspeicher, {20, 20, 3, 19, 15}},
    {Relais1Arbeitsweise, {21, 21, 9, 20, 16}},
    {Relais2Arbeitsweise, {22, 22, 10, 21, 17}},
    {Adresse, {23, 34, 13, 22, 25}},
    {BaudCode, {24, 36, 14, 23, 26}},
    {Paritaet, {25, 35, 15, 0, 0}},
    {Tein, {26, 23, 27, 24, 18}},
    {Tan, {27, 24, 28, 25, 19}},
    {Tan1, {28, 25, 29, 26, 20}},
    {Tan2, {29, 26, 30, 0, 0}},
    {Tab, {30, 27, 31, 27, 21}},
    {Selbsttest, {31, 28, 5, 28, 22}},
    {ZeAktiv, {8, 3, 6, 8, 8}},
    {Netzfrequenz, {9, 4, 7, 0, 0}},
    {Kapazitaet, {1, 2, 8, 1, 1}},
    {GenModus, {2, 1, 22, 7, 7}},
    {Netzankopplung, {32, 29, 1, 29, 23}},
    {StartCalTest, {33, 30, 2, 0, 0}},
    {StopModus, {34, 31, 4, 30, 24}},
    {AlarmRelais1, {35, 32, 11, 0, 0}},
    {AlarmRelais2, {36, 33, 12, 0, 0}},
    {Messpuls, {7, 19, 36, 6, 6}},
}};

constexpr std::uint8_t placeIn(ParameterOrder order, ParameterField field) {
    return orders.at(static_cast<std::size_t>(field)).places.at(static_cast<std::size_t>(order));
}

/// Row i is that of field i, and each order counts its parameters from 1 on without a gap.
constexpr bool ordersAreWhole() {
    for (std::size_t order = 0; order < parameterOrderCount; ++order) {
        std::uint64_t places = 0;
        for (std::size_t index = 0; index < orders.size(); ++index) {
            const std::uint64_t place = std::uint64_t{1} << orders.at(index).places.at(order);
            if (orders.at(index).field != static_cast<ParameterField>(index) || (places & place) > 1) {
                return false;
            }
            places |= place;
        }
        if (((places | 1) & ((places | 1) + 1)) != 0) {
            return false;
        }
    }
    return true;
}
static_assert(ordersAreWhole());

bool has(std::uint8_t deviceType, const ParameterRow& row, ParameterOrder order) {
    return order == ParameterOrder::KdlRead || order == ParameterOrder::KdlWrite
               ? isOnKdlBus(row, deviceType)
               : row.registers.of(deviceType).has_value();
}

}  // namespace

bool isOnKdlBus(const ParameterRow& row, std::uint8_t deviceType) {
    return row.kdl.query != nullptr || row.kdl.numbers.of(deviceType).has_value();
}

ParameterRows rowsInOrder(ParameterOrder order, std::uint8_t deviceType) {
    ParameterRows rows;
    for (const ParameterRow& row : parameterRows()) {
        if (placeIn(order, row.field) != 0 && has(deviceType, row, order)) {
            rows.push_back(&row);
        }
    }
    std::sort(rows.begin(), rows.end(), [order](const ParameterRow* a, const ParameterRow* b) {
        return placeIn(order, a->field) < placeIn(order, b->field);
    });
    return rows;
}

}  // namespace vek
