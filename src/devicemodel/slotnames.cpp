#include "devicemodel/slotnames.h"

#include <array>
#include <cstddef>

namespace vek {
namespace {

/// For each device type the column of a table below. Type 0, no device yet, reads like type 1.
using Columns = std::array<std::size_t, 11>;

constexpr std::array<std::array<std::string_view, 4>, 9> modbusNames{{
    // clang-format off
    // types 1, 2, 6          types 3, 4, 5, 7, 10     type 8                   type 9
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

constexpr Columns modbusColumns{0, 0, 0, 1, 1, 1, 0, 1, 2, 3, 1};

using KdlName = std::optional<std::string_view>;
constexpr KdlName kept = std::nullopt;

constexpr std::array<std::array<KdlName, 5>, 16> kdlNames{{
    // clang-format off
    // types 1, 2               types 3 to 7               type 8                     type 9                     type 10
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

constexpr Columns kdlColumns{0, 0, 0, 1, 1, 1, 1, 1, 2, 3, 4};

std::size_t columnOf(const Columns& columns, std::uint8_t deviceType) {
    return columns[deviceType < columns.size() ? deviceType : 0];
}

}  // namespace

std::string_view modbusSlotName(int slot, std::uint8_t deviceType) {
    const auto row = static_cast<std::size_t>(slot);
    return row < modbusNames.size() ? modbusNames[row][columnOf(modbusColumns, deviceType)] : "";
}

std::optional<std::string_view> kdlSlotName(int slot, std::uint8_t deviceType) {
    const auto row = static_cast<std::size_t>(slot);
    return row < kdlNames.size() ? kdlNames[row][columnOf(kdlColumns, deviceType)] : kept;
}

}  // namespace vek
