#include "parameters/parametertable.h"

#include "parameters/parametertypes.h"

namespace vek {

namespace {

using C = ParameterControls;
using Option = ChoiceParameter::Option;
using enum ParameterField;

constexpr const char* ranBegin = "Ungültiger Ansprechwert. Ran = ";
constexpr const char* zanBegin = "Ungültiger Ansprechwert. Zan = ";

template <auto member>
Property<std::string>& captionOf(C& controls) {
    return (controls.*member).caption;
}

constexpr std::array<Option, 2> relay1Modes = {{{&C::optR1no, 0, "NO"}, {&C::optR1nc, 1, "NC"}}};

constexpr std::array<Option, 2> relay2Modes = {{{&C::optR2no, 0, "NO"}, {&C::optR2nc, 1, "NC"}}};

constexpr std::array<Option, 9> baudCodes = {{{&C::optBaud0, 0, "KDL"},
                                              {&C::optBaud1200, 1, "1200_B"},
                                              {&C::optBaud2400, 2, "2400_B"},
                                              {&C::optBaud4800, 3, "4800_B"},
                                              {&C::optBaud9600, 4, "9600_B"},
                                              {&C::optBaud19200, 5, "19200_B"},
                                              {&C::optBaud38400, 6, "38400_B"},
                                              {&C::optBaud57600, 7, "57600_B"},
                                              {&C::optBaud115200, 8, "115200_B"}}};

constexpr std::array<Option, 3> parities = {
    {{&C::optNo, 0, "NO"}, {&C::optOdd, 1, "ODD"}, {&C::optEven, 2, "EVEN"}}};

constexpr std::array<Option, 3> selfTestIntervals = {
    {{&C::optSelfTestOff, 0, "OFF", "Der Parameter Selbsttest Intervall OFF konnte nicht gesetzt werden."},
     {&C::optSelfTest1h, 1, "1H", "Der Parameter Selbsttest Intervall 1h konnte nicht gesetzt werden."},
     {&C::optSelfTest24h, 2, "24H", "Der Parameter Selbsttest Intervall 24h konnte nicht gesetzt werden.",
      24}}};

constexpr std::array<Option, 2> mainsFrequencies = {
    {{&C::opt50Hz_1uF, 500, "50Hz"}, {&C::opt60Hz_10uF, 600, "60Hz"}}};

constexpr std::array<Option, 6> capacitances = {{{&C::opt50Hz_1uF, 1, "1uF"},
                                                 {&C::opt60Hz_10uF, 10, "10uF"},
                                                 {&C::opt20uF, 20, "20uF"},
                                                 {&C::opt30uF, 30, "30uF"},
                                                 {&C::opt40uF, 40, "40uF"},
                                                 {&C::opt50uF, 50, "50uF"}}};

constexpr std::array<Option, 2> generatorModes = {
    {{&C::optGENmode, 0, "GEN", "Der Parameter vekQLN-Mode = GEN konnte nicht gesetzt werden."},
     {&C::optDCmode, 1, "DC", "Der Parameter vekQLN-Mode = DC konnte nicht gesetzt werden."}}};

constexpr std::array<Option, 5> pulsePeriods = {{{&C::optAuto_08s, 0, "AUTO_08s"},
                                                 {&C::optAuto_2s, 1, "AUTO_2s"},
                                                 {&C::opt_08s, 2, "08s"},
                                                 {&C::opt_2s, 3, "2s"},
                                                 {&C::opt_8s, 4, "8s"}}};

constexpr std::array<ParameterRow, parameterCount> table = {
    {{.field = ZWarnung,
      .registers = {impedanceTypes, 3001},
      .section = "ANSPRECHWERTE_IMPEDANZ",
      .kind = NumberParameter{.box = &C::txtZWarnung,
                              .fileKey = "VORWARNUNG",
                              .range = {2, 500, "Vorwarnung [11...500 k]"},
                              .rangeCaption = captionOf<&C::lblZWarnung>,
                              .outOfRangeBegin = zanBegin,
                              .outOfRangeEnd = "k."},
      .writeFailure = "Der Ansprechwert Z-Vorwarnung konnte nicht gesetzt werden.",
      .needsImpedance = NeedsImpedance::ToReadAndWrite,
      .kdl = {.numbers = {impedanceTypes, 12}}},
     {.field = ZAlarm,
      .registers = {impedanceTypes, 3003},
      .section = "ANSPRECHWERTE_IMPEDANZ",
      .kind = NumberParameter{.box = &C::txtZAlarm,
                              .fileKey = "ALARM",
                              .range = {1, 495, "Alarm          [12...490 k]"},
                              .rangeCaption = captionOf<&C::lblZAlarm>,
                              .outOfRangeBegin = zanBegin,
                              .outOfRangeEnd = "k."},
      .writeFailure = "Der Ansprechwert Z-Alarm konnte nicht gesetzt werden.",
      .needsImpedance = NeedsImpedance::ToReadAndWrite,
      .kdl = {.numbers = {impedanceTypes, 3}}},
     {.field = RWarnungAktiv,
      .registers = {impedanceTypes, 3004},
      .section = "ANSPRECHWERT_RISIO",
      .kind = FlagParameter{&C::chkRWarnung, "VORWARNUNG_ON_OFF"},
      .invalidValue = "Ungültiger Wert für Aktivierung R-ISO1 Warnung",
      .writeFailure = "Der Parameter R-Vorwarnung konnte nicht gesetzt werden.",
      .needsImpedance = NeedsImpedance::ToWrite,
      .kdl = {.numbers = {impedanceTypes, 1}, .flag = KdlFlag::NotOff}},
     {.field = RAlarmAktiv,
      .registers = {impedanceTypes, 3006},
      .section = "ANSPRECHWERT_RISIO",
      .kind = FlagParameter{&C::chkRAlarm, "ALARM_ON_OFF"},
      .invalidValue = "Ungültiger Wert für Aktivierung R-ISO2 Alarm",
      .writeFailure = "Der Parameter R-Alarm konnte nicht gesetzt werden.",
      .needsImpedance = NeedsImpedance::ToWrite,
      .kdl = {.numbers = {impedanceTypes, 2}, .flag = KdlFlag::NotOff}},
     {.field = RWarnung,
      .registers = {allBut(batteryType), 3005, batteryType, 3001},
      .section = "ANSPRECHWERT_RISIO",
      .kind = NumberParameter{.box = &C::txtRWarnung,
                              .fileKey = "VORWARNUNG",
                              .rangeOfType = &ParameterType::resistanceWarning,
                              .rangeCaption = captionOf<&C::lblRWarnung>,
                              .outOfRangeBegin = ranBegin,
                              .outOfRangeEnd = "."},
      .writeFailure = "Der Ansprechwert R-Vorwarnung konnte nicht gesetzt werden.",
      .kdl = {.numbers = {allTypes, 1},
              .outOfRange = "Ungültiger Ansprechwert => Ran",
              .onOff = &C::chkRWarnung}},
     {.field = RAlarm,
      .registers = {allBut(batteryType), 3007, batteryType, 3003},
      .section = "ANSPRECHWERT_RISIO",
      .kind = NumberParameter{.box = &C::txtRAlarm,
                              .fileKey = "ALARM",
                              .rangeOfType = &ParameterType::resistanceAlarm,
                              .rangeCaption = captionOf<&C::lblRAlarm>,
                              .outOfRangeBegin = ranBegin,
                              .outOfRangeEnd = "."},
      .writeFailure = "Der Ansprechwert R-Alarm konnte nicht gesetzt werden.",
      .kdl = {.numbers = {allTypes, 2},
              .outOfRange = "Ungültiger Ansprechwert => Ran",
              .onOff = &C::chkRAlarm}},
     {.field = UnterSpgAktiv,
      .registers = {allBut(batteryType), 3008},
      .section = "ANSPRECHWERTE_SPANNUNG",
      .kind = FlagParameter{&C::chkUnterspg, "UNTERSPANNUNG_ON_OFF"},
      .invalidValue = "Ungültiger Wert für Aktivierung Unterspannung",
      .writeFailure = "Der Parameter Unterspg. aktivieren konnte nicht gesetzt werden.",
      .kdl = {.numbers = {allBut(batteryType), 4}, .flag = KdlFlag::NotZero}},
     {.field = UnterSpg,
      .registers = {allBut(batteryType), 3009},
      .section = "ANSPRECHWERTE_SPANNUNG",
      .kind = NumberParameter{.box = &C::txtUnterSpg,
                              .fileKey = "UNTERSPANNUNG",
                              .rangeOfType = &ParameterType::undervoltage,
                              .rangeCaption = captionOf<&C::chkUnterspg>,
                              .outOfRangeBegin = "Ungültiger Ansprechwert. Unterspg = ",
                              .outOfRangeEnd = "."},
      .writeFailure = "Der Ansprechwert Unterspannung konnte nicht gesetzt werden.",
      .kdl = {.numbers = {allBut(batteryType), 4}, .onOff = &C::chkUnterspg, .zeroIsOff = true}},
     {.field = UeberSpgAktiv,
      .registers = {allBut(batteryType), 3010},
      .section = "ANSPRECHWERTE_SPANNUNG",
      .kind = FlagParameter{&C::chkUeberSpg, "ÜBERSPANNUNG_ON_OFF"},
      .invalidValue = "Ungültiger Wert für Aktivierung Überspannung",
      .writeFailure = "Der Parameter Überspg. aktivieren konnte nicht gesetzt werden.",
      .kdl = {.numbers = {allBut(batteryType), 5}, .flag = KdlFlag::NotZero}},
     {.field = UeberSpg,
      .registers = {allBut(batteryType), 3011},
      .section = "ANSPRECHWERTE_SPANNUNG",
      .kind = NumberParameter{.box = &C::txtUeberSpg,
                              .fileKey = "ÜBERSPANNUNG",
                              .rangeOfType = &ParameterType::overvoltage,
                              .rangeCaption = captionOf<&C::chkUeberSpg>,
                              .outOfRangeBegin = "Ungültiger Ansprechwert. Ueberspg = ",
                              .outOfRangeEnd = "."},
      .writeFailure = "Der Ansprechwert Überspannung konnte nicht gesetzt werden.",
      .kdl = {.numbers = {allBut(batteryType), 5}, .onOff = &C::chkUeberSpg, .zeroIsOff = true}},
     {.field = BattH,
      .registers = {batteryType, 3005},
      .section = "BATTERIESOLLWERTE",
      .kind = NumberParameter{.box = &C::txtBattH,
                              .fileKey = "UBattH",
                              .range = {4, 500},
                              .outOfRangeBegin = "Ungültiger Ansprechwert. UBatH = ",
                              .outOfRangeEnd = " V."},
      .writeFailure = "Der Ansprechwert UBatH konnte nicht gesetzt werden.",
      .kdl = {.numbers = {batteryType, 3}, .hasRange = false}},
     {.field = BattL,
      .registers = {batteryType, 3007},
      .section = "BATTERIESOLLWERTE",
      .kind = NumberParameter{.box = &C::txtBattL,
                              .fileKey = "UBattL",
                              .range = {3, 495},
                              .outOfRangeBegin = "Ungültiger Ansprechwert. UBatL = ",
                              .outOfRangeEnd = " V."},
      .writeFailure = "Der Ansprechwert UBatL konnte nicht gesetzt werden.",
      .kdl = {.numbers = {batteryType, 4}, .hasRange = false}},
     {.field = CrossH,
      .registers = {batteryType, 3009},
      .section = "CROSSFAULTWERTE",
      .kind = NumberParameter{.box = &C::txtCrossH,
                              .fileKey = "UCrossH",
                              .range = {4, 500},
                              .outOfRangeBegin = "Ungültiger Ansprechwert. UCrossH = ",
                              .outOfRangeEnd = " V."},
      .writeFailure = "Der Ansprechwert UCrossH konnte nicht gesetzt werden.",
      .kdl = {.numbers = {batteryType, 5}, .hasRange = false}},
     {.field = CrossL,
      .registers = {batteryType, 3011},
      .section = "CROSSFAULTWERTE",
      .kind = NumberParameter{.box = &C::txtCrossL,
                              .fileKey = "UCrossL",
                              .range = {3, 495},
                              .outOfRangeBegin = "Ungültiger Ansprechwert. UCrossL = ",
                              .outOfRangeEnd = " V."},
      .writeFailure = "Der Ansprechwert UCrossL konnte nicht gesetzt werden.",
      .kdl = {.numbers = {batteryType, 6}, .hasRange = false}},
     {.field = Fehlerspeicher,
      .registers = {allTypes, 3012},
      .section = "FEHLERSPEICHER",
      .kind = FlagParameter{&C::chkMemory},
      .invalidValue = "Ungültiger Wert für Fehlerspeicherung",
      .writeFailure = "Der Parameter Fehlerspeicher konnte nicht gesetzt werden.",
      .kdl = {.query = ":MEM?", .orders = {":MEMRY 0", ":MEMRY 1"}}},
     {.field = Relais1Arbeitsweise,
      .registers = {allTypes, 3013},
      .section = "RELAIS1",
      .kind = ChoiceParameter{relay1Modes},
      .invalidValue = "Ungültiger Wert für Arbeitsweise Relais 1",
      .writeFailure = "Der Parameter Arbeitsweise K1 konnte nicht gesetzt werden.",
      .kdl = {.query = ":REL? 0", .orders = {":RELNO 0", ":RELNC 0"}}},
     {.field = Relais2Arbeitsweise,
      .registers = {allTypes, 3014},
      .section = "RELAIS2",
      .kind = ChoiceParameter{relay2Modes},
      .invalidValue = "Ungültiger Wert für Arbeitsweise Relais 2",
      .writeFailure = "Der Parameter Arbeitsweise K2 konnte nicht gesetzt werden.",
      .kdl = {.query = ":REL? 1", .orders = {":RELNO 1", ":RELNC 1"}}},
     // 0 is allowed besides the range; see isDeviceAddress().
     {.field = Adresse,
      .registers = {allTypes, 3015},
      .section = "BUS_ADRESSE",
      .kind = NumberParameter{&C::txtAdresse, "WERT", {3, 90}},
      .writeFailure = "Der Geräte Adresse konnte nicht gesetzt werden.",
      .kdl = {.numbers = {allTypes, 14}}},
     {.field = BaudCode,
      .registers = {allTypes, 3016},
      .section = "BAUDRATE",
      .kind = ChoiceParameter{baudCodes},
      .invalidValue = "Ungültiger Baudrate",
      .writeFailure = "Der Parameter Baudrate konnte nicht gesetzt werden.",
      .kdl = {.numbers = {allBut(typeSet(6)), 15}}},
     {.field = Paritaet,
      .registers = {allTypes, 3017},
      .section = "PARITÄT",
      .kind = ChoiceParameter{parities},
      .invalidValue = "Ungültige Parität",
      .writeFailure = "Der Parameter Parität konnte nicht gesetzt werden."},
     {.field = Tein,
      .registers = {allTypes, 3018},
      .section = "VERZÖGERUNGSZEITEN",
      .kind = NumberParameter{.box = &C::txtTein,
                              .fileKey = "Tein",
                              .range = {0, 10},
                              .outOfRangeBegin = "Ungültiger Ansprechwert. Tein = ",
                              .outOfRangeEnd = "s."},
      .writeFailure = "Der Einschaltverzögerung konnte nicht gesetzt werden.",
      .kdl = {.numbers = {allTypes, 9}}},
     {.field = Tan,
      .registers = {allBut(batteryType), 3019},
      .section = "VERZÖGERUNGSZEITEN",
      .kind = NumberParameter{.box = &C::txtTan,
                              .fileKey = "Tan",
                              .range = {0, 99},
                              .outOfRangeBegin = "Ungültiger Ansprechwert für K1 und K2. Tan1+2 = ",
                              .outOfRangeEnd = "s."},
      .writeFailure = "Der Ansprechverzögerung für K1 + K2 konnte nicht gesetzt werden.",
      .kdl = {.numbers = {allBut(batteryType), 10},
              .outOfRange = "Ungültiger Ansprechwert. Tan1+2 = 0...99s."}},
     {.field = Tan1,
      .registers = {batteryType, 3019},
      .section = "VERZÖGERUNGSZEITEN",
      .kind = NumberParameter{.box = &C::txtTan1,
                              .fileKey = "Tan1",
                              .range = {0, 99},
                              .outOfRangeBegin = "Ungültiger Ansprechwert für K1. Tan1 = ",
                              .outOfRangeEnd = "s."},
      .writeFailure = "Der Ansprechverzögerung für K1 konnte nicht gesetzt werden.",
      .kdl = {.numbers = {batteryType, 10}, .outOfRange = "Ungültiger Ansprechwert. Tan1 = 0...99s."}},
     {.field = Tan2,
      .registers = {batteryType, 3030},
      .section = "VERZÖGERUNGSZEITEN",
      .kind = NumberParameter{.box = &C::txtTan2,
                              .fileKey = "Tan2",
                              .range = {0, 99},
                              .outOfRangeBegin = "Ungültiger Ansprechwert für K2. Tan2 = ",
                              .outOfRangeEnd = "s."},
      .writeFailure = "Der Ansprechverzögerung für K2 konnte nicht gesetzt werden."},
     {.field = Tab,
      .registers = {allTypes, 3020},
      .section = "VERZÖGERUNGSZEITEN",
      .kind = NumberParameter{.box = &C::txtTab,
                              .fileKey = "Tab",
                              .range = {0, 99},
                              .outOfRangeBegin = "Ungültiger Ansprechwert. Tab = ",
                              .outOfRangeEnd = "s."},
      .writeFailure = "Der Abfallverzögerung konnte nicht gesetzt werden.",
      .kdl = {.numbers = {allTypes, 11}}},
     {.field = Selbsttest,
      .registers = {allTypes, 3021},
      .section = "SEBSTTEST_INTERVALL",
      .kind = ChoiceParameter{selfTestIntervals},
      .invalidValue = "Ungültiger Wert für Selbsttest-Intervall",
      .kdl = {.numbers = {allBut(batteryType), 6, batteryType, 12}}},
     {.field = ZeAktiv,
      .registers = {impedanceTypes, 3022},
      .section = "IMPEDANZ_MESSUNG",
      .kind = FlagParameter{&C::chkZe},
      .invalidValue = "Ungültiger Wert für Aktivierung Z-Mode",
      .writeFailure = "Der Parameter Z-Mode konnte nicht gesetzt werden.",
      .kdl = {.numbers = {impedanceTypes, 8}}},
     {.field = Netzfrequenz,
      .registers = {impedanceTypes, 3023},
      .section = "FREQUENZ",
      .kind = ChoiceParameter{mainsFrequencies},
      .invalidValue = "Ungültiger Wert für Netzfrequenz",
      .writeFailure = "Der Parameter Netzfrequenz konnte nicht gesetzt werden."},
     {.field = Kapazitaet,
      .registers = {typeSet(8), 3023},
      .section = "KAPAZITÄT",
      .kind = ChoiceParameter{capacitances, "Der Parameter Netzableitkapazität ist nicht vorhanden.",
                              writeErrorTitle},
      .invalidValue = "Ungültiger Wert für Netzableitkapazität",
      .writeFailure = "Der Parameter Netzableitkapazität konnte nicht gesetzt werden.",
      .kdl = {.numbers = {typeSet(8), 3}}},
     {.field = GenModus,
      .registers = {typeSet(10), 3023},
      .section = "GEN_MODUS",
      .kind =
          ChoiceParameter{generatorModes, "Der Parameter vekQLN-Mode ist nicht vorhanden.", writeErrorTitle},
      .invalidValue = "Ungültiger Wert für vekQLN-Modus",
      .kdl = {.numbers = {typeSet(10), 8}, .invalidValue = "Ungültiger Wert für vekQLN-Mode"}},
     {.field = Netzankopplung,
      .registers = {allBut(typeSet(8)), 3024},
      .section = "NETZANSCHLUSS_UEBERWACHUNG",
      .kind = FlagParameter{&C::chkAnkop},
      .invalidValue = "Ungültiger Wert für Aktivierung Netzankopplungsüberwachung",
      .writeFailure = "Der Parameter Netzanschlussüberwachung konnte nicht gesetzt werden.",
      .kdl = {.numbers = {allBut(typeSet(8)), 7}}},
     {.field = StartCalTest,
      .registers = {allBut(typeSet(5)), 3025},
      .section = "START_CAL_TEST",
      .kind = FlagParameter{&C::chkCalTest},
      .invalidValue = "Ungültiger Wert für Aktivierung Start mit Cal und Test",
      .writeFailure = "Der Parameter Start mit Cal und Test konnte nicht gesetzt werden."},
     {.field = StopModus,
      .registers = {allTypes, 3026},
      .section = "STOP_MODUS",
      .kind = FlagParameter{&C::chkStopMod},
      .invalidValue = "Ungültiger Wert für Aktivierung STOP-Modus",
      .writeFailure = "Der Parameter STOP-Modus konnte nicht gesetzt werden.",
      .kdl = {.numbers = {allTypes, 13},
              .invalidValue = "Ungültiger Wert für Aktivierung Start mit Cal und Test"}},
     {.field = AlarmRelais1,
      .registers = {allTypes, 3027},
      .section = "ALARM_RELAIS1",
      .kind = AlarmMaskParameter{&C::chkR1_Bit, 0},
      .writeFailure = "Der Parameter Alarmzuordnung Relais 1 konnte nicht gesetzt werden."},
     {.field = AlarmRelais2,
      .registers = {allTypes, 3028},
      .section = "ALARM_RELAIS2",
      .kind = AlarmMaskParameter{&C::chkR2_Bit, 1},
      .writeFailure = "Der Parameter Alarmzuordnung Relais 2 konnte nicht gesetzt werden."},
     {.field = Messpuls,
      .registers = {batteryType, 3029},
      .section = "MESSPULS_DAUER",
      .kind = ChoiceParameter{pulsePeriods, "Ungültige Messpuls Periodendauer", "Fehler"},
      .invalidValue = "Ungültiger Wert für Messpuls Periodendauer",
      .writeFailure = "Die Messpuls Periodendauer konnte nicht gesetzt werden.",
      .kdl = {.numbers = {batteryType, 8}, .invalidValue = "Ungültiger Wert für Messpuls-Periodendauer"}}}};

constexpr bool rowsStandAtTheirFields() {
    for (std::size_t index = 0; index < table.size(); ++index) {
        if (static_cast<std::size_t>(table[index].field) != index) {
            return false;
        }
    }
    return true;
}
static_assert(rowsStandAtTheirFields());

}  // namespace

std::span<const ParameterRow, parameterCount> parameterRows() {
    return table;
}

const ParameterRow& parameterRow(ParameterField field) {
    return table.at(static_cast<std::size_t>(field));
}

std::uint16_t registerOf(const ParameterRow& row, std::uint8_t deviceType) {
    return row.registers.of(deviceType).value();
}

const NumberRange& rangeOf(const NumberParameter& number, std::uint8_t deviceType) {
    return number.rangeOfType != nullptr ? parameterType(deviceType).*number.rangeOfType : number.range;
}

std::string outOfRangeText(const NumberParameter& number, std::uint8_t deviceType) {
    const NumberRange& range = rangeOf(number, deviceType);
    return number.outOfRangeBegin + std::to_string(range.lowest) + "..." + std::to_string(range.highest) +
           number.outOfRangeEnd;
}

}  // namespace vek
