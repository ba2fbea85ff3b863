#include "devicemodel/slotnames.h"

#include <gtest/gtest.h>

#include <initializer_list>

namespace vek {
namespace {

struct Case {
    int slot;
    std::initializer_list<std::uint8_t> types;
    std::optional<std::string_view> name;
};

TEST(SlotNames, ModbusChannelsByDeviceType) {
    for (const Case& c : std::initializer_list<Case>{
             {1, {1, 2, 6}, "Ze Voralarm/Alarm"},
             {1, {3, 4, 5, 7, 9, 10}, ""},
             {1, {8}, "Netzspannung RMS"},
             {3, {8}, ""},
             {4, {1, 2, 3, 4, 5, 6, 7, 10}, "Udc L1 -> PE"},
             {5, {8, 9}, "Udc L- -> PE"},
             {7, {1, 2, 3, 4, 5, 6, 7, 10}, "Re Verlagerungsspg."},
             {7, {8, 9}, ""},
             {15, {9, 10}, ""},
             // no device yet, and a number that no model has
             {1, {0, 11, 255}, "Ze Voralarm/Alarm"},
         }) {
        for (const std::uint8_t type : c.types) {
            EXPECT_EQ(modbusSlotName(c.slot, type), c.name) << "slot " << c.slot << " type " << int{type};
        }
    }
}

TEST(SlotNames, KdlListEntriesByDeviceType) {
    const std::optional<std::string_view> kept;
    for (const Case& c : std::initializer_list<Case>{
             {2, {1, 2}, "Ze Alarm"},
             {2, {3, 4, 5, 6, 7, 9}, "> Ce"},
             {2, {8}, "Urms Überspannung"},
             {2, {10}, "-"},
             {3, {8}, "Udc  Unterspannung"},
             {4, {8}, "Udc  Überspannung"},
             {5, {1, 3, 8, 9, 10}, "Anschl.fehler Erde E.01"},
             {9, {1, 2, 10}, "> Ce"},
             {10, {8, 9}, "Udc L- -> PE"},
             {10, {10}, "-"},
             {12, {1, 10}, "Udc L1 -> PE"},
             {14, {1, 2}, "R-UGe"},
             {14, {3, 7, 8, 9}, kept},
             {14, {10}, "-"},
             {15, {1, 3, 8, 9}, "-"},
             {15, {10}, kept},
         }) {
        for (const std::uint8_t type : c.types) {
            EXPECT_EQ(kdlSlotName(c.slot, type), c.name) << "slot " << c.slot << " type " << int{type};
        }
    }
}

}  // namespace
}  // namespace vek
