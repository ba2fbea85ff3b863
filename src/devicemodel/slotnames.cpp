#include "devicemodel/slotnames.h"

#include <array>

#include "devicemodel/devicetypes.h"

namespace vek {
namespace {

constexpr std::array<std::array<std::string_view, 4>, 9> modbusNames{{
    // clang-format off
    // impedance              plain                    mains                    battery
    {"Re Voralarm/Alarm",     "Re Voralarm/Alarm",     "Re Voralarm/Alarm",     "Re Voralarm/Alarm"},
    {"Ze Voralarm/Alarm",     "",                      "Netzspannung RMS",      ""},
    {"Spannung",              "Spannung",              "Netzspannung DC",       "Spannung"},
    {"> Ce",                  "> Ce",                  "",                      "> Ce"},
    {"Udc L1 -> PE",          "Udc L1 -> PE",          "Udc L+ -> PE",          "Udc L+ -> PE"},
    {"Udc L2 -> PE",          "Udc L2 -> PE",          "Udc L- -> PE",          "Udc L- -> PE"},
    {"Fehlerort in %",        "Fehlerort in %",        "Fehlerort in %",        "Fehlerort in %"},
    {"Re Verlagerungsspg.",   "Re Verlagerungsspg.",   "",                      ""},
    {"Aktualisierungszähler", "Aktualisierungszähler", "Aktualisierungszähler", "Aktualisierungszähler"},
    // clang-format on
}};

using KdlName = std::optional<std::string_view>;
constexpr KdlName kept = std::nullopt;

constexpr std::array<std::array<KdlName, 5>, 16> kdlNames{{
    // clang-format off
    // impedance                plain                      mains                      battery                    voltages
    {"Re Voralarm",             "Re Voralarm",             "Re Voralarm",             "Re Voralarm",             "Re Voralarm"},
    {"Re Alarm",                "Re Alarm",                "Re Alarm",                "Re Alarm",                "Re Alarm"},
    {"Ze Alarm",                "> Ce",                    "Urms Überspannung",       "> Ce",                    "-"},
    {"Unterspannung",           "Unterspannung",           "Udc  Unterspannung",      "Unterspannung",           "Unterspannung"},
    {"Überspannung",            "Überspannung",            "Udc  Überspannung",       "Überspannung",            "Überspannung"},
    {"Anschl.fehler Erde E.01", "Anschl.fehler Erde E.01", "Anschl.fehler Erde E.01", "Anschl.fehler Erde E.01", "Anschl.fehler Erde E.01"},
    {"Anschl.fehler Netz E.02", "Anschl.fehler Netz E.02", "Anschl.fehler Netz E.02", "Anschl.fehler Netz E.02", "Anschl.fehler Netz E.02"},
    {"Gerätefehler E.xx",       "Gerätefehler E.xx",       "Gerätefehler E.xx",       "Gerätefehler E.xx",       "Gerätefehler E.xx"},
    {"Fehlerort",               "Fehlerort",               "Fehlerort",               "Fehlerort",               "Fehlerort"},
    {"> Ce",                    "Udc L1 -> PE",            "Udc L+ -> PE",            "Udc L+ -> PE",            "> Ce"},
    {"Ze Voralarm",             "Udc L2 -> PE",            "Udc L- -> PE",            "Udc L- -> PE",            "-"},
    {"Aktualisierungszähler",   "Aktualisierungszähler",   "Aktualisierungszähler",   "Aktualisierungszähler",   "Aktualisierungszähler"},
    {"Udc L1 -> PE",            "R-UGe",                   "-",                       "-",                       "Udc L1 -> PE"},
    {"Udc L2 -> PE",            "-",                       "-",                       "-",                       "Udc L2 -> PE"},
    {"R-UGe",                   kept,                      kept,                      kept,                      "-"},
    {"-",                       "-",                       "-",                       "-",                       kept},
    // clang-format on
}};

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
