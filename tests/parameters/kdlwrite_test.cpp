#include <gtest/gtest.h>

#include <algorithm>

#include "kdlrig.h"
#include "parameters/parameterfiles.h"

namespace vek {
namespace {

/// What goes out under the number of a box, and the message instead.
TEST(KdlWriteParameters, HoldsEveryBoxAgainstItsLimits) {
    using E = frmMbParameter;
    constexpr const char* ran = "Ungültiger Ansprechwert => Ran";
    constexpr const char* address = "Eingegebene Adresse ausserhalb des gültigen Bereiches (0, 3...90)";
    const std::tuple<int, TextBox E::*, const char*, int, const char*, const char*> cases[] = {
        {1, &E::txtRWarnung, "991", 1, "-", ran},
        {3, &E::txtRWarnung, "2.5", 1, "2.5", nullptr},  // goes out as it is typed
        {3, &E::txtRWarnung, " 100 k", 1, " 100 k", nullptr},
        {3, &E::txtRWarnung, "1 00", 1, "-", ran},  // the device could read it in another way
        {3, &E::txtTein, "1e1", 9, "-", "Ungültiger Ansprechwert. Tein = 0...10s."},
        {3, &E::txtRAlarm, "off", 2, "0", nullptr},
        {1, &E::txtZWarnung, "1", 12, "-", "Ungültiger Ansprechwert. Zan = 2...500k."},
        {7, &E::txtUnterSpg, "off", 4, "0", nullptr},
        {7, &E::txtUnterSpg, "", 4, "-", "Ungültiger Ansprechwert. Unterspg = 30...1090."},
        {9, &E::txtBattH, "9999", 3, "9999", nullptr},
        {9, &E::txtCrossL, "1&2", 6, "-", "Ungültiger Ansprechwert. UCrossL = 3...495 V."},
        {3, &E::txtTan, "100", 10, "-", "Ungültiger Ansprechwert. Tan1+2 = 0...99s."},
        {9, &E::txtTan1, "-1", 10, "-", "Ungültiger Ansprechwert. Tan1 = 0...99s."},
        {3, &E::txtTab, "5 µs", 11, "-", "Ungültiger Ansprechwert. Tab = 0...99s."},
        {3, &E::txtAdresse, "91", 14, "-", address},
        {3, &E::txtAdresse, "3.5", 14, "-", address},
        {3, &E::txtAdresse, "0003", 14, "-", address},  // longer than the link can take
    };
    for (const auto& [type, box, text, number, written, message] : cases) {
        KdlRig rig(type);
        (rig.editor().*box).text = text;
        EXPECT_EQ(rig.write(), message != nullptr ? Boxes{error(message)} : Boxes{}) << text;
        EXPECT_EQ(rig.written(number), written) << text;
        EXPECT_EQ(rig.written(13), "0") << "the rest is written all the same";
    }
}

/// The text of the box alone goes out: what the check box shows is kept in step with it.
TEST(KdlWriteParameters, ShowsAThresholdThatIsOffAsOff) {
    KdlRig rig(1);
    frmMbParameter& editor = rig.editor();
    editor.check(editor.chkUnterspg, false);
    EXPECT_EQ(editor.txtUnterSpg.text.get(), "off");
    editor.txtUeberSpg.text = "0";
    editor.check(editor.chkRWarnung, false);
    editor.txtRAlarm.text = "0";
    EXPECT_EQ(rig.write(), Boxes{});
    for (const int number : {1, 2, 4, 5}) {
        EXPECT_EQ(rig.written(number), "0") << number;
    }
    EXPECT_EQ(textsOf({&editor.txtRAlarm, &editor.txtUeberSpg}), (Texts{"off", "off"}));
    EXPECT_FALSE(editor.chkRAlarm.value || editor.chkUeberSpg.value);

    editor.check(editor.chkUnterspg, true);
    EXPECT_EQ(editor.txtUnterSpg.text.get(), "");
    editor.txtUeberSpg.text = "abc";
    EXPECT_FALSE(editor.chkUeberSpg.value);
    editor.txtUeberSpg.text = "120";
    EXPECT_TRUE(editor.chkUeberSpg.value) << "what is typed shows at once";
    editor.txtRAlarm.text = "keiner";
    editor.txtRWarnung.text = "991";
    EXPECT_EQ(rig.write(),
              (Boxes{error("Ungültiger Ansprechwert => Ran"), error("Ungültiger Ansprechwert => Ran"),
                     error("Ungültiger Ansprechwert. Unterspg = 10...499.")}));
    EXPECT_EQ(rig.written(1) + rig.written(2) + rig.written(4), "---");
    EXPECT_EQ(rig.written(5), "120");
}

TEST(KdlWriteParameters, TakesSwitchesFromAFileButNotFromACancelledDialog) {
    KdlRig rig(3);
    frmMbParameter& editor = rig.editor();
    editor.check(editor.chkUnterspg, false);
    rig.test.desktop.files = {"/satz.GPM"};
    editor.txtUnterSpg.text = "70";
    editor.chkUnterspg.value = false;
    SaveParameterFile(rig.test.program, editor);
    editor.txtUnterSpg.text = "75";
    editor.txtUeberSpg.text = "120";
    editor.cmd_Para_File_open.click();
    EXPECT_EQ(textsOf({&editor.txtUnterSpg, &editor.txtUeberSpg}), (Texts{"75", "120"}));
    rig.test.desktop.files = {"/satz.GPM"};
    editor.cmd_Para_File_open.click();
    EXPECT_EQ(textsOf({&editor.txtUnterSpg, &editor.txtUeberSpg}), (Texts{"off", "90"}));
}

TEST(KdlWriteParameters, KeepsWhatWasNotReadFromTheDevice) {
    KdlRig rig(3);
    for (const char* lost : {":MEM?", ":TRSH? 6", ":TRSH? 9"}) {
        rig.device.answers.erase(lost);
    }
    rig.device.answers[":TRSH? 7"] = "dig 4";
    EXPECT_EQ(rig.write(),
              (Boxes{writeError("Der Parameter Fehlerspeicher konnte nicht gesetzt werden."),
                     error("Ungültiger Ansprechwert. Tein = 0...10s."),
                     writeError("Der Parameter Selbsttest Intervall OFF konnte nicht gesetzt werden."),
                     writeError("Der Parameter Netzanschlussüberwachung konnte nicht gesetzt werden.")}));
    EXPECT_EQ(rig.written(6) + rig.written(7) + rig.written(9), "---");

    // What the user has chosen and written is no longer unread, also when it is 0 the next time.
    rig.editor().txtTein.text = "1";
    for (const bool on : {true, false}) {
        rig.editor().chkMemory.value = on;
        rig.editor().chkAnkop.value = on;
        (on ? rig.editor().optSelfTest1h : rig.editor().optSelfTestOff).value = true;
        EXPECT_EQ(rig.write(), Boxes{});
        EXPECT_EQ(rig.written(6) + rig.written(7), on ? "11" : "00");
    }
}

TEST(KdlWriteParameters, ReportsWhatTheDeviceDoesNotAcknowledge) {
    KdlRig rig(8);
    rig.refused = {":CAN 1", ":TRSH 50", ":MEMRY 1", ":RELNO 1", ":CAN 14"};
    rig.editor().txtAdresse.text = "17";
    EXPECT_EQ(rig.write(), (Boxes{writeError("Der Ansprechwert R-Vorwarnung konnte nicht gesetzt werden."),
                                  writeError("Der Ansprechwert R-Alarm konnte nicht gesetzt werden."),
                                  writeError("Der Parameter Fehlerspeicher konnte nicht gesetzt werden."),
                                  writeError("Der Parameter Arbeitsweise K2 konnte nicht gesetzt werden."),
                                  writeError("Der Geräte Adresse konnte nicht gesetzt werden.")}));
    EXPECT_EQ(rig.commands[2], ":CAN 1");
    EXPECT_EQ(rig.commands[3], ":CAN 2") << "no value under a number that was not selected";
    EXPECT_EQ(rig.test.program.KdlAddressPrefix, ":;003");
}

TEST(KdlWriteParameters, FollowsTheDeviceToItsNewAddress) {
    KdlRig rig(3);
    rig.editor().txtAdresse.text = " 90";
    EXPECT_EQ(rig.write(), Boxes{});
    EXPECT_EQ(rig.written(14), "90");
    EXPECT_EQ(rig.test.program.KdlAddressPrefix, ":;090");
    EXPECT_EQ(rig.test.program.DeviceAddress, 90);
    EXPECT_EQ(rig.test.program.shell.addressPanel.get(), "KDL-Geräteadresse = 90");

    // A device that says nothing to it shows where it is at the next request.
    for (const bool moves : {true, false}) {
        KdlRig mute(3);
        mute.editor().txtAdresse.text = "17";
        mute.silent = {":TRSH 17"};
        if (!moves) {
            mute.device.onAddress = [](const std::string& prefix) { return prefix != ":;017"; };
        }
        EXPECT_EQ(mute.write(),
                  moves ? Boxes{} : Boxes{writeError("Der Geräte Adresse konnte nicht gesetzt werden.")});
        EXPECT_EQ(mute.test.program.KdlAddressPrefix, moves ? ":;017" : ":;003");
    }
}

TEST(KdlWriteParameters, EndsTheProgramWithTheSwitchToModbus) {
    const auto choose19200 = [](KdlRig& rig) { rig.editor().optBaud19200.value = true; };
    for (const bool acknowledged : {true, false}) {  // a device that has left the bus cannot say so any more
        KdlRig rig(3);
        rig.silent = acknowledged ? Commands{} : Commands{":TRSH 5"};
        choose19200(rig);
        rig.device.takeCommands();
        EXPECT_TRUE(rig.test.endsProgram([&] { rig.editor().cmdWritePara.click(); }));
        EXPECT_TRUE(shortened(rig.device.takeCommands()).ends_with(" 15=5 "));
        EXPECT_EQ(
            rig.test.desktop.takeBoxes(),
            Boxes{"Hinweis|info|ok|Es wurde auf das ModBus-Protokoll mit 19200Baud (Parität = "
                  "E,8,1)umgeschaltet, anschließend wird die Parameter-Eingabe beendet. Es muss "
                  "sichergestellt sein, dass die Parität am ZEPHYRON dementsprechend eingestellt ist!"});
        EXPECT_EQ(rig.test.program.shell.portPanel.get(), "ModBus-Port = COM3, 19200,e,8,1");
        EXPECT_FALSE(rig.test.serial.isOpen());
        EXPECT_TRUE(rig.test.host.open.empty());
    }
    KdlRig same(3);
    same.editor().optBaud9600.value = true;
    EXPECT_EQ(same.write(), Boxes{});
    EXPECT_EQ(same.written(15), "-");

    const Boxes failed{writeError("Der Parameter Baudrate konnte nicht gesetzt werden.")};
    KdlRig pulled(3);
    pulled.silent = {":TRSH 5"};
    choose19200(pulled);
    pulled.device.onCommand = [&, acknowledge = pulled.device.onCommand](const std::string& command) {
        acknowledge(command);
        if (command == ":TRSH 5") {
            pulled.test.serial.hangUp();
        }
    };
    EXPECT_EQ(pulled.write(), failed);

    KdlRig refusing(3);
    refusing.refused = {":TRSH 5"};
    choose19200(refusing);
    EXPECT_EQ(refusing.write(), failed);
    EXPECT_TRUE(refusing.test.program.kdlActive());
}

/// Whoever closes the window or goes on typing meanwhile must not leave half a set behind.
TEST(KdlWriteParameters, FinishesTheSetBeforeItHearsTheUser) {
    KdlRig rig(3);
    frmMbParameter& editor = rig.editor();
    int heard = 0;
    rig.test.desktop.onEvents = [&] {
        ++heard;
        EXPECT_EQ(rig.device.commands.back(), ":TRSH 3");
        editor.txtTab.text = "9";
        editor.cmdWritePara.click();
        editor.closeBoxPressed();
    };
    EXPECT_EQ(rig.write(), Boxes{});
    EXPECT_EQ(heard, 1);
    EXPECT_EQ(rig.written(11), "3");
    EXPECT_EQ(std::count(rig.commands.begin(), rig.commands.end(), ":CAN 14"), 1);
}

}  // namespace
}  // namespace vek
