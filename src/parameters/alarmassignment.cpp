#include "parameters/alarmassignment.h"

#include "parameters/typeset.h"

namespace vek {

namespace {

constexpr AlarmMeaning both(const char* caption, const char* fileKey) {
    return {{caption, caption}, fileKey};
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

struct AssignmentRow {
    TypeSet types;
    std::array<AlarmMeaning, AlarmBoxes::count> meanings;  ///< bit 1 first
};

constexpr std::array<AssignmentRow, 5> assignments = {{
    {impedanceTypes,
     {deviceFault, preAlarm1, preAlarm2, alarm1, alarm2, impedancePreAlarm, impedanceAlarm, undervoltage,
      overvoltage, selfTest, startWithAlarm}},
    {typeSet(3, 4, 7, 8, 10),
     {deviceFaultMisspelt, preAlarm1, preAlarm2, alarm1, alarm2, undervoltage, overvoltage, selfTest,
      startWithAlarm, both("-", "RES10"), both("-", "RES11")}},
    {typeSet(5),
     {deviceFaultMisspelt, preAlarm1, preAlarm2, alarm1, alarm2, undervoltage, overvoltage, selfTest,
      both("-", "RES9"), both("-", "RES10"), both("-", "RES11")}},
    {batteryType,
     {deviceFaultMisspelt, preAlarm1, preAlarm2, alarm1, alarm2, undervoltage, overvoltage, batteryOk,
      selfTestMisspelt, startWithAlarm, both("-", "RES11")}},
    {allTypes,
     {both("Bit 1", ""), both("Bit 2", ""), both("Bit 3", ""), both("Bit 4", ""), both("Bit 5", ""),
      both("Bit 6", ""), both("Bit 7", ""), both("Bit 8", ""), both("Bit 9", ""), both("Bit 10", ""),
      both("Bit 11", "")}},
}};

}  // namespace

const AlarmMeaning& alarmMeaning(std::uint8_t deviceType, std::size_t number) {
    return rowOfType(assignments, deviceType)->meanings.at(number - 1);
}

}  // namespace vek
