#include <gtest/gtest.h>

#include "kdlrig.h"

namespace vek {
namespace {

TEST(KdlParameters, AreReadAndWrittenInTheOrderOfTheType) {
    const std::string voltages = "1 2 4 4 5 5 ";
    const std::string relays = ":MEM? :REL? 0 :REL? 1 14 ";
    const std::string readEnd = "9 10 11 6 7 13 ";
    const std::string ordinary = voltages + relays + "15 " + readEnd;
    const std::string sets = ":MEMRY 1 :RELNC 0 :RELNO 1 9=1 10=2 11=3 ";
    const std::string written = "1=100 2=50 4=80 5=90 " + sets + "6=24 7=1 13=0 14=3 ";
    const std::tuple<int, std::string, std::string> cases[] = {
        {1, "8 12 3 1 2 " + ordinary, "8=500 12=40 3=30 " + written},
        {3, ordinary, written},
        {6, voltages + relays + readEnd, written},
        {8, "3 " + voltages + relays + "15 9 10 11 6 13 ",
         "3=20 1=100 2=50 4=80 5=90 " + sets + "6=24 13=0 14=3 "},
        {9, "3 4 5 6 8 1 2 " + relays + "15 9 10 11 12 7 13 ",
         "3=250 4=80 5=90 6=24 8=0 1=100 2=50 " + sets + "12=24 7=1 13=0 14=3 "},
        {10, "8 " + ordinary, "8=0 " + written},
    };
    for (const auto& [type, reads, writes] : cases) {
        KdlRig rig(type);
        rig.editor();
        EXPECT_EQ(shortened(rig.device.takeCommands()), reads) << type;
        EXPECT_EQ(rig.test.desktop.takeBoxes(), Boxes{}) << type;
        EXPECT_EQ(rig.write(), Boxes{}) << type;
        EXPECT_EQ(shortened(rig.commands), writes) << type;
        EXPECT_EQ(rig.test.program.shell.addressPanel.get(), "KDL-Geräteadresse = 3");
        EXPECT_FALSE(rig.test.serial.isOpen());
    }
    KdlRig off(2);
    off.measureImpedance("off");
    off.editor();
    EXPECT_EQ(shortened(off.device.takeCommands()), "8 " + ordinary);
    EXPECT_EQ(off.write(), Boxes{});
    EXPECT_EQ(shortened(off.commands), "8=0 " + written);
    EXPECT_FALSE(off.editor().chkRWarnung.value || off.editor().chkRAlarm.value);
    // Only R beside Z can be off: with Z its check boxes appear, and show what the texts say.
    off.editor().check(off.editor().chkZe, true);
    EXPECT_TRUE(off.editor().chkRWarnung.visible && off.editor().chkRWarnung.value &&
                off.editor().chkRAlarm.value);
}

TEST(KdlReadParameters, ShowsEachValueInItsControls) {
    KdlRig rig(1);
    rig.measureImpedance("FndHz 600");
    rig.device.answers[":TRSH? 2"] = "off";
    rig.device.answers[":TRSH? 5"] = "Uo/V 0";
    frmMbParameter& editor = rig.editor();
    EXPECT_EQ(textsOf({&editor.txtZWarnung, &editor.txtZAlarm, &editor.txtRWarnung, &editor.txtRAlarm,
                       &editor.txtUnterSpg, &editor.txtUeberSpg, &editor.txtAdresse, &editor.txtTein,
                       &editor.txtTan, &editor.txtTab}),
              (Texts{"40", "30", "100", "off", "80", "0", "3", "1", "2", "3"}));
    EXPECT_TRUE(editor.chkZe.value && editor.opt60Hz_10uF.value && editor.Frame4.enabled);
    EXPECT_TRUE(editor.chkRWarnung.visible && editor.chkRWarnung.value);
    EXPECT_TRUE(editor.chkRAlarm.visible && !editor.chkRAlarm.value);
    EXPECT_TRUE(editor.chkUnterspg.value && !editor.chkUeberSpg.value);
    EXPECT_TRUE(editor.chkMemory.value && editor.optR1nc.value && editor.optR2no.value);
    EXPECT_TRUE(editor.optBaud0.value && editor.optSelfTest24h.value && editor.chkAnkop.value);

    rig.measureImpedance("off");
    editor.cmdReadPara.click();
    EXPECT_FALSE(editor.chkZe.value || editor.Frame4.enabled || editor.chkRWarnung.visible);
    EXPECT_EQ(textsOf({&editor.txtZWarnung, &editor.txtZAlarm}), (Texts{"off", "off"}));

    KdlRig battery(9);
    EXPECT_EQ(textsOf({&battery.editor().txtBattH, &battery.editor().txtCrossL, &battery.editor().txtTan1}),
              (Texts{"250", "24", "2"}));
    EXPECT_TRUE(battery.editor().optAuto_08s.value && battery.editor().optSelfTest24h.value);
}

TEST(KdlReadParameters, TellsAValueThatIsNoneAndReadsTheRest) {
    const std::tuple<int, const char*, const char*, const char*> cases[] = {
        {1, ":TRSH? 8", "FndHz 550", "Ungültiger Wert für Aktivierung Z-Mode"},
        {8, ":TRSH? 3", "Ce/uF 60", "Ungültiger Wert für Netzableitkapazität"},
        {9, ":TRSH? 8", "dig 5", "Ungültiger Wert für Messpuls-Periodendauer"},
        {10, ":TRSH? 8", "dig 2", "Ungültiger Wert für vekQLN-Mode"},
        {3, ":MEM?", "on 2", "Ungültiger Wert für Fehlerspeicherung"},
        {3, ":REL? 0", "no 7", "Ungültiger Wert für Arbeitsweise Relais 1"},
        {3, ":REL? 1", "no -1", "Ungültiger Wert für Arbeitsweise Relais 2"},
        {3, ":TRSH? 15", "dig 9", "Ungültiger Baudrate"},
        {3, ":TRSH? 6", "T/h 2", "Ungültiger Wert für Selbsttest-Intervall"},
        {9, ":TRSH? 12", "T/h 23", "Ungültiger Wert für Selbsttest-Intervall"},
        {3, ":TRSH? 7", "dig 0.5", "Ungültiger Wert für Aktivierung Netzankopplungsüberwachung"},
        {3, ":TRSH? 13", "dig 3", "Ungültiger Wert für Aktivierung Start mit Cal und Test"},
    };
    for (const auto& [type, command, reply, message] : cases) {
        KdlRig rig(type);
        rig.editor();
        const std::size_t requests = rig.device.takeCommands().size();
        rig.device.answers[command] = reply;
        rig.editor().cmdReadPara.click();
        EXPECT_EQ(rig.test.desktop.takeBoxes(), Boxes{error(message)}) << command;
        EXPECT_EQ(rig.device.takeCommands().size(), requests) << command;
        EXPECT_TRUE(rig.editor().optR1nc.value) << "keeps what it showed";
    }
}

/// A request without a reply is an empty box, or the choice that 0 selects; all others are still asked for.
TEST(KdlReadParameters, GoesOnBehindRequestsWithoutAReply) {
    KdlRig rig(3);
    rig.device.answers.clear();
    rig.device.answers[":TRSH? 11"] = "Tvz/s 9";
    frmMbParameter& editor = rig.editor();
    EXPECT_EQ(rig.test.desktop.takeBoxes(), Boxes{});
    EXPECT_EQ(textsOf({&editor.txtRAlarm, &editor.txtUnterSpg, &editor.txtAdresse}), (Texts{"", "", ""}));
    EXPECT_EQ(editor.txtTab.text.get(), "9");
    EXPECT_FALSE(editor.chkUnterspg.value || editor.chkMemory.value);
    EXPECT_TRUE(editor.optR1no.value && editor.optBaud0.value && editor.optSelfTestOff.value);
    EXPECT_TRUE(editor.cmdReadPara.enabled && editor.cmdWritePara.enabled);
}

}  // namespace
}  // namespace vek
