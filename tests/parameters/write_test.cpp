#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

#include "parameterrig.h"

namespace vek {
namespace {

using sim::FaultKind;
using Uses = std::vector<RegisterUse>;

RegisterUse set(unsigned number, unsigned value) {
    return {true, number, value};
}

std::vector<unsigned> writtenRegisters(const ParameterRig& rig) {
    std::vector<unsigned> numbers;
    for (const RegisterUse& use : rig.uses()) {
        numbers.push_back(use.number);
    }
    return numbers;
}

/// Writes the settings that every editor of the type shows after its opening.
TEST(WriteParameters, SendsTheParametersOfTheTypeInTheirOrder) {
    struct Case {
        int type;
        std::vector<unsigned> first;
        std::vector<unsigned> without;
    };
    const std::vector<unsigned> ordinary = {3005, 3007, 3008, 3009, 3010, 3011, 3012, 3013, 3014,
                                            3018, 3019, 3020, 3021, 3024, 3025, 3026, 3027, 3028};
    const Case cases[] = {
        {1, {3022, 3023, 3001, 3003, 3004, 3006}, {}},
        {2, {3022, 3023, 3001, 3003, 3004, 3006}, {}},
        {3, {}, {}},
        {4, {}, {}},
        {5, {}, {3025}},
        {6, {}, {}},
        {7, {}, {}},
        {8, {3023}, {3024}},
        {10, {3023}, {}},
    };
    for (const Case& c : cases) {
        ParameterRig rig(c.type);
        EXPECT_EQ(rig.write(), Boxes{}) << c.type;
        std::vector<unsigned> expected = c.first;
        std::copy_if(ordinary.begin(), ordinary.end(), std::back_inserter(expected), [&](unsigned number) {
            return std::find(c.without.begin(), c.without.end(), number) == c.without.end();
        });
        EXPECT_EQ(writtenRegisters(rig), expected) << c.type;
        EXPECT_EQ(rig.editor().prgFortschritt.done, rig.editor().prgFortschritt.total);
        EXPECT_GT(rig.editor().prgFortschritt.total, 0);
    }
    ParameterRig battery(9);
    EXPECT_EQ(battery.write(), Boxes{});
    EXPECT_EQ(battery.uses(),
              (Uses{set(3001, 100), set(3003, 50), set(3005, 250), set(3007, 180),  set(3009, 120),
                    set(3011, 60),  set(3029, 0),  set(3012, 0),   set(3013, 0),    set(3014, 0),
                    set(3018, 0),   set(3019, 0),  set(3030, 0),   set(3020, 0),    set(3021, 2),
                    set(3024, 1),   set(3025, 0),  set(3026, 0),   set(3027, 0x0E), set(3028, 0x32)}));
}

struct RangeCase {
    int type;
    TextBox ParameterControls::*box;
    std::uint16_t number;
    const char* lowest;
    const char* highest;
    const char* below;
    const char* above;
    const char* message;
};

TEST(WriteParameters, HoldsEveryNumberAgainstItsRange) {
    using C = ParameterControls;
    const RangeCase cases[] = {
        {1, &C::txtZWarnung, 3001, "2", "500", "1", "501", "Ungültiger Ansprechwert. Zan = 2...500k."},
        {2, &C::txtZAlarm, 3003, "1", "495", "0", "496", "Ungültiger Ansprechwert. Zan = 1...495k."},
        {1, &C::txtRWarnung, 3005, "2", "990", "1", "991", "Ungültiger Ansprechwert. Ran = 2...990."},
        {2, &C::txtRAlarm, 3007, "1", "980", "0", "981", "Ungültiger Ansprechwert. Ran = 1...980."},
        {3, &C::txtRWarnung, 3005, "2", "500", "1.9", "501", "Ungültiger Ansprechwert. Ran = 2...500."},
        {4, &C::txtRAlarm, 3007, "1", "490", "-1", "490.1", "Ungültiger Ansprechwert. Ran = 1...490."},
        {6, &C::txtRAlarm, 3007, "1", "980", "x", "1e3", "Ungültiger Ansprechwert. Ran = 1...980."},
        {7, &C::txtRWarnung, 3005, "11", "500", "10", "501", "Ungültiger Ansprechwert. Ran = 11...500."},
        {7, &C::txtRAlarm, 3007, "10", "490", "9", "491", "Ungültiger Ansprechwert. Ran = 10...490."},
        {8, &C::txtRWarnung, 3005, "2", "100", "1", "101", "Ungültiger Ansprechwert. Ran = 2...100."},
        {8, &C::txtRAlarm, 3007, "1", "95", "", "96", "Ungültiger Ansprechwert. Ran = 1...95."},
        {9, &C::txtRWarnung, 3001, "11", "5000", "10", "5001", "Ungültiger Ansprechwert. Ran = 11...5000."},
        {9, &C::txtRAlarm, 3003, "10", "4950", "9", "4951", "Ungültiger Ansprechwert. Ran = 10...4950."},
        {10, &C::txtRWarnung, 3005, "6", "200", "5", "201", "Ungültiger Ansprechwert. Ran = 6...200."},
        {10, &C::txtRAlarm, 3007, "5", "195", "4", "196", "Ungültiger Ansprechwert. Ran = 5...195."},
        {1, &C::txtUnterSpg, 3009, "10", "499", "9", "500", "Ungültiger Ansprechwert. Unterspg = 10...499."},
        {5, &C::txtUnterSpg, 3009, "30", "1140", "29", "1141",
         "Ungültiger Ansprechwert. Unterspg = 30...1140."},
        {7, &C::txtUnterSpg, 3009, "30", "1090", "29", "1091",
         "Ungültiger Ansprechwert. Unterspg = 30...1090."},
        {8, &C::txtUeberSpg, 3011, "9", "144", "8", "145", "Ungültiger Ansprechwert. Ueberspg = 9...144."},
        {4, &C::txtUeberSpg, 3011, "31", "1150", "30", "1151",
         "Ungültiger Ansprechwert. Ueberspg = 31...1150."},
        {10, &C::txtUeberSpg, 3011, "11", "500", "10", "99999999999",
         "Ungültiger Ansprechwert. Ueberspg = 11...500."},
        {9, &C::txtBattH, 3005, "4", "500", "3", "501", "Ungültiger Ansprechwert. UBatH = 4...500 V."},
        {9, &C::txtBattL, 3007, "3", "495", "2", "496", "Ungültiger Ansprechwert. UBatL = 3...495 V."},
        {9, &C::txtCrossH, 3009, "4", "500", "3", "501", "Ungültiger Ansprechwert. UCrossH = 4...500 V."},
        {9, &C::txtCrossL, 3011, "3", "495", "2", "496", "Ungültiger Ansprechwert. UCrossL = 3...495 V."},
        {3, &C::txtTein, 3018, "0", "10", "-0.1", "10.1", "Ungültiger Ansprechwert. Tein = 0...10s."},
        {3, &C::txtTan, 3019, "0", "99", "-1", "100",
         "Ungültiger Ansprechwert für K1 und K2. Tan1+2 = 0...99s."},
        {9, &C::txtTan1, 3019, "0", "99", "-1", "100", "Ungültiger Ansprechwert für K1. Tan1 = 0...99s."},
        {9, &C::txtTan2, 3030, "0", "99", "-1", "100", "Ungültiger Ansprechwert für K2. Tan2 = 0...99s."},
        {6, &C::txtTab, 3020, "0", "99", "-5", "100", "Ungültiger Ansprechwert. Tab = 0...99s."},
    };
    for (const RangeCase& c : cases) {
        ParameterRig rig(c.type);
        TextBox& box = rig.editor().*c.box;
        for (const char* good : {c.lowest, c.highest}) {
            box.text = good;
            EXPECT_EQ(rig.write(), Boxes{}) << c.message << good;
            EXPECT_EQ(std::to_string(rig.stored(c.number)), good);
        }
        const std::size_t complete = rig.uses().size() / 2;
        for (const char* bad : {c.below, c.above}) {
            const std::size_t before = rig.uses().size();
            box.text = bad;
            EXPECT_EQ(rig.write(), Boxes{error(c.message)}) << bad;
            EXPECT_EQ(rig.uses().size() - before, complete - 1) << "all the others are written";
            EXPECT_EQ(std::to_string(rig.stored(c.number)), c.highest);
        }
    }
}

TEST(WriteParameters, ChecksTheFractionAndSendsTheRoundedNumber) {
    ParameterRig rig(3);
    const std::pair<const char*, unsigned> cases[] = {
        {"2.5", 2}, {"3.5", 4}, {"1e2", 100}, {" 4 0 ", 40}, {"7,9", 7}, {"499.6", 500}, {"12 k\xCE\xA9", 12},
    };
    for (const auto& [text, value] : cases) {
        rig.editor().txtRWarnung.text = text;
        EXPECT_EQ(rig.write(), Boxes{}) << text;
        EXPECT_EQ(rig.stored(3005), value) << text;
    }
}

TEST(WriteParameters, EveryRefusedParameterGetsItsMessage) {
    struct Case {
        int type;
        std::uint16_t number;
        const char* message;
    };
    const Case cases[] = {
        {10, 3023, "Der Parameter vekQLN-Mode = GEN konnte nicht gesetzt werden."},
        {8, 3023, "Der Parameter Netzableitkapazität konnte nicht gesetzt werden."},
        {1, 3022, "Der Parameter Z-Mode konnte nicht gesetzt werden."},
        {1, 3023, "Der Parameter Netzfrequenz konnte nicht gesetzt werden."},
        {1, 3001, "Der Ansprechwert Z-Vorwarnung konnte nicht gesetzt werden."},
        {2, 3003, "Der Ansprechwert Z-Alarm konnte nicht gesetzt werden."},
        {2, 3004, "Der Parameter R-Vorwarnung konnte nicht gesetzt werden."},
        {2, 3006, "Der Parameter R-Alarm konnte nicht gesetzt werden."},
        {9, 3001, "Der Ansprechwert R-Vorwarnung konnte nicht gesetzt werden."},
        {3, 3007, "Der Ansprechwert R-Alarm konnte nicht gesetzt werden."},
        {3, 3008, "Der Parameter Unterspg. aktivieren konnte nicht gesetzt werden."},
        {3, 3009, "Der Ansprechwert Unterspannung konnte nicht gesetzt werden."},
        {3, 3010, "Der Parameter Überspg. aktivieren konnte nicht gesetzt werden."},
        {3, 3011, "Der Ansprechwert Überspannung konnte nicht gesetzt werden."},
        {9, 3005, "Der Ansprechwert UBatH konnte nicht gesetzt werden."},
        {9, 3007, "Der Ansprechwert UBatL konnte nicht gesetzt werden."},
        {9, 3009, "Der Ansprechwert UCrossH konnte nicht gesetzt werden."},
        {9, 3011, "Der Ansprechwert UCrossL konnte nicht gesetzt werden."},
        {9, 3029, "Die Messpuls Periodendauer konnte nicht gesetzt werden."},
        {4, 3012, "Der Parameter Fehlerspeicher konnte nicht gesetzt werden."},
        {4, 3013, "Der Parameter Arbeitsweise K1 konnte nicht gesetzt werden."},
        {4, 3014, "Der Parameter Arbeitsweise K2 konnte nicht gesetzt werden."},
        {5, 3018, "Der Einschaltverzögerung konnte nicht gesetzt werden."},
        {5, 3019, "Der Ansprechverzögerung für K1 + K2 konnte nicht gesetzt werden."},
        {9, 3019, "Der Ansprechverzögerung für K1 konnte nicht gesetzt werden."},
        {9, 3030, "Der Ansprechverzögerung für K2 konnte nicht gesetzt werden."},
        {6, 3020, "Der Abfallverzögerung konnte nicht gesetzt werden."},
        {6, 3021, "Der Parameter Selbsttest Intervall 24h konnte nicht gesetzt werden."},
        {7, 3024, "Der Parameter Netzanschlussüberwachung konnte nicht gesetzt werden."},
        {7, 3025, "Der Parameter Start mit Cal und Test konnte nicht gesetzt werden."},
        {7, 3026, "Der Parameter STOP-Modus konnte nicht gesetzt werden."},
        {7, 3027, "Der Parameter Alarmzuordnung Relais 1 konnte nicht gesetzt werden."},
        {7, 3028, "Der Parameter Alarmzuordnung Relais 2 konnte nicht gesetzt werden."},
    };
    for (const Case& c : cases) {
        ParameterRig rig(c.type, {fault(FaultKind::Refuses, c.number)});
        EXPECT_EQ(rig.write(), (Boxes{"MODBUS-Fehler|stop|ok|Unzulässige Datenwert", writeError(c.message)}))
            << c.number;
        EXPECT_EQ(rig.uses().back().number, 3028U) << "the rest is written all the same";
    }
}

TEST(WriteParameters, AChoiceWithoutASelection) {
    const auto clear = [](Frame& frame) {
        for (OptionButton* option : frame.options) {
            option->value = false;
        }
    };
    const std::pair<int, Boxes> cases[] = {
        {3, {}},
        {1, {}},
        {8, {writeError("Der Parameter Netzableitkapazität ist nicht vorhanden.")}},
        {9, {error("Ungültige Messpuls Periodendauer")}},
        {10, {writeError("Der Parameter vekQLN-Mode ist nicht vorhanden.")}},
    };
    for (const auto& [type, boxes] : cases) {
        ParameterRig rig(type);
        frmMbParameter& editor = rig.editor();
        for (Frame* frame : {&editor.Frame1, &editor.Frame2, &editor.Frame8, &editor.Frame9, &editor.Frame12,
                             &editor.Frame18, &editor.Frame21, &editor.Frame22}) {
            clear(*frame);
        }
        EXPECT_EQ(rig.write(), boxes) << type;
        for (const RegisterUse& use : rig.uses()) {
            EXPECT_TRUE(use.number != 3013 && use.number != 3014 && use.number != 3021 &&
                        use.number != 3023 && use.number != 3029)
                << type << " " << use.number;
        }
    }
}

TEST(WriteParameters, SwitchesTheImpedanceMeasurementWithItsThresholds) {
    ParameterRig rig(1);
    rig.store(3022, 0);
    rig.store(3003, 600);
    frmMbParameter& editor = rig.editor();
    editor.chkZe.value = true;
    editor.chkZe.click();
    EXPECT_TRUE(editor.Frame4.enabled && editor.Frame12.enabled);
    EXPECT_TRUE(editor.chkRWarnung.visible && editor.chkRAlarm.visible);
    EXPECT_EQ(rig.write(), Boxes{error("Ungültiger Ansprechwert. Zan = 1...495k.")})
        << "what the device held is checked like anything typed";
    const Uses uses = rig.uses();
    EXPECT_EQ(Uses(uses.begin(), uses.begin() + 7), (Uses{set(3022, 1),
                                                          {false, 3001, 0},
                                                          {false, 3003, 0},
                                                          set(3023, 500),
                                                          set(3001, 50),
                                                          set(3004, 1),
                                                          set(3006, 1)}));
    EXPECT_EQ(editor.txtZAlarm.text.get(), "600");

    editor.chkZe.value = false;
    editor.chkZe.click();
    EXPECT_FALSE(editor.Frame4.enabled || editor.Frame12.enabled || editor.chkRAlarm.visible);
    const std::size_t before = rig.uses().size();
    EXPECT_EQ(rig.write(), Boxes{});
    EXPECT_EQ(rig.uses()[before], set(3022, 0));
    EXPECT_EQ(rig.uses()[before + 2].number, 3005U);
    EXPECT_EQ(editor.txtZWarnung.text.get(), "---");
}

TEST(WriteParameters, TheAddressMovesDeviceAndProgramTogether) {
    const std::string outside = error("Eingegebene Adresse ausserhalb des gültigen Bereiches (0, 3...90)");
    ParameterRig rig(3);
    TextBox& box = rig.editor().txtAdresse;
    for (const char* bad : {"1", "2", "2.9", "91", "-3", "1e3"}) {
        box.text = bad;
        EXPECT_EQ(rig.write(), Boxes{outside}) << bad;
    }
    box.text = "3";
    EXPECT_EQ(rig.write(), Boxes{});
    const Uses uses = rig.uses();
    EXPECT_EQ(
        std::count_if(uses.begin(), uses.end(), [](const RegisterUse& use) { return use.number == 3015; }),
        0);
    const std::pair<const char*, unsigned> moves[] = {{"90", 90}, {"4 5", 45}, {"1e1", 10}, {"3", 3}};
    for (const auto& [text, address] : moves) {
        box.text = text;
        EXPECT_EQ(rig.write(), Boxes{}) << text;
        EXPECT_EQ(rig.uses().back(), set(3015, address));
        EXPECT_EQ(rig.test.program.DeviceAddress, address);
        EXPECT_EQ(rig.test.program.shell.addressPanel.get(),
                  "ModBus-Geräteadresse = " + std::to_string(address));
        EXPECT_EQ(rig.read(), Boxes{}) << "the device answers there";
    }

    ParameterRig refusing(3, {fault(FaultKind::Refuses, 3015)});
    refusing.editor().txtAdresse.text = "7";
    EXPECT_EQ(refusing.write().back(), writeError("Der Geräte Adresse konnte nicht gesetzt werden."));
    EXPECT_EQ(refusing.test.program.DeviceAddress, 3);
}

TEST(WriteParameters, ParityAndBaudRateMoveDeviceAndProgramTogether) {
    ParameterRig rig(3);
    frmMbParameter& editor = rig.editor();
    editor.optOdd.value = true;
    editor.optBaud19200.value = true;
    EXPECT_EQ(rig.write(), Boxes{});
    const Uses uses = rig.uses();
    EXPECT_EQ(Uses(uses.end() - 2, uses.end()), (Uses{set(3017, 1), set(3016, 5)}));
    EXPECT_EQ(rig.test.program.FrameFormat, ",o,8,1");
    EXPECT_EQ(rig.test.program.BaudRate, 19200);
    EXPECT_EQ(rig.test.program.shell.portPanel.get(), "ModBus-Port = COM3, 19200,o,8,1");
    const auto& openings = rig.test.serial.openings;
    EXPECT_EQ(openings[openings.size() - 2].settings, "9600,o,8,1");
    EXPECT_EQ(openings.back().settings, "19200,o,8,1");
    EXPECT_FALSE(rig.test.serial.isOpen());
    const std::size_t before = openings.size();
    EXPECT_EQ(rig.write(), Boxes{});
    EXPECT_EQ(rig.uses().back().number, 3028U) << "settings in force are not written";
    EXPECT_EQ(openings.size(), before + 1);

    ParameterRig mute(3, {{.kind = FaultKind::Silence, .reg = 3016, .from = 2},
                          {.kind = FaultKind::Silence, .reg = 3017, .from = 2}});
    mute.editor().optNo.value = true;
    mute.editor().optBaud1200.value = true;
    mute.test.desktop.takeBoxes();
    EXPECT_EQ(mute.write(), Boxes{}) << "the device may answer at its new setting already";
    EXPECT_EQ(mute.test.program.FrameFormat, ",n,8,1");
    EXPECT_EQ(mute.test.program.BaudRate, 1200);
}

TEST(WriteParameters, AnAdapterPulledOutKeepsTheSettings) {
    ParameterRig rig(3);
    frmMbParameter& editor = rig.editor();
    editor.optNo.value = true;
    editor.optBaud0.value = true;
    rig.test.desktop.takeBoxes();
    rig.test.serial.peer = [&, device = rig.test.serial.peer](std::string_view frame) {
        device(frame);
        if (Bytes(frame).substr(2, 2) ==
            Bytes("\x0B\xD4", 2)) {  // the last register before parity and baud rate
            rig.test.serial.hangUp();
        }
    };
    const Boxes boxes = rig.write();
    ASSERT_GE(boxes.size(), 2U);
    EXPECT_EQ(Boxes(boxes.end() - 2, boxes.end()),
              (Boxes{writeError("Der Parameter Parität konnte nicht gesetzt werden."),
                     writeError("Der Parameter Baudrate konnte nicht gesetzt werden.")}));
    EXPECT_EQ(rig.test.program.FrameFormat, ",e,8,1");
    EXPECT_EQ(rig.test.program.BaudRate, 9600);
}

TEST(WriteParameters, ADeviceThatWasNeverAskedKeepsTheSettings) {
    ParameterRig rig(3);
    frmMbParameter& editor = rig.editor();
    editor.txtAdresse.text = "9";
    editor.optNo.value = true;
    editor.optBaud1200.value = true;
    rig.test.serial.openErrors[3] = PortError::NotThere;
    const Boxes boxes = rig.write();
    EXPECT_EQ(Boxes(boxes.end() - 4, boxes.end()),
              (Boxes{crcDialog, writeError("Der Geräte Adresse konnte nicht gesetzt werden."),
                     writeError("Der Parameter Parität konnte nicht gesetzt werden."),
                     writeError("Der Parameter Baudrate konnte nicht gesetzt werden.")}));
    EXPECT_EQ(rig.test.program.DeviceAddress, 3);
    EXPECT_EQ(rig.test.program.FrameFormat, ",e,8,1");
    EXPECT_EQ(rig.test.program.BaudRate, 9600);
}

TEST(WriteParameters, TheSwitchToKdlEndsTheProgram) {
    ParameterRig rig(3);
    rig.editor().optBaud0.value = true;
    EXPECT_TRUE(rig.test.endsProgram([&] { rig.editor().cmdWritePara.click(); }));
    EXPECT_EQ(rig.test.desktop.takeBoxes(),
              (Boxes{"Hinweis|info|ok|Es wurde auf das KDL-Protokoll umgeschaltet, daher wird die Anwendung "
                     "geschlossen"}));
    EXPECT_EQ(rig.uses().back(), set(3016, 0));
    EXPECT_EQ(rig.peer.line.protocol(), sim::Protocol::Kdl);
    EXPECT_FALSE(rig.test.serial.isOpen());
    EXPECT_TRUE(rig.test.host.open.empty());
}

/// What a read without an answer, or with a refusal, has left in the editor is nothing that the device ever
/// held.
TEST(WriteParameters, KeepsWhatWasNotReadFromTheDevice) {
    constexpr double busy = 6;
    constexpr std::array<std::uint16_t, 5> registers = {3013, 3015, 3016, 3018, 3027};
    const std::pair<FaultKind, double> failures[] = {{FaultKind::Silence, 0}, {FaultKind::Exception, busy}};
    for (const auto& [kind, code] : failures) {
        std::vector<sim::LineFault> faults;
        faults.reserve(registers.size());
        for (const std::uint16_t number : registers) {
            faults.push_back({.kind = kind, .amount = code, .reg = number, .times = 1});
        }
        ParameterRig rig(3, std::move(faults));
        rig.store(3013, 1);
        rig.store(3027, 6);
        rig.editor();
        rig.test.desktop.takeBoxes();
        EXPECT_EQ(rig.write(),
                  (Boxes{writeError("Der Parameter Arbeitsweise K1 konnte nicht gesetzt werden."),
                         error("Ungültiger Ansprechwert. Tein = 0...10s."),
                         writeError("Der Parameter Alarmzuordnung Relais 1 konnte nicht gesetzt werden."),
                         error("Eingegebene Adresse ausserhalb des gültigen Bereiches (0, 3...90)"),
                         writeError("Der Parameter Baudrate konnte nicht gesetzt werden.")}))
            << code;
        EXPECT_EQ(rig.stored(3013), 1U);
        EXPECT_EQ(rig.stored(3027), 6U);
        EXPECT_EQ(rig.stored(3016), 4U);

        rig.editor().optR1no.value = false;
        rig.read();
        EXPECT_EQ(rig.write(), Boxes{});
        EXPECT_EQ(rig.stored(3013), 1U);
    }
}

TEST(WriteParameters, HandlesNoEventsAndEndsWhenTheUserWantsIt) {
    ParameterRig rig(3, {{.kind = FaultKind::Silence, .reg = 3013, .from = 2}});
    rig.editor();
    rig.test.desktop.onEvents = [&] {
        EXPECT_EQ(rig.uses().back().number, 3028U) << "no events before the end of the set";
        rig.editor().cmdWritePara.click();
    };
    EXPECT_EQ(rig.write(),
              (Boxes{crcDialog, writeError("Der Parameter Arbeitsweise K1 konnte nicht gesetzt werden.")}));
    EXPECT_EQ(rig.uses().size(), 18U) << "a press meanwhile writes no second time";
    rig.test.desktop.onEvents = nullptr;
    rig.test.desktop.answers = {MessageAnswer::Cancel};
    EXPECT_TRUE(rig.test.endsProgram([&] { rig.editor().cmdWritePara.click(); }));
    EXPECT_EQ(rig.test.desktop.takeBoxes(), (Boxes{crcDialog, farewell}));
    EXPECT_EQ(rig.uses().back().number, 3013U);
}

}  // namespace
}  // namespace vek
