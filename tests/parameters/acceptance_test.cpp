#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <functional>
#include <string_view>

#include "devicemodel/devicetypes.h"
#include "editorbench.h"

namespace vek {
namespace {

using sim::Parameter;

/// The text boxes with what they keep in the device.
constexpr std::pair<const char*, Parameter> numbers[] = {{"txtZWarnung", Parameter::ImpedanceWarning},
                                                         {"txtZAlarm", Parameter::ImpedanceAlarm},
                                                         {"txtRWarnung", Parameter::InsulationWarning},
                                                         {"txtRAlarm", Parameter::InsulationAlarm},
                                                         {"txtUnterSpg", Parameter::Undervoltage},
                                                         {"txtUeberSpg", Parameter::Overvoltage},
                                                         {"txtBattH", Parameter::BatteryHigh},
                                                         {"txtBattL", Parameter::BatteryLow},
                                                         {"txtCrossH", Parameter::CrossFaultHigh},
                                                         {"txtCrossL", Parameter::CrossFaultLow},
                                                         {"txtTein", Parameter::StartDelay},
                                                         {"txtTan", Parameter::ResponseDelay},
                                                         {"txtTan1", Parameter::ResponseDelay},
                                                         {"txtTan2", Parameter::ResponseDelay2},
                                                         {"txtTab", Parameter::ReleaseDelay}};

/// The frames whose options, and the check boxes whose states, stand for the values that a device accepts,
/// the lowest first.
constexpr std::pair<std::string_view, Parameter> codes[] = {{"Frame1", Parameter::Relay1Mode},
                                                            {"Frame2", Parameter::Relay2Mode},
                                                            {"Frame8", Parameter::BaudCode},
                                                            {"Frame9", Parameter::Parity},
                                                            {"Frame12", Parameter::MainsFrequency},
                                                            {"Frame12", Parameter::SystemCapacitance},
                                                            {"Frame18", Parameter::SelfTestInterval},
                                                            {"Frame21", Parameter::PulsePeriod},
                                                            {"Frame22", Parameter::GeneratorMode},
                                                            {"chkMemory", Parameter::FaultMemory},
                                                            {"chkUnterspg", Parameter::UndervoltageOn},
                                                            {"chkUeberSpg", Parameter::OvervoltageOn},
                                                            {"chkZe", Parameter::ImpedanceOn},
                                                            {"chkRWarnung", Parameter::InsulationWarningOn},
                                                            {"chkRAlarm", Parameter::InsulationAlarmOn},
                                                            {"chkAnkop", Parameter::MainsSupervision},
                                                            {"chkCalTest", Parameter::StartWithTest},
                                                            {"chkStopMod", Parameter::StopMode}};

constexpr int highestValue = 6000;

/// Whether the type has the parameter, on this bus.
bool isThere(const EditorBench& bench, Parameter parameter) {
    constexpr std::array modbusOnly = {Parameter::ResponseDelay2,    Parameter::Parity,
                                       Parameter::StartWithTest,     Parameter::UndervoltageOn,
                                       Parameter::OvervoltageOn,     Parameter::InsulationWarningOn,
                                       Parameter::InsulationAlarmOn, Parameter::ImpedanceOn};
    return bench.parameters.value(parameter) &&
           !(bench.test.program.kdlActive() && std::ranges::find(modbusOnly, parameter) != modbusOnly.end());
}

/// The same for a box: the delay of both relays has one, and the delay of each has one.
bool isThere(const EditorBench& bench, const std::string& box, Parameter parameter) {
    const bool separate = bench.parameters.value(Parameter::ResponseDelay2).has_value();
    return isThere(bench, parameter) && box != (separate ? "txtTan" : "txtTan1");
}

/// What a device on this bus takes: over KDL a threshold with its value goes on, and with 0 off.
bool take(sim::ParameterSet& device, Parameter parameter, int value, bool kdl) {
    const auto code = static_cast<std::uint16_t>(value);
    if (device.accepts(parameter, code)) {
        device.set(parameter, code);
        if (kdl) {
            device.setInUse(parameter, true);
        }
        return true;
    }
    const bool always = parameter == Parameter::ImpedanceWarning || parameter == Parameter::ImpedanceAlarm;
    return kdl && value == 0 && !always && device.setInUse(parameter, false);
}

std::vector<std::uint16_t> acceptedCodes(const EditorBench& bench, Parameter parameter) {
    std::vector<std::uint16_t> accepted;
    for (std::uint16_t value = 0; value <= highestValue; ++value) {
        if (bench.parameters.accepts(parameter, value)) {
            accepted.push_back(value);
        }
    }
    return accepted;
}

/// Does the test for a device of each type on each bus.
void withEachDevice(const std::function<void(EditorBench& bench, bool kdl)>& test) {
    for (int number = 0; number < 2 * highestDeviceType; ++number) {
        SCOPED_TRACE("type " + std::to_string(number / 2 + 1) + (number % 2 != 0 ? " on KDL" : ""));
        EditorBench bench(number / 2 + 1, number % 2 != 0);
        bench.editor();
        test(bench, number % 2 != 0);
    }
}

/// Each value in every box at once: what arrives, and how many messages say that a value does not.
TEST(Parameters, ArriveInTheDeviceIfItAcceptsTheNumber) {
    withEachDevice([](EditorBench& bench, bool kdl) {
        for (int value = 0; value <= highestValue; ++value) {
            std::ptrdiff_t refused = 0;
            sim::ParameterSet expected = bench.parameters;
            for (const auto& [box, parameter] : numbers) {
                if (isThere(bench, box, parameter)) {
                    bench.set(box, std::to_string(value));
                    refused += take(expected, parameter, value, kdl) ? 0 : 1;
                }
            }
            ASSERT_EQ(std::ssize(bench.write()), refused) << value;
            for (const auto& [box, parameter] : numbers) {
                ASSERT_EQ(bench.parameters.value(parameter), expected.value(parameter)) << box << value;
                ASSERT_EQ(bench.parameters.isInUse(parameter), expected.isInUse(parameter)) << box << value;
            }
        }
    });
}

/// The place of the option that is set in a group, or whether a check box is.
std::size_t chosenIn(EditorBench& bench, const std::string& name) {
    const auto* frame = dynamic_cast<const Frame*>(&bench.control(name));
    if (frame == nullptr) {
        return dynamic_cast<const CheckBox&>(bench.control(name)).value ? 1 : 0;
    }
    const auto isSet = [](const OptionButton* option) { return option->value.get(); };
    EXPECT_EQ(std::ranges::count_if(frame->options, isSet), 1) << name;
    return static_cast<std::size_t>(std::ranges::find_if(frame->options, isSet) - frame->options.begin());
}

void choose(EditorBench& bench, const std::string& name, std::size_t chosen) {
    const auto* frame = dynamic_cast<const Frame*>(&bench.control(name));
    bench.set(frame != nullptr ? frame->options.at(chosen)->name : name,
              frame != nullptr || chosen != 0 ? "on" : "off");
}

/// Address, baud rate and parity would take the device somewhere else.
TEST(Parameters, AreShownAndWrittenWithTheCodesOfTheDevice) {
    withEachDevice([](EditorBench& bench, bool /*kdl*/) {
        for (const auto& [name, parameter] : codes) {
            if (!isThere(bench, parameter) || parameter == Parameter::BaudCode ||
                parameter == Parameter::Parity) {
                continue;
            }
            const auto accepted = acceptedCodes(bench, parameter);
            const sim::ParameterSet before = bench.parameters;
            for (std::size_t chosen = 0; chosen < accepted.size(); ++chosen) {
                bench.parameters.set(parameter, accepted[chosen]);
                EXPECT_EQ(bench.read(), Texts{});
                EXPECT_EQ(chosenIn(bench, std::string(name)), chosen) << name;
                const std::size_t other = (chosen + 1) % accepted.size();
                choose(bench, std::string(name), other);
                EXPECT_EQ(bench.write(), Texts{});
                EXPECT_EQ(bench.parameters.value(parameter), accepted[other]) << name;
            }
            bench.parameters = before;
            bench.read();
        }
    });
}

TEST(Parameters, HaveABoxForEachAlarmOfARelay) {
    EditorBench bench(9, false);
    for (int bit = 1; bit <= 11; ++bit) {
        const std::string number = (bit < 10 ? "0" : "") + std::to_string(bit);
        bench.parameters.set(Parameter::Relay1Alarms, static_cast<std::uint16_t>(1U << bit));
        bench.read();
        bench.set("chkR2_Bit_" + number, "on");
        for (int box = 1; box <= 11; ++box) {
            EXPECT_EQ(bench.editor().chkR1_Bit[static_cast<std::size_t>(box)].value, box == bit);
        }
        bench.write();
        EXPECT_EQ(bench.parameters.value(Parameter::Relay1Alarms), 1U << bit);
        EXPECT_EQ(bench.parameters.value(Parameter::Relay2Alarms), (0x32U | 1U << bit) & 0xFFEU);
        bench.parameters.set(Parameter::Relay2Alarms, 0x32);
    }
}

bool isUsable(const Control& control) {
    return control.enabled && control.visible;
}

TEST(Parameters, CanBeUsedAndNameTheirRangeWhereTheTypeHasThem) {
    constexpr std::tuple<const char*, const char*, Parameter> captions[] = {
        {"lblRWarnung", "Vorwarnung", Parameter::InsulationWarning},
        {"lblRAlarm", "Alarm", Parameter::InsulationAlarm},
        {"chkUnterspg", "Unterspannung", Parameter::Undervoltage},
        {"chkUeberSpg", "Überspannung", Parameter::Overvoltage}};
    withEachDevice([&](EditorBench& bench, bool kdl) {
        for (const auto& [box, parameter] : numbers) {
            EXPECT_EQ(isUsable(bench.control(box)), isThere(bench, box, parameter)) << box;
        }
        std::map<std::string_view, bool> used;
        for (const auto& [name, parameter] : codes) {
            used[name] |= isThere(bench, parameter);
        }
        for (const auto& [name, there] : used) {
            EXPECT_TRUE(kdl || name == "chkCalTest" || isUsable(bench.control(std::string(name))) == there)
                << name;
        }
        for (const auto& [name, begin, parameter] : captions) {
            const auto accepted = acceptedCodes(bench, parameter);
            if (!accepted.empty()) {
                const auto* label = dynamic_cast<const Label*>(&bench.control(name));
                const std::string caption =
                    label != nullptr ? label->caption.get()
                                     : dynamic_cast<const CheckBox&>(bench.control(name)).caption.get();
                const std::string range =
                    std::to_string(accepted.front()) + "..." + std::to_string(accepted.back());
                EXPECT_TRUE(caption.starts_with(begin)) << caption;
                EXPECT_NE(caption.find("[" + range + " "), std::string::npos) << caption;
            }
        }
    });
}

}  // namespace
}  // namespace vek
