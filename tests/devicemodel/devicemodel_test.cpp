#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "devicemodel/descriptiontexts.h"
#include "devicemodel/devicetypes.h"
#include "devicemodel/faultposition.h"
#include "devicemodel/slotnames.h"
#include "simulator/devicetypes.h"

namespace vek {
namespace {

/// Besides the names that devices report there is the short one of their display: "vekQB 731".
TEST(DeviceTypes, GoByTheirNames) {
    const std::pair<std::string, int> others[] = {
        {"vekQA731-K7-2", 3},  {"vekQD731-K7-2", 4}, {"vekQJK731-K7-2", 9},
        {"vekQJ 731", 9},      {"vekQL 729", 10},    {"vekQL 729 ", 1},
        {" vekQL729-K7-2", 1}, {"vekqh 731", 1},     {"", 1}};
    std::vector<std::pair<std::string, int>> names(std::begin(others), std::end(others));
    for (const sim::DeviceType& type : sim::deviceTypes()) {
        const std::string article(type.articleName);
        const std::string display = article.substr(0, 5) + " " + article.substr(5, article.find('-') - 5);
        names.insert(names.end(),
                     {{article, type.number}, {type.number == 10 ? "vekQL 729" : display, type.number}});
    }
    for (const auto& [name, type] : names) {
        EXPECT_EQ(deviceTypeFromName(name), type) << name;
    }
}

TEST(DeviceTypes, NameTheChannelsThatTheyHave) {
    EXPECT_EQ(sim::deviceTypes().size(), highestDeviceType) << "the simulated device lacks a type";
    const char* names[] = {"",
                           "Re Voralarm/Alarm",
                           "Ze Voralarm/Alarm",
                           "Spannung",
                           "Netzspannung RMS",
                           "> Ce",
                           "Udc L1 -> PE",
                           "Udc L2 -> PE",
                           "Fehlerort in %",
                           "Re Verlagerungsspg.",
                           "Aktualisierungszähler"};
    for (const sim::DeviceType& type : sim::deviceTypes()) {
        for (std::size_t slot = 0; slot < type.channels.size(); ++slot) {
            std::string name = names[static_cast<std::size_t>(type.channels.at(slot))];
            if (type.number == 8 && slot == 2) {
                name = "Netzspannung DC";
            } else if ((type.number == 8 || type.number == 9) && (slot == 4 || slot == 5)) {
                name = slot == 4 ? "Udc L+ -> PE" : "Udc L- -> PE";
            }
            EXPECT_EQ(modbusSlotName(slot, static_cast<std::uint8_t>(type.number)), name)
                << type.number << slot;
        }
    }
    EXPECT_EQ(modbusSlotName(9, 1), "");
    EXPECT_EQ(modbusSlotName(1, highestDeviceType + 1), "Ze Voralarm/Alarm") << "of a type that there is not";
    EXPECT_EQ(kdlSlotName(2, 0), "Ze Alarm");
    EXPECT_EQ(kdlSlotName(16, 1), std::nullopt);
}

TEST(Descriptions, HaveTheirGaps) {
    const std::pair<int, int> gaps[] = {{16, 16},   {31, 34},   {36, 37},   {41, 66},   {80, 80},
                                        {91, 96},   {98, 100},  {109, 110}, {112, 112}, {130, 130},
                                        {132, 136}, {146, 200}, {205, 205}, {208, 209}, {219, 65535}};
    for (int code = 0; code <= 65535; ++code) {
        const bool inGap = std::ranges::any_of(
            gaps, [&](const auto& gap) { return gap.first <= code && code <= gap.second; });
        EXPECT_EQ(descriptionText(static_cast<std::uint16_t>(code)) == "-", inGap) << code;
    }
    EXPECT_EQ(descriptionText(15), "Ausfall CO2");
    EXPECT_EQ(descriptionText(218), "Ein");
}

/// The two sides act as resistors in parallel, shared out by the place on the bar.
TEST(FaultPosition, SplitsTheResistanceBetweenTheSides) {
    for (const sim::DeviceType& type : sim::deviceTypes()) {
        const int limit =
            type.number == batteryDeviceType ? 0 : static_cast<int>(type.insulationLimit / 1000);
        for (int percent = -120; percent <= 120; ++percent) {
            const double share = std::clamp(percent, -100, 100) / 100.0;
            const auto shown = faultPosition(percent, 600, static_cast<std::uint8_t>(type.number));
            const auto side = [&](double part) {
                const double kiloOhms = std::nearbyint(2 * 600 / part);
                return limit == 0          ? "---"
                       : kiloOhms >= limit ? ">" + std::to_string(limit)
                                           : std::to_string(std::lround(kiloOhms));
            };
            EXPECT_EQ(shown, (FaultPosition{.slider = std::clamp(percent, -100, 100),
                                            .sign = percent > 15    ? "+"
                                                    : percent < -15 ? "-"
                                                                    : "~",
                                            .reNegative = side(1 - share),
                                            .rePositive = side(1 + share)}))
                << type.number << ' ' << percent;
        }
    }
    EXPECT_EQ(faultPosition(15.5, 0.5, 1).slider, 16);
    EXPECT_EQ(faultPosition(60, 0.5, 1).reNegative, "2") << "exactly 2.5: halves go to the even neighbour";
    EXPECT_EQ(faultPosition(50, 1e35, highestDeviceType + 1), (FaultPosition{50, "+", "---", "---"}))
        << "no such type";
    EXPECT_EQ(faultPosition(std::nullopt, 100, 1), (FaultPosition{0, "~", "---", "---"}));
    EXPECT_EQ(faultPosition(std::nan(""), 100, 1), (FaultPosition{0, "~", "---", "---"}));
}

}  // namespace
}  // namespace vek
