#include <gtest/gtest.h>

#include <algorithm>

#include "parameterrig.h"

namespace vek {
namespace {

using sim::FaultKind;

/// What a type reads and writes: some registers first, then those that all types have in common.
Texts registersOf(Texts first, const Texts& without) {
    for (int number = 3005; number <= 3028; ++number) {
        const std::string text = std::to_string(number);
        const bool common = number != 3006 && number != 3022 && number != 3023;
        if (common && std::ranges::find(without, text) == without.end()) {
            first.push_back(text);
        }
    }
    return first;
}

TEST(Parameters, AreReadAndWrittenInTheOrderOfTheType) {
    struct Case {
        std::vector<int> types;
        Texts first;
        Texts without;
    };
    const Case cases[] = {
        {{1, 2}, {"3022", "3023", "3001", "3003", "3004", "3006"}, {}},
        {{3, 4, 6, 7}, {}, {}},
        {{5}, {}, {"3025"}},
        {{8}, {"3023"}, {"3024"}},
        {{10}, {"3023"}, {}},
    };
    for (const Case& c : cases) {
        for (const int type : c.types) {
            ParameterRig rig(type);
            const Texts registers = registersOf(c.first, c.without);
            EXPECT_EQ(rig.read(), Boxes{}) << type;
            EXPECT_EQ(numbersOf(rig.uses()), registers) << type;
            EXPECT_EQ(rig.editor().prgFortschritt.done, static_cast<int>(registers.size()));
            EXPECT_EQ(rig.editor().prgFortschritt.total, static_cast<int>(registers.size()));
            EXPECT_EQ(rig.write(), Boxes{}) << type;
            // Address, baud rate and parity are written only when they change.
            Texts written = registers;
            std::erase_if(written,
                          [](const std::string& number) { return number >= "3015" && number <= "3017"; });
            const Texts uses = numbersOf(rig.uses());
            EXPECT_EQ(Texts(uses.begin() + std::ssize(registers), uses.end()), written) << type;
            EXPECT_FALSE(rig.test.serial.isOpen());
        }
    }
    ParameterRig battery(9);
    battery.read();
    EXPECT_EQ(
        numbersOf(battery.uses()),
        (Texts{"3005", "3007", "3009", "3011", "3029", "3001", "3003", "3012", "3013", "3014", "3015", "3016",
               "3017", "3018", "3019", "3030", "3020", "3021", "3024", "3025", "3026", "3027", "3028"}));
    EXPECT_EQ(battery.write(), Boxes{});
    const Texts uses = battery.uses();
    EXPECT_EQ(Texts(uses.begin() + 23, uses.end()),
              (Texts{"w3001=100", "w3003=50", "w3005=250", "w3007=180", "w3009=120", "w3011=60", "w3029=0",
                     "w3012=0",   "w3013=0",  "w3014=0",   "w3018=0",   "w3019=0",   "w3030=0",  "w3020=0",
                     "w3021=2",   "w3024=1",  "w3025=0",   "w3026=0",   "w3027=14",  "w3028=50"}));
}

TEST(ReadParameters, ShowsEveryKindOfValue) {
    ParameterRig rig(9);
    rig.store({{3001, 5000},
               {3005, 480},
               {3012, 1},
               {3013, 1},
               {3016, 8},
               {3017, 1},
               {3021, 0},
               {3027, 6},
               {3028, 0x0FFE},
               {3029, 3},
               {3030, 42}});
    frmMbParameter& editor = rig.editor();
    EXPECT_EQ(textsOf({&editor.txtRWarnung, &editor.txtBattH, &editor.txtTan1, &editor.txtTan2,
                       &editor.txtUnterSpg, &editor.txtZAlarm}),
              (Texts{"5000", "480", "0", "42", "---", "---"}));
    EXPECT_TRUE(editor.chkMemory.value);
    for (const OptionButton* option : {&editor.optR1nc, &editor.optR2no, &editor.optBaud115200,
                                       &editor.optOdd, &editor.optSelfTestOff, &editor.opt_2s}) {
        EXPECT_TRUE(option->value) << option->name;
    }
    const auto alarms = [](const AlarmBoxes& boxes) {
        std::string bits;
        for (const CheckBox& box : boxes) {
            bits += box.value ? 'x' : '-';
        }
        return bits;
    };
    EXPECT_EQ(alarms(editor.chkR1_Bit), "xx---------");
    EXPECT_EQ(alarms(editor.chkR2_Bit), "xxxxxxxxxxx");
    rig.store({{3028, 0x0001}});
    rig.read();
    EXPECT_EQ(alarms(editor.chkR2_Bit), "-----------");
}

TEST(ReadParameters, AValueWithoutAMeaningGetsItsMessageAndChangesNothing) {
    const std::tuple<int, unsigned, std::uint16_t, const char*> cases[] = {
        {8, 3023, 500, "Ungültiger Wert für Netzableitkapazität"},
        {10, 3023, 2, "Ungültiger Wert für vekQLN-Modus"},
        {9, 3029, 5, "Ungültiger Wert für Messpuls Periodendauer"},
        {1, 3022, 2, "Ungültiger Wert für Aktivierung Z-Mode"},
        {2, 3023, 50, "Ungültiger Wert für Netzfrequenz"},
        {1, 3004, 2, "Ungültiger Wert für Aktivierung R-ISO1 Warnung"},
        {2, 3006, 2, "Ungültiger Wert für Aktivierung R-ISO2 Alarm"},
        {3, 3008, 2, "Ungültiger Wert für Aktivierung Unterspannung"},
        {4, 3010, 65535, "Ungültiger Wert für Aktivierung Überspannung"},
        {5, 3012, 2, "Ungültiger Wert für Fehlerspeicherung"},
        {6, 3013, 2, "Ungültiger Wert für Arbeitsweise Relais 1"},
        {7, 3014, 2, "Ungültiger Wert für Arbeitsweise Relais 2"},
        {8, 3016, 9, "Ungültiger Baudrate"},
        {9, 3017, 3, "Ungültige Parität"},
        {10, 3021, 24, "Ungültiger Wert für Selbsttest-Intervall"},
        {1, 3024, 2, "Ungültiger Wert für Aktivierung Netzankopplungsüberwachung"},
        {3, 3025, 2, "Ungültiger Wert für Aktivierung Start mit Cal und Test"},
        {4, 3026, 2, "Ungültiger Wert für Aktivierung STOP-Modus"},
    };
    for (const auto& [type, number, value, message] : cases) {
        ParameterRig rig(type);
        frmMbParameter& editor = rig.editor();
        rig.pretend(number, value);
        EXPECT_EQ(rig.read(), Boxes{error(message)}) << number;
        EXPECT_TRUE(editor.optBaud9600.value) << number;
        EXPECT_TRUE(editor.cmdReadPara.enabled && editor.cmdWritePara.enabled);
    }
}

TEST(ReadParameters, ARegisterThatTheDeviceLacksTakesItsInputAway) {
    std::vector<sim::LineFault> faults;
    for (const int number : {3022, 3023, 3004, 3005, 3012, 3027}) {
        faults.push_back(fault(FaultKind::Lacks, number));
    }
    ParameterRig rig(1, faults);
    frmMbParameter& editor = rig.editor();
    EXPECT_EQ(rig.test.desktop.takeBoxes(), Boxes{});
    EXPECT_FALSE(editor.chkZe.enabled || editor.Frame11.enabled);
    EXPECT_FALSE(editor.opt50Hz_1uF.enabled || editor.opt60Hz_10uF.enabled || editor.Frame12.enabled);
    EXPECT_FALSE(editor.chkRWarnung.visible);
    EXPECT_EQ(editor.txtRWarnung.text.get(), "EXCEP_2");
    EXPECT_FALSE(editor.chkMemory.value || editor.chkR1_Bit[1].value) << "as the value 0";
    editor.chkZe.value = true;
    rig.read();
    EXPECT_EQ(editor.txtZWarnung.text.get(), "50") << "the state of the box counts when there is no other";

    ParameterRig generator(10, {fault(FaultKind::Lacks, 3023)});
    EXPECT_TRUE(generator.editor().optGENmode.value) << "as the value 0";
    ParameterRig capacitance(8, {fault(FaultKind::Lacks, 3023)});
    EXPECT_FALSE(capacitance.editor().Frame12.enabled);
    EXPECT_EQ(capacitance.test.desktop.takeBoxes(), Boxes{});
}

TEST(ReadParameters, GoesOnAfterAFailureUntilTheUserEndsIt) {
    ParameterRig rig(3, {fault(FaultKind::Silence, 3009), fault(FaultKind::Exception, 3018, 4)});
    frmMbParameter& editor = rig.editor();
    EXPECT_EQ(rig.test.desktop.takeBoxes(), (Boxes{crcDialog, "MODBUS-Fehler|stop|ok|Interner Fehler"}));
    EXPECT_EQ(textsOf({&editor.txtUnterSpg, &editor.txtTein, &editor.txtUeberSpg}),
              (Texts{"CRC_TIMEOUT", "EXCEP_4", "460"}));

    rig.test.desktop.answers = {MessageAnswer::Cancel};
    EXPECT_TRUE(rig.test.endsProgram([&] { editor.cmdReadPara.click(); }));
    EXPECT_EQ(rig.test.desktop.takeBoxes(), (Boxes{crcDialog, farewell}));
    EXPECT_EQ(rig.uses().size(), 4U) << "nothing is sent after the end";
    EXPECT_FALSE(rig.test.serial.isOpen());
}

TEST(ReadParameters, LetsTheUserActBetweenTheRegisters) {
    ParameterRig rig(3);
    frmMbParameter& editor = rig.editor();
    int events = 0;
    rig.test.desktop.onEvents = [&] {
        ++events;
        EXPECT_EQ(editor.prgFortschritt.done, events - 1);
        EXPECT_FALSE(editor.cmdReadPara.enabled || editor.cmdWritePara.enabled);
        editor.cmdWritePara.click();
        editor.cmdReadPara.click();
        if (events == 5) {
            editor.cmdClose.click();
        }
    };
    editor.cmdReadPara.click();
    EXPECT_EQ(rig.uses().size(), 4U) << "a closed editor reads no further";
    EXPECT_FALSE(rig.test.serial.isOpen());
    EXPECT_TRUE(rig.test.program.shell.commandsAvailable);
}

}  // namespace
}  // namespace vek
