#include <gtest/gtest.h>

#include "kdlrig.h"

namespace vek {
namespace {

TEST(KdlReadParameters, AsksForTheParametersOfTheTypeInTheirOrder) {
    const Commands resistances = {":TRSH? 1", ":TRSH? 2"};
    const Commands voltages = {":TRSH? 4", ":TRSH? 4", ":TRSH? 5", ":TRSH? 5"};
    const Commands relays = {":MEM?", ":REL? 0", ":REL? 1", ":TRSH? 14"};
    const Commands delays = {":TRSH? 9", ":TRSH? 10", ":TRSH? 11"};
    const Commands end = {":TRSH? 6", ":TRSH? 7", ":TRSH? 13"};
    const Commands ordinary = joined({resistances, voltages, relays, {":TRSH? 15"}, delays, end});
    struct Case {
        int type;
        Commands expected;
    };
    const Case cases[] = {
        {1, joined({{":TRSH? 8", ":TRSH? 12", ":TRSH? 3", ":TRSH? 1", ":TRSH? 2"}, ordinary})},
        {3, ordinary},
        {6, joined({resistances, voltages, relays, delays, end})},
        {8, joined({{":TRSH? 3"},
                    resistances,
                    voltages,
                    relays,
                    {":TRSH? 15"},
                    delays,
                    {":TRSH? 6", ":TRSH? 13"}})},
        {9, joined({{":TRSH? 3", ":TRSH? 4", ":TRSH? 5", ":TRSH? 6", ":TRSH? 8"},
                    resistances,
                    relays,
                    {":TRSH? 15"},
                    delays,
                    {":TRSH? 12", ":TRSH? 7", ":TRSH? 13"}})},
        {10, joined({{":TRSH? 8"}, ordinary})},
    };
    for (const Case& test : cases) {
        KdlRig rig(test.type);
        rig.editor();
        EXPECT_EQ(rig.device.takeCommands(), test.expected) << test.type;
        EXPECT_EQ(rig.test.desktop.takeBoxes(), Boxes{}) << test.type;
        EXPECT_FALSE(rig.test.serial.isOpen());
    }
    KdlRig off(2);
    off.measureImpedance("off");
    off.editor();
    EXPECT_EQ(off.device.takeCommands(), joined({{":TRSH? 8"}, ordinary}));
}

TEST(KdlReadParameters, ShowsEachValueInItsControls) {
    KdlRig rig(1);
    rig.measureImpedance("FndHz 600");
    rig.device.answers[":TRSH? 2"] = "off";
    rig.device.answers[":TRSH? 5"] = "Uo/V 0";
    frmMbParameter& editor = rig.editor();
    EXPECT_TRUE(editor.chkZe.value && editor.opt60Hz_10uF.value && editor.Frame4.enabled);
    EXPECT_EQ(editor.txtZWarnung.text.get(), "40");
    EXPECT_EQ(editor.txtZAlarm.text.get(), "30");
    EXPECT_TRUE(editor.chkRWarnung.visible && editor.chkRWarnung.value);
    EXPECT_TRUE(editor.chkRAlarm.visible && !editor.chkRAlarm.value);
    EXPECT_EQ(editor.txtRWarnung.text.get(), "100");
    EXPECT_EQ(editor.txtRAlarm.text.get(), "off");
    EXPECT_TRUE(editor.chkUnterspg.value && !editor.chkUeberSpg.value);
    EXPECT_EQ(editor.txtUnterSpg.text.get(), "80");
    EXPECT_EQ(editor.txtUeberSpg.text.get(), "0");
    EXPECT_TRUE(editor.chkMemory.value && editor.optR1nc.value && editor.optR2no.value);
    EXPECT_EQ(editor.txtAdresse.text.get(), "3");
    EXPECT_TRUE(editor.optBaud0.value && editor.optSelfTest24h.value && editor.chkAnkop.value);
    EXPECT_EQ(textsOf({&editor.txtTein, &editor.txtTan, &editor.txtTab}), (Texts{"1", "2", "3"}));

    rig.measureImpedance("off");
    editor.cmdReadPara.click();
    EXPECT_FALSE(editor.chkZe.value || editor.Frame4.enabled || editor.chkRWarnung.visible);
    EXPECT_EQ(editor.txtZWarnung.text.get(), "off");
    EXPECT_EQ(editor.txtZAlarm.text.get(), "off");

    KdlRig battery(9);
    EXPECT_EQ(battery.editor().txtBattH.text.get(), "250");
    EXPECT_EQ(battery.editor().txtCrossL.text.get(), "24");
    EXPECT_EQ(battery.editor().txtTan1.text.get(), "2");
    EXPECT_TRUE(battery.editor().optAuto_08s.value && battery.editor().optSelfTest24h.value);
}

TEST(KdlReadParameters, TellsAValueThatIsNoneAndReadsTheRest) {
    struct Case {
        int type;
        std::string command;
        Bytes reply;
        std::string message;
    };
    const Case cases[] = {
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
    for (const Case& test : cases) {
        KdlRig rig(test.type);
        rig.editor();
        const std::size_t requests = rig.device.takeCommands().size();
        const bool relay = rig.editor().optR1nc.value;
        rig.device.answers[test.command] = test.reply;
        rig.editor().cmdReadPara.click();
        EXPECT_EQ(rig.test.desktop.takeBoxes(), Boxes{error(test.message)}) << test.command;
        EXPECT_EQ(rig.device.takeCommands().size(), requests) << test.command;
        EXPECT_EQ(rig.editor().optR1nc.value, relay) << "keeps what it showed";
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

TEST(KdlReadParameters, EndsWithTheEditor) {
    KdlRig rig(3);
    frmMbParameter& editor = rig.editor();
    rig.device.takeCommands();
    rig.device.afterRequest(rig.test.desktop, ":MEM?", 1, [&] { editor.closeBoxPressed(); });
    editor.cmdReadPara.click();
    EXPECT_EQ(rig.device.takeCommands().back(), ":MEM?");
    EXPECT_FALSE(rig.test.serial.isOpen());
}

}  // namespace
}  // namespace vek
