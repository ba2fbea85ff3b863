#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

#include "parameterrig.h"

namespace vek {
namespace {

using sim::FaultKind;
TEST(WriteParameters, HoldsEveryNumberAgainstItsRange) {
    using C = ParameterControls;
    // The lowest and the highest good value, bad ones below and above; what the message ends with.
    const std::tuple<int, TextBox C::*, std::uint16_t, const char*, const char*, const char*, const char*,
                     std::string>
        cases[] = {
            {1, &C::txtZWarnung, 3001, "2", "500", "1", "501", ". Zan = 2...500k."},
            {2, &C::txtZAlarm, 3003, "1", "495", "0", "496", ". Zan = 1...495k."},
            {1, &C::txtRWarnung, 3005, "2", "990", "1", "991", ". Ran = 2...990."},
            {2, &C::txtRAlarm, 3007, "1", "980", "0", "981", ". Ran = 1...980."},
            {3, &C::txtRWarnung, 3005, "2", "500", "1.9", "501", ". Ran = 2...500."},
            {4, &C::txtRAlarm, 3007, "1", "490", "-1", "490.1", ". Ran = 1...490."},
            {6, &C::txtRAlarm, 3007, "1", "980", "x", "1e3", ". Ran = 1...980."},
            {7, &C::txtRWarnung, 3005, "11", "500", "10", "501", ". Ran = 11...500."},
            {7, &C::txtRAlarm, 3007, "10", "490", "9", "491", ". Ran = 10...490."},
            {8, &C::txtRWarnung, 3005, "2", "100", "1", "101", ". Ran = 2...100."},
            {8, &C::txtRAlarm, 3007, "1", "95", "", "96", ". Ran = 1...95."},
            {9, &C::txtRWarnung, 3001, "11", "5000", "10", "5001", ". Ran = 11...5000."},
            {9, &C::txtRAlarm, 3003, "10", "4950", "9", "4951", ". Ran = 10...4950."},
            {10, &C::txtRWarnung, 3005, "6", "200", "5", "201", ". Ran = 6...200."},
            {10, &C::txtRAlarm, 3007, "5", "195", "4", "196", ". Ran = 5...195."},
            {1, &C::txtUnterSpg, 3009, "10", "499", "9", "500", ". Unterspg = 10...499."},
            {5, &C::txtUnterSpg, 3009, "30", "1140", "29", "1141", ". Unterspg = 30...1140."},
            {7, &C::txtUnterSpg, 3009, "30", "1090", "29", "1091", ". Unterspg = 30...1090."},
            {8, &C::txtUeberSpg, 3011, "9", "144", "8", "145", ". Ueberspg = 9...144."},
            {4, &C::txtUeberSpg, 3011, "31", "1150", "30", "1151", ". Ueberspg = 31...1150."},
            {10, &C::txtUeberSpg, 3011, "11", "500", "10", "99999999999", ". Ueberspg = 11...500."},
            {9, &C::txtBattH, 3005, "4", "500", "3", "501", ". UBatH = 4...500 V."},
            {9, &C::txtBattL, 3007, "3", "495", "2", "496", ". UBatL = 3...495 V."},
            {9, &C::txtCrossH, 3009, "4", "500", "3", "501", ". UCrossH = 4...500 V."},
            {9, &C::txtCrossL, 3011, "3", "495", "2", "496", ". UCrossL = 3...495 V."},
            {3, &C::txtTein, 3018, "0", "10", "-0.1", "10.1", ". Tein = 0...10s."},
            {3, &C::txtTan, 3019, "0", "99", "-1", "100", " für K1 und K2. Tan1+2 = 0...99s."},
            {9, &C::txtTan1, 3019, "0", "99", "-1", "100", " für K1. Tan1 = 0...99s."},
            {9, &C::txtTan2, 3030, "0", "99", "-1", "100", " für K2. Tan2 = 0...99s."},
            {6, &C::txtTab, 3020, "0", "99", "-5", "100", ". Tab = 0...99s."},
        };
    for (const auto& [type, control, number, lowest, highest, below, above, range] : cases) {
        ParameterRig rig(type);
        TextBox& box = rig.editor().*control;
        for (const char* good : {lowest, highest}) {
            box.text = good;
            EXPECT_EQ(rig.write(), Boxes{}) << range << good;
            EXPECT_EQ(std::to_string(rig.stored(number)), good);
        }
        const std::size_t complete = rig.uses().size() / 2;
        for (const char* bad : {below, above}) {
            const std::size_t before = rig.uses().size();
            box.text = bad;
            EXPECT_EQ(rig.write(), Boxes{error("Ungültiger Ansprechwert" + range)}) << bad;
            EXPECT_EQ(rig.uses().size() - before, complete - 1) << "all the others are written";
            EXPECT_EQ(std::to_string(rig.stored(number)), highest);
        }
    }
    ParameterRig rounding(3);
    for (const auto& [text, value] : std::initializer_list<std::pair<const char*, unsigned>>{
             {"2.5", 2}, {"3.5", 4}, {"1e2", 100}, {" 4 0 ", 40}, {"499.6", 500}, {"12 k\xCE\xA9", 12}}) {
        rounding.editor().txtRWarnung.text = text;
        EXPECT_EQ(rounding.write(), Boxes{}) << text;
        EXPECT_EQ(rounding.stored(3005), value) << text;
    }
}

TEST(WriteParameters, EveryRefusedParameterGetsItsMessage) {
    const std::tuple<int, int, const char*> cases[] = {
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
    for (const auto& [type, number, message] : cases) {
        ParameterRig rig(type, {fault(FaultKind::Refuses, number)});
        EXPECT_EQ(rig.write(), (Boxes{"MODBUS-Fehler|stop|ok|Unzulässige Datenwert", writeError(message)}))
            << number;
        EXPECT_EQ(numbersOf(rig.uses()).back(), "3028") << "the rest is written all the same";
    }
}

TEST(WriteParameters, AChoiceWithoutASelection) {
    const std::pair<int, Boxes> cases[] = {
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
            for (OptionButton* option : frame->options) {
                option->value = false;
            }
        }
        EXPECT_EQ(rig.write(), boxes) << type;
        for (const std::string& number : numbersOf(rig.uses())) {
            EXPECT_EQ(std::string("3013 3014 3021 3023 3029").find(number), std::string::npos) << type;
        }
    }
}

TEST(WriteParameters, SwitchesTheImpedanceMeasurementWithItsThresholds) {
    ParameterRig rig(1);
    rig.store({{3022, 0}, {3003, 600}});
    frmMbParameter& editor = rig.editor();
    const auto expectImpedance = [&](bool on, const char* alarm) {
        EXPECT_EQ(editor.chkZe.value, on);
        EXPECT_TRUE(editor.chkZe.enabled && editor.Frame11.enabled);
        for (const Frame* frame : {&editor.Frame4, &editor.Frame12}) {
            EXPECT_EQ(frame->enabled, on) << frame->name;
        }
        EXPECT_TRUE(editor.chkRWarnung.visible == on && editor.chkRAlarm.visible == on);
        EXPECT_EQ(editor.txtZAlarm.text.get(), alarm);
    };
    expectImpedance(false, "---");
    editor.chkZe.value = true;
    editor.chkZe.click();
    EXPECT_EQ(rig.write(), Boxes{error("Ungültiger Ansprechwert. Zan = 1...495k.")})
        << "what the device held is checked like anything typed";
    expectImpedance(true, "600");
    Texts uses = rig.uses();
    EXPECT_EQ(Texts(uses.begin(), uses.begin() + 7),
              (Texts{"w3022=1", "r3001", "r3003", "w3023=500", "w3001=50", "w3004=1", "w3006=1"}));

    editor.chkZe.value = false;
    editor.chkZe.click();
    EXPECT_EQ(rig.write(), Boxes{});
    expectImpedance(false, "---");
    const std::size_t before = uses.size();
    uses = rig.uses();
    EXPECT_EQ(uses[before], "w3022=0");
    EXPECT_EQ(uses[before + 2], "w3005=100");
    rig.store({{3022, 1}});
    rig.read();
    expectImpedance(true, "600");
}

TEST(WriteParameters, TheAddressMovesDeviceAndProgramTogether) {
    ParameterRig rig(3);
    TextBox& box = rig.editor().txtAdresse;
    for (const char* bad : {"1", "2", "2.9", "91", "-3", "1e3"}) {
        box.text = bad;
        EXPECT_EQ(rig.write(),
                  Boxes{error("Eingegebene Adresse ausserhalb des gültigen Bereiches (0, 3...90)")})
            << bad;
    }
    box.text = "3";
    EXPECT_EQ(rig.write(), Boxes{});
    EXPECT_EQ(std::ranges::count(numbersOf(rig.uses()), "3015"), 0);
    const std::pair<const char*, int> moves[] = {{"90", 90}, {"4 5", 45}, {"1e1", 10}, {"3", 3}};
    for (const auto& [text, address] : moves) {
        const std::string number = std::to_string(address);
        box.text = text;
        EXPECT_EQ(rig.write(), Boxes{}) << text;
        EXPECT_EQ(rig.uses().back(), "w3015=" + number);
        EXPECT_EQ(rig.test.program.DeviceAddress, address);
        EXPECT_EQ(rig.test.program.shell.addressPanel.get(), "ModBus-Geräteadresse = " + number);
        EXPECT_EQ(rig.read(), Boxes{}) << "the device answers there";
    }
    ParameterRig refusing(3, {fault(FaultKind::Refuses, 3015)});
    refusing.editor().txtAdresse.text = "7";
    EXPECT_EQ(refusing.write().back(), writeError("Der Geräte Adresse konnte nicht gesetzt werden."));
    EXPECT_EQ(refusing.test.program.DeviceAddress, 3);
}

std::string busOf(const Program& program) {
    return std::to_string(program.DeviceAddress) + " " + std::to_string(program.BaudRate) +
           program.FrameFormat;
}

TEST(WriteParameters, ParityAndBaudRateMoveDeviceAndProgramTogether) {
    ParameterRig rig(3);
    frmMbParameter& editor = rig.editor();
    editor.optOdd.value = true;
    editor.optBaud19200.value = true;
    EXPECT_EQ(rig.write(), Boxes{});
    const Texts uses = rig.uses();
    EXPECT_EQ(Texts(uses.end() - 2, uses.end()), (Texts{"w3017=1", "w3016=5"}));
    EXPECT_EQ(busOf(rig.test.program), "3 19200,o,8,1");
    EXPECT_EQ(rig.test.program.shell.portPanel.get(), "ModBus-Port = COM3, 19200,o,8,1");
    const auto& openings = rig.test.serial.openings;
    EXPECT_EQ(openings[openings.size() - 2].settings, "9600,o,8,1");
    EXPECT_EQ(openings.back().settings, "19200,o,8,1");
    EXPECT_FALSE(rig.test.serial.isOpen());
    const std::size_t before = openings.size();
    EXPECT_EQ(rig.write(), Boxes{});
    EXPECT_EQ(numbersOf(rig.uses()).back(), "3028") << "settings in force are not written";
    EXPECT_EQ(openings.size(), before + 1);

    ParameterRig mute(3, {fault(FaultKind::Silence, 3016, 0, 2), fault(FaultKind::Silence, 3017, 0, 2)});
    mute.editor().optNo.value = true;
    mute.editor().optBaud1200.value = true;
    mute.test.desktop.takeBoxes();
    EXPECT_EQ(mute.write(), Boxes{}) << "the device may answer at its new setting already";
    EXPECT_EQ(busOf(mute.test.program), "3 1200,n,8,1");
}

/// However the line fails, the program looks for the device where it must still be.
TEST(WriteParameters, ADeviceThatWasNotReachedKeepsTheSettings) {
    const std::function<void(ParameterRig&)> failures[] = {
        [](ParameterRig& rig) { rig.test.serial.openErrors[3] = PortError::NotThere; },
        [](ParameterRig& rig) {  // pulled out at the last register before the settings
            rig.test.serial.onWrite = [&](std::string_view frame) {
                if (frame.substr(2, 2) == std::string_view("\x0B\xD4")) {
                    rig.test.serial.hangUp();
                }
            };
        },
    };
    for (const auto& fail : failures) {
        ParameterRig rig(3);
        frmMbParameter& editor = rig.editor();
        editor.txtAdresse.text = "9";
        editor.optNo.value = true;
        editor.optBaud1200.value = true;
        fail(rig);
        const Boxes boxes = rig.write();
        EXPECT_EQ(Boxes(boxes.end() - 4, boxes.end()),
                  (Boxes{crcDialog, writeError("Der Geräte Adresse konnte nicht gesetzt werden."),
                         writeError("Der Parameter Parität konnte nicht gesetzt werden."),
                         writeError("Der Parameter Baudrate konnte nicht gesetzt werden.")}));
        EXPECT_EQ(busOf(rig.test.program), "3 9600,e,8,1");
    }
}

TEST(WriteParameters, TheSwitchToKdlEndsTheProgram) {
    ParameterRig rig(3);
    rig.editor().optBaud0.value = true;
    EXPECT_TRUE(rig.test.endsProgram([&] { rig.editor().cmdWritePara.click(); }));
    EXPECT_EQ(rig.test.desktop.takeBoxes(),
              (Boxes{"Hinweis|info|ok|Es wurde auf das KDL-Protokoll umgeschaltet, daher wird die Anwendung "
                     "geschlossen"}));
    EXPECT_EQ(rig.uses().back(), "w3016=0");
    EXPECT_EQ(rig.peer.line.protocol(), sim::Protocol::Kdl);
    EXPECT_FALSE(rig.test.serial.isOpen());
    EXPECT_TRUE(rig.test.host.open.empty());
}

/// What a read without an answer, or with a refusal, has left in the editor is nothing that the device ever
/// held.
TEST(WriteParameters, KeepsWhatWasNotReadFromTheDeviceAndSavesNoneOfIt) {
    constexpr double busy = 6;
    const std::pair<FaultKind, double> failures[] = {{FaultKind::Silence, 0}, {FaultKind::Exception, busy}};
    for (const auto& [kind, code] : failures) {
        std::vector<sim::LineFault> faults;
        for (const int number : {3013, 3015, 3016, 3018, 3027}) {
            faults.push_back(fault(kind, number, code, 1, 1));
        }
        ParameterRig rig(3, faults);
        rig.store({{3013, 1}, {3027, 6}});
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

        rig.editor().cmd_Para_File_Save.click();
        EXPECT_EQ(rig.test.desktop.takeBoxes(), Boxes{error("Parameter konnten nicht gesichert werden")});
        EXPECT_TRUE(rig.test.profileFiles.files.empty()) << "a file would make the zeros values";

        rig.editor().optR1no.value = false;
        rig.read();
        EXPECT_EQ(rig.write(), Boxes{});
        EXPECT_EQ(rig.stored(3013), 1U);
        rig.editor().cmd_Para_File_Save.click();
        EXPECT_EQ(rig.test.profileFiles.files.size(), 1U);
    }

    constexpr double noSuchRegister = 2;
    ParameterRig lacking(3, {fault(FaultKind::Exception, 3026, noSuchRegister)});
    lacking.editor().cmd_Para_File_Save.click();
    EXPECT_EQ(lacking.test.profileFiles.files.size(), 1U) << "a device without the parameter has a file, too";
}

TEST(WriteParameters, HandlesNoEventsAndEndsWhenTheUserWantsIt) {
    ParameterRig rig(3, {fault(FaultKind::Silence, 3013, 0, 2)});
    rig.editor();
    rig.test.desktop.onEvents = [&] {
        EXPECT_EQ(numbersOf(rig.uses()).back(), "3028") << "no events before the end of the set";
        rig.editor().cmdWritePara.click();
    };
    EXPECT_EQ(rig.write(),
              (Boxes{crcDialog, writeError("Der Parameter Arbeitsweise K1 konnte nicht gesetzt werden.")}));
    EXPECT_EQ(rig.uses().size(), 18U) << "a press meanwhile writes no second time";
    rig.test.desktop.onEvents = nullptr;
    rig.test.desktop.answers = {MessageAnswer::Cancel};
    EXPECT_TRUE(rig.test.endsProgram([&] { rig.editor().cmdWritePara.click(); }));
    EXPECT_EQ(rig.test.desktop.takeBoxes(), (Boxes{crcDialog, farewell}));
    EXPECT_EQ(numbersOf(rig.uses()).back(), "3013");
}

}  // namespace
}  // namespace vek
