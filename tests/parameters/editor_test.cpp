#include <gtest/gtest.h>

#include <initializer_list>

#include "parameterrig.h"

namespace vek {
namespace {

/// The captions of some controls as one text: "Vorwarnung|Alarm".
template <class... Named>
std::string captionsOf(const Named&... controls) {
    std::string text = ((controls.caption.get() + "|") + ...);
    return text.substr(0, text.size() - 1);
}

TEST(Editor, NamesTheRangesOfTheType) {
    const std::pair<int, const char*> cases[] = {
        {1,
         "Vorwarnung [2...990 k]|Alarm          [1...980 k]|Unterspannung    [10...499 V]|"
         "Überspannung     [11...500 V]|Vorwarnung [11...500 k]|Alarm          [12...490 k]"},
        {4,
         "Vorwarnung [2...500 k]|Alarm          [1...490 k]|Unterspannung  [30...1140 V]|"
         "Überspannung   [31...1150 V]|Vorwarnung|Alarm"},
        {7,
         "Vorwarnung [11...500 k]|Alarm          [10...490 k]|Unterspannung  [30...1090 V]|"
         "Überspannung   [31...1100 V]|Vorwarnung|Alarm"},
        {8,
         "Vorwarnung [2...100 k]|Alarm          [1...95 k]|Unterspannung  [8...143 V]|"
         "Überspannung   [9...144 V]|Vorwarnung|Alarm"},
        {9,
         "Vorwarnung [11...5000 k]|Alarm          [10...4950 k]|Unterspannung|Überspannung|"
         "Vorwarnung|Alarm"},
        {10,
         "Vorwarnung [6...200 k]|Alarm          [5...195 k]|Unterspannung  [10...499 V]|"
         "Überspannung   [11...500 V]|Vorwarnung|Alarm"},
        {11, "Vorwarnung []|Alarm          []|Unterspannung  []|Überspannung   []|Vorwarnung|Alarm"},
    };
    for (const auto& [type, captions] : cases) {
        ParameterRig rig(type == 11 ? 1 : type);
        rig.test.program.DeviceType = static_cast<std::uint8_t>(type);
        const frmMbParameter& editor = rig.editor();
        EXPECT_EQ(captionsOf(editor.lblRWarnung, editor.lblRAlarm, editor.chkUnterspg, editor.chkUeberSpg,
                             editor.lblZWarnung, editor.lblZAlarm),
                  captions)
            << type;
    }
}

TEST(Editor, NamesTheAlarmsOfTheType) {
    const std::tuple<int, const char*, const char*> cases[] = {
        {2, "Gerätefehler E.xx|Gerätefehler E.xx",
         "Voralarm Ze|Alarm Ze|Alarm Unterspannung|Alarm Überspannung|Selbsttest|Gerätestart mit Alarm"},
        {10, "Geräefehler E.xx|Gerätefehler E.xx",
         "Alarm Unterspannung|Alarm Überspannung|Selbsttest|Gerätestart mit Alarm|-|-"},
        {5, "Geräefehler E.xx|Gerätefehler E.xx", "Alarm Unterspannung|Alarm Überspannung|Selbsttest|-|-|-"},
        {9, "Geräefehler E.xx|Gerätefehler E.xx",
         "Alarm Unterspannung|Alarm Überspannung|Batteriespannung OK|Selbsttest|Gerätestart mit Alarm|-"},
    };
    for (const auto& [type, first, fromSix] : cases) {
        ParameterRig rig(type);
        frmMbParameter& editor = rig.editor();
        AlarmBoxes& k2 = editor.chkR2_Bit;
        EXPECT_EQ(captionsOf(editor.chkR1_Bit[1], k2[1]), first) << type;
        EXPECT_EQ(captionsOf(k2[6], k2[7], k2[8], k2[9], k2[10], k2[11]), fromSix) << type;
        EXPECT_EQ(editor.chkR1_Bit[5].caption.get(), "Alarm Re an L2/-");
        for (const CheckBox& box : k2) {
            EXPECT_EQ(box.enabled.get(), box.caption.get() != "-") << type << " " << box.name;
        }
        EXPECT_EQ(editor.chkR1_Bit[9].caption.get() == "Selbstest", type == 9);
    }
    EXPECT_EQ(ParameterRig(6).editor().chkR1_Bit[7].caption.get(), "Bit 7");
}

/// The frames that a type uses, of those that not all types use.
TEST(Editor, EnablesWhatTheTypeHas) {
    // The boxes of the delays that are visible; "-" behind one that is disabled.
    const std::tuple<int, const char*, const char*> cases[] = {
        {1, "Frame4 Frame5 Frame11 Frame12 Frame13 ", "txtTan txtTan1- "},
        {3, "Frame5 Frame13 ", "txtTan txtTan2- "},
        {5, "Frame5 Frame13 ", "txtTan txtTan1- "},
        {6, "Frame5 Frame13 ", "txtTan txtTan2- "},
        {8, "Frame5 Frame12 ", "txtTan txtTan2- "},
        {9, "Frame13 Frame19 Frame20 Frame21 ", "txtTan1 txtTan2 "},
        {10, "Frame5 Frame13 Frame22 ", "txtTan txtTan2- "},
    };
    for (const auto& [type, usedFrames, usedDelays] : cases) {
        ParameterRig rig(type);
        frmMbParameter& editor = rig.editor();
        std::string frames;
        for (const Frame* frame :
             {&editor.Frame4, &editor.Frame5, &editor.Frame11, &editor.Frame12, &editor.Frame13,
              &editor.Frame19, &editor.Frame20, &editor.Frame21, &editor.Frame22}) {
            frames += frame->enabled ? frame->name + " " : "";
        }
        std::string delays;
        for (const TextBox* box : {&editor.txtTan, &editor.txtTan1, &editor.txtTan2}) {
            delays += box->visible ? box->name + (box->enabled ? " " : "- ") : "";
        }
        EXPECT_EQ(frames, usedFrames) << type;
        EXPECT_EQ(delays, usedDelays) << type;
        EXPECT_EQ(editor.opt40uF.visible, type == 8);
        EXPECT_EQ(editor.chkRAlarm.visible, type <= 2);
        EXPECT_EQ(editor.Frame12.caption.get(),
                  type <= 2 ? "Netzfrequenz für Z-Messung" : "Netzableitkapazität");
        EXPECT_EQ(editor.opt60Hz_10uF.caption.get(), type == 8 ? "10 µF" : "60 Hz");
    }
}

TEST(Editor, OverKdlShowsWhatThatBusReaches) {
    ParameterRig rig(9);
    rig.test.program.FrameFormat = ",e,7,1";
    frmMbParameter& editor = rig.editor();
    for (const Control* control : std::initializer_list<const Control*>{
             &editor.Frame16, &editor.Frame17, &editor.Frame14, &editor.chkCalTest, &editor.Frame9,
             &editor.optNo, &editor.optOdd, &editor.optEven, &editor.chkR1_Bit[1], &editor.chkR2_Bit[11]}) {
        EXPECT_FALSE(control->enabled) << control->name;
    }
    EXPECT_TRUE(editor.Frame19.enabled && editor.Frame8.enabled);
    EXPECT_EQ(editor.lblRWarnung.caption.get(), "Vorwarnung [11...5000 k]");
}

TEST(Editor, HoldsTheMainWindowsCommandsWhileItIsOpen) {
    ParameterRig rig(3);
    rig.test.desktop.onEvents = [&] { EXPECT_FALSE(rig.test.program.shell.commandsAvailable); };
    frmMbParameter& editor = rig.editor();
    EXPECT_EQ(rig.test.host.log, (Texts{"+lastWindow", "+frmMbParameter"}));
    editor.closeBoxPressed();
    EXPECT_TRUE(rig.test.program.shell.commandsAvailable);
    EXPECT_EQ(rig.test.host.log.back(), "-frmMbParameter");
}

}  // namespace
}  // namespace vek
