#include "devicemodel/slotnames.h"

#include <array>

#include "devicemodel/devicetypes.h"

namespace vek {
namespace {

/// The captions of a slot, one for each column.
template <class Columns, class Name, class... Names>
constexpr std::array<Name, sizeof...(Names)> slot(Names... names) {
    static_assert(sizeof...(Names) == static_cast<std::size_t>(Columns::count), "a column lacks its caption");
    return {Name(names)...};
}

template <class... Names>
constexpr auto modbus(Names... names) {
    return slot<ModbusSlots, std::string_view>(names...);
}

constexpr auto modbusNames = std::to_array({
    // clang-format off
    //     impedance                plain                    mains                    battery
    modbus("Re Voralarm/Alarm",     "Re Voralarm/Alarm",     "Re Voralarm/Alarm",     "Re Voralarm/Alarm"),
    modbus("Ze Voralarm/Alarm",     "",                      "Netzspannung RMS",      ""),
    modbus("Spannung",              "Spannung",              "Netzspannung DC",       "Spannung"),
    modbus("> Ce",                  "> Ce",                  "",                      "> Ce"),
    modbus("Udc L1 -> PE",          "Udc L1 -> PE",          "Udc L+ -> PE",          "Udc L+ -> PE"),
    modbus("Udc L2 -> PE",          "Udc L2 -> PE",          "Udc L- -> PE",          "Udc L- -> PE"),
    modbus("Fehlerort in %",        "Fehlerort in %",        "Fehlerort in %",        "Fehlerort in %"),
    modbus("Re Verlagerungsspg.",   "Re Verlagerungsspg.",   "",                      ""),
    modbus("Aktualisierungszähler", "Aktualisierungszähler", "Aktualisierungszähler", "Aktualisierungszähler"),
    // clang-format on
});

using KdlName = std::optional<std::string_view>;
constexpr KdlName kept = std::nullopt;

template <class... Names>
constexpr auto kdl(Names... names) {
    return slot<KdlSlots, KdlName>(names...);
}

constexpr auto kdlNames = std::to_array({
    // clang-format off
    //  impedance                  plain                      mains                      battery                    voltages
    kdl("Re Voralarm",             "Re Voralarm",             "Re Voralarm",             "Re Voralarm",             "Re Voralarm"),
    kdl("Re Alarm",                "Re Alarm",                "Re Alarm",                "Re Alarm",                "Re Alarm"),
    kdl("Ze Alarm",                "> Ce",                    "Urms Überspannung",       "> Ce",                    "-"),
    kdl("Unterspannung",           "Unterspannung",           "Udc  Unterspannung",      "Unterspannung",           "Unterspannung"),
    kdl("Überspannung",            "Überspannung",            "Udc  Überspannung",       "Überspannung",            "Überspannung"),
    kdl("Anschl.fehler Erde E.01", "Anschl.fehler Erde E.01", "Anschl.fehler Erde E.01", "Anschl.fehler Erde E.01", "Anschl.fehler Erde E.01"),
    kdl("Anschl.fehler Netz E.02", "Anschl.fehler Netz E.02", "Anschl.fehler Netz E.02", "Anschl.fehler Netz E.02", "Anschl.fehler Netz E.02"),
    kdl("Gerätefehler E.xx",       "Gerätefehler E.xx",       "Gerätefehler E.xx",       "Gerätefehler E.xx",       "Gerätefehler E.xx"),
    kdl("Fehlerort",               "Fehlerort",               "Fehlerort",               "Fehlerort",               "Fehlerort"),
    kdl("> Ce",                    "Udc L1 -> PE",            "Udc L+ -> PE",            "Udc L+ -> PE",            "> Ce"),
    kdl("Ze Voralarm",             "Udc L2 -> PE",            "Udc L- -> PE",            "Udc L- -> PE",            "-"),
    kdl("Aktualisierungszähler",   "Aktualisierungszähler",   "Aktualisierungszähler",   "Aktualisierungszähler",   "Aktualisierungszähler"),
    kdl("Udc L1 -> PE",            "R-UGe",                   "-",                       "-",                       "Udc L1 -> PE"),
    kdl("Udc L2 -> PE",            "-",                       "-",                       "-",                       "Udc L2 -> PE"),
    kdl("R-UGe",                   kept,                      kept,                      kept,                      "-"),
    kdl("-",                       "-",                       "-",                       "-",                       kept),
    // clang-format on
});

}  // namespace

std::string_view modbusSlotName(std::size_t slot, std::uint8_t deviceType) {
    const auto column = static_cast<std::size_t>(deviceTypeFacts(deviceType).modbusSlots);
    return slot < modbusNames.size() ? modbusNames.at(slot).at(column) : "";
}

std::optional<std::string_view> kdlSlotName(std::size_t slot, std::uint8_t deviceType) {
    const auto column = static_cast<std::size_t>(deviceTypeFacts(deviceType).kdlSlots);
    return slot < kdlNames.size() ? kdlNames.at(slot).at(column) : kept;
}

}  // namespace vek
