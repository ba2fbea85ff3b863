#include "parameters/parametertypes.h"

#include <algorithm>

#include "devicemodel/devicetypes.h"

namespace vek {

namespace {

constexpr AlarmMeaning both(const char* caption, const char* fileKey) {
    return {{caption, caption}, fileKey};
}

constexpr AlarmMeaning unnamed(const char* caption) {
    return both(caption, "");
}

constexpr AlarmMeaning reserved(const char* fileKey) {
    return both("-", fileKey);
}

constexpr AlarmMeaning deviceFault = both("Gerätefehler E.xx", "GERAETEFEHLER");
constexpr AlarmMeaning deviceFaultMisspelt = {{"Geräefehler E.xx", "Gerätefehler E.xx"}, "GERAETEFEHLER"};
constexpr AlarmMeaning preAlarm1 = both("Voralarm Re an L1/+", "VORALARM_L1/+");
constexpr AlarmMeaning preAlarm2 = both("Voralarm Re an L2/-", "VORALARM_L2/-");
constexpr AlarmMeaning alarm1 = both("Alarm Re an L1/+", "ALARM_L1/+");
constexpr AlarmMeaning alarm2 = both("Alarm Re an L2/-", "ALARM_L2/-");
constexpr AlarmMeaning impedancePreAlarm = both("Voralarm Ze", "VORALARM_Z");
constexpr AlarmMeaning impedanceAlarm = both("Alarm Ze", "ALARM_Z");
constexpr AlarmMeaning undervoltage = both("Alarm Unterspannung", "ALARM_UNTERSPANNUNG");
constexpr AlarmMeaning overvoltage = both("Alarm Überspannung", "ALARM_UEBERSPANNUNG");
constexpr AlarmMeaning selfTest = both("Selbsttest", "SELBSTTEST");
constexpr AlarmMeaning selfTestMisspelt = {{"Selbstest", "Selbsttest"}, "SELBSTTEST"};
constexpr AlarmMeaning startWithAlarm = both("Gerätestart mit Alarm", "GERAETESTART_MIT_ALARM");
constexpr AlarmMeaning batteryOk = both("Batteriespannung OK", "BATTERIESPANNUNG_OK");

constexpr AlarmAssignment withImpedance = {deviceFault, preAlarm1,         preAlarm2,      alarm1,
                                           alarm2,      impedancePreAlarm, impedanceAlarm, undervoltage,
                                           overvoltage, selfTest,          startWithAlarm};
constexpr AlarmAssignment usual = {
    deviceFaultMisspelt, preAlarm1,   preAlarm2, alarm1,         alarm2,
    undervoltage,        overvoltage, selfTest,  startWithAlarm, reserved("RES10"),
    reserved("RES11")};
constexpr AlarmAssignment withoutStart = {
    deviceFaultMisspelt, preAlarm1,   preAlarm2, alarm1,           alarm2,
    undervoltage,        overvoltage, selfTest,  reserved("RES9"), reserved("RES10"),
    reserved("RES11")};
constexpr AlarmAssignment battery = {
    deviceFaultMisspelt, preAlarm1, preAlarm2,        alarm1,         alarm2,           undervoltage,
    overvoltage,         batteryOk, selfTestMisspelt, startWithAlarm, reserved("RES11")};
constexpr AlarmAssignment byNumber = {unnamed("Bit 1"), unnamed("Bit 2"),  unnamed("Bit 3"), unnamed("Bit 4"),
                                      unnamed("Bit 5"), unnamed("Bit 6"),  unnamed("Bit 7"), unnamed("Bit 8"),
                                      unnamed("Bit 9"), unnamed("Bit 10"), unnamed("Bit 11")};

constexpr BoxState shown = {true, true};
constexpr BoxState disabled = {true, false};
constexpr BoxState hidden = {false, true};
constexpr DelayBoxes together = {shown, hidden, disabled};
constexpr DelayBoxes togetherBesideK1 = {shown, disabled, hidden};
constexpr DelayBoxes separate = {hidden, shown, shown};

constexpr FrequencyCaptions mains = {"Netzfrequenz für Z-Messung", "50 Hz", "60 Hz"};
constexpr FrequencyCaptions capacitance = {"Netzableitkapazität", "1 µF", "10 µF"};
constexpr FrequencyCaptions unused = {"Netzableitkapazität", "50 Hz", "60 Hz"};

constexpr NumberRange warning990 = {2, 990, "Vorwarnung [2...990 k]"};
constexpr NumberRange warning500 = {2, 500, "Vorwarnung [2...500 k]"};
constexpr NumberRange alarm980 = {1, 980, "Alarm          [1...980 k]"};
constexpr NumberRange alarm490 = {1, 490, "Alarm          [1...490 k]"};
constexpr NumberRange under499 = {10, 499, "Unterspannung    [10...499 V]"};
constexpr NumberRange under1140 = {30, 1140, "Unterspannung  [30...1140 V]"};
constexpr NumberRange over500 = {11, 500, "Überspannung     [11...500 V]"};
constexpr NumberRange over1150 = {31, 1150, "Überspannung   [31...1150 V]"};

/// In the order of their numbers; first what is known of no type.
constexpr std::array<ParameterType, highestDeviceType + 1> types = {{
    {std::nullopt,
     &byNumber,
     &together,
     &unused,
     {2, 990, "Vorwarnung []"},
     {1, 980, "Alarm          []"},
     {10, 499, "Unterspannung  []"},
     {11, 500, "Überspannung   []"}},
    {"vekQB731", &withImpedance, &togetherBesideK1, &mains, warning990, alarm980, under499, over500},
    {"vekQCC731", &withImpedance, &togetherBesideK1, &mains, warning990, alarm980, under499, over500},
    {"vekQA731", &usual, &together, &unused, warning500, alarm490, under1140, over1150},
    {"vekQD731", &usual, &together, &unused, warning500, alarm490, under1140, over1150},
    {"vekQCC731QF", &withoutStart, &togetherBesideK1, &unused, warning500, alarm490, under1140, over1150},
    {"", &byNumber, &together, &unused, warning990, alarm980, under499, over500},
    {"vekQF731",
     &usual,
     &together,
     &unused,
     {11, 500, "Vorwarnung [11...500 k]"},
     {10, 490, "Alarm          [10...490 k]"},
     {30, 1090, "Unterspannung  [30...1090 V]"},
     {31, 1100, "Überspannung   [31...1100 V]"}},
    {"vekQG731",
     &usual,
     &together,
     &capacitance,
     {2, 100, "Vorwarnung [2...100 k]"},
     {1, 95, "Alarm          [1...95 k]"},
     {8, 143, "Unterspannung  [8...143 V]"},
     {9, 144, "Überspannung   [9...144 V]"}},
    {"vekQJK731",
     &battery,
     &separate,
     &unused,
     {11, 5000, "Vorwarnung [11...5000 k]"},
     {10, 4950, "Alarm          [10...4950 k]"}},
    {"vekQLN729",
     &usual,
     &together,
     &unused,
     {6, 200, "Vorwarnung [6...200 k]"},
     {5, 195, "Alarm          [5...195 k]"},
     {10, 499, "Unterspannung  [10...499 V]"},
     {11, 500, "Überspannung   [11...500 V]"}},
}};
static_assert(std::all_of(types.begin(), types.end(),
                          [](const ParameterType& type) {
                              return type.alarms != nullptr && type.delays != nullptr &&
                                     type.frequency != nullptr;
                          }),
              "a type lacks its row, or a part of it");

}  // namespace

const ParameterType& parameterType(std::uint8_t deviceType) {
    return types.at(deviceType <= highestDeviceType ? deviceType : 0);
}

}  // namespace vek
