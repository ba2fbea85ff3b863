#include <gtest/gtest.h>

#include <algorithm>

#include "parameterrig.h"

namespace vek {
namespace {

using sim::FaultKind;
using Numbers = std::vector<unsigned>;

Numbers numbersOf(const std::vector<RegisterUse>& uses) {
    Numbers numbers;
    for (const RegisterUse& use : uses) {
        numbers.push_back(use.number);
    }
    return numbers;
}

/// What all types have in common, from the thresholds on.
const Numbers ordinaryRegisters = {3005, 3007, 3008, 3009, 3010, 3011, 3012, 3013, 3014, 3015, 3016,
                                   3017, 3018, 3019, 3020, 3021, 3024, 3025, 3026, 3027, 3028};

Numbers ordinary(Numbers first, unsigned without = 0) {
    first.insert(first.end(), ordinaryRegisters.begin(), ordinaryRegisters.end());
    std::erase(first, without);
    return first;
}

TEST(ReadParameters, AsksForTheRegistersOfTheTypeInTheirOrder) {
    struct Case {
        int type;
        Numbers registers;
    };
    const Case cases[] = {
        {1, ordinary({3022, 3023, 3001, 3003, 3004, 3006})},
        {2, ordinary({3022, 3023, 3001, 3003, 3004, 3006})},
        {3, ordinary({})},
        {4, ordinary({})},
        {5, ordinary({}, 3025)},
        {6, ordinary({})},
        {7, ordinary({})},
        {8, ordinary({3023}, 3024)},
        {9, {3005, 3007, 3009, 3011, 3029, 3001, 3003, 3012, 3013, 3014, 3015, 3016,
             3017, 3018, 3019, 3030, 3020, 3021, 3024, 3025, 3026, 3027, 3028}},
        {10, ordinary({3023})},
    };
    for (const Case& c : cases) {
        ParameterRig rig(c.type);
        rig.editor();
        EXPECT_EQ(rig.test.serial.written.size(), c.registers.size()) << c.type;
        EXPECT_EQ(rig.read(), Boxes{}) << c.type;
        EXPECT_EQ(numbersOf(rig.uses()), c.registers) << c.type;
        EXPECT_EQ(rig.editor().prgFortschritt.done, static_cast<int>(c.registers.size()));
        EXPECT_EQ(rig.editor().prgFortschritt.total, static_cast<int>(c.registers.size()));
        EXPECT_FALSE(rig.test.serial.isOpen());
    }
}

TEST(ReadParameters, ShowsEveryKindOfValue) {
    ParameterRig rig(9);
    rig.store(3001, 5000);
    rig.store(3005, 480);
    rig.store(3012, 1);
    rig.store(3013, 1);
    rig.store(3016, 8);
    rig.store(3017, 1);
    rig.store(3021, 0);
    rig.store(3027, 6);
    rig.store(3028, 0x0FFE);
    rig.store(3029, 3);
    rig.store(3030, 42);
    frmMbParameter& editor = rig.editor();
    EXPECT_EQ(editor.txtRWarnung.text.get(), "5000");
    EXPECT_EQ(editor.txtBattH.text.get(), "480");
    EXPECT_EQ(editor.txtTan1.text.get(), "0");
    EXPECT_EQ(editor.txtTan2.text.get(), "42");
    EXPECT_EQ(editor.txtUnterSpg.text.get(), "---");
    EXPECT_EQ(editor.txtZAlarm.text.get(), "---");
    EXPECT_TRUE(editor.chkMemory.value);
    for (const OptionButton* option : {&editor.optR1nc, &editor.optR2no, &editor.optBaud115200,
                                       &editor.optOdd, &editor.optSelfTestOff, &editor.opt_2s}) {
        EXPECT_TRUE(option->value) << option->name;
    }
    for (std::size_t number = 1; number <= AlarmBoxes::count; ++number) {
        EXPECT_EQ(editor.chkR1_Bit[number].value, number <= 2) << number;
        EXPECT_TRUE(editor.chkR2_Bit[number].value) << number;
    }
    rig.store(3028, 0x0001);
    rig.read();
    EXPECT_TRUE(std::none_of(editor.chkR2_Bit.begin(), editor.chkR2_Bit.end(),
                             [](const CheckBox& box) { return box.value.get(); }));
}

TEST(ReadParameters, AValueWithoutAMeaningGetsItsMessageAndChangesNothing) {
    struct Case {
        int type;
        std::uint16_t number;
        std::uint16_t value;
        const char* message;
    };
    const Case cases[] = {
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
    for (const Case& c : cases) {
        ParameterRig rig(c.type);
        frmMbParameter& editor = rig.editor();
        std::vector<bool> before;
        for (const OptionButton* option : editor.Frame8.options) {
            before.push_back(option->value);
        }
        rig.pretend(c.number, c.value);
        EXPECT_EQ(rig.read(), Boxes{error(c.message)}) << c.number;
        for (std::size_t index = 0; index < before.size(); ++index) {
            EXPECT_EQ(editor.Frame8.options[index]->value, before[index]) << c.number;
        }
        EXPECT_TRUE(editor.cmdReadPara.enabled && editor.cmdWritePara.enabled);
    }
}

TEST(ReadParameters, TheImpedanceMeasurementDecidesWhatIsReadAndShown) {
    ParameterRig rig(1);
    rig.store(3022, 0);
    frmMbParameter& editor = rig.editor();
    const auto expectOff = [&] {
        EXPECT_FALSE(editor.chkZe.value);
        EXPECT_TRUE(editor.chkZe.enabled && editor.Frame11.enabled);
        EXPECT_FALSE(editor.Frame4.enabled || editor.Frame12.enabled);
        EXPECT_FALSE(editor.chkRWarnung.visible || editor.chkRAlarm.visible);
        EXPECT_EQ(editor.txtZWarnung.text.get(), "---");
        EXPECT_EQ(editor.txtZAlarm.text.get(), "---");
        EXPECT_TRUE(editor.txtZWarnung.enabled && editor.lblZAlarm.enabled);
    };
    expectOff();
    rig.store(3022, 1);
    rig.read();
    EXPECT_TRUE(editor.chkZe.value);
    EXPECT_TRUE(editor.Frame4.enabled && editor.Frame12.enabled);
    EXPECT_TRUE(editor.chkRWarnung.visible && editor.chkRAlarm.visible);
    EXPECT_EQ(editor.txtZWarnung.text.get(), "50");
    rig.store(3022, 0);
    rig.read();
    expectOff();
    const Numbers asked = numbersOf(rig.uses());
    EXPECT_EQ(std::count(asked.begin(), asked.end(), 3001), 1) << "only while it was on";
}

TEST(ReadParameters, ARegisterThatTheDeviceLacksTakesItsInputAway) {
    ParameterRig rig(
        1, {fault(FaultKind::Lacks, 3022), fault(FaultKind::Lacks, 3023), fault(FaultKind::Lacks, 3004),
            fault(FaultKind::Lacks, 3005), fault(FaultKind::Lacks, 3012), fault(FaultKind::Lacks, 3027)});
    frmMbParameter& editor = rig.editor();
    EXPECT_EQ(rig.test.desktop.takeBoxes(), Boxes{});
    EXPECT_FALSE(editor.chkZe.enabled || editor.Frame11.enabled);
    EXPECT_FALSE(editor.opt50Hz_1uF.enabled || editor.opt60Hz_10uF.enabled || editor.Frame12.enabled);
    EXPECT_FALSE(editor.chkRWarnung.visible);
    EXPECT_EQ(editor.txtRWarnung.text.get(), "EXCEP_2");
    EXPECT_FALSE(editor.chkMemory.value);
    EXPECT_FALSE(editor.chkR1_Bit[1].value) << "as the value 0";
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
    EXPECT_EQ(editor.txtUnterSpg.text.get(), "CRC_TIMEOUT");
    EXPECT_EQ(editor.txtTein.text.get(), "EXCEP_4");
    EXPECT_EQ(editor.txtUeberSpg.text.get(), "460");

    rig.test.desktop.answers = {MessageAnswer::Cancel};
    const std::size_t before = rig.test.serial.written.size();
    EXPECT_TRUE(rig.test.endsProgram([&] { editor.cmdReadPara.click(); }));
    EXPECT_EQ(rig.test.desktop.takeBoxes(), (Boxes{crcDialog, farewell}));
    EXPECT_EQ(rig.test.serial.written.size() - before, 4U) << "nothing is sent after the end";
    EXPECT_FALSE(rig.test.serial.isOpen());
}

TEST(ReadParameters, LetsTheUserActBetweenTheRegisters) {
    ParameterRig rig(3);
    frmMbParameter& editor = rig.editor();
    const std::size_t opened = rig.test.serial.written.size();
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
    EXPECT_EQ(rig.test.serial.written.size() - opened, 4U) << "a closed editor reads no further";
    EXPECT_FALSE(rig.test.serial.isOpen());
    EXPECT_TRUE(rig.test.program.shell.commandsAvailable);
}

}  // namespace
}  // namespace vek
