#include <gtest/gtest.h>

#include <initializer_list>

#include "parameterrig.h"

namespace vek {
namespace {

using Texts = std::vector<std::string>;

TEST(Editor, NamesTheRangesOfTheType) {
    struct Case {
        int type;
        Texts captions;
    };
    const Case cases[] = {
        {1,
         {"Vorwarnung [2...990 k]", "Alarm          [1...980 k]", "Unterspannung    [10...499 V]",
          "Überspannung     [11...500 V]", "Vorwarnung [11...500 k]", "Alarm          [12...490 k]"}},
        {4,
         {"Vorwarnung [2...500 k]", "Alarm          [1...490 k]", "Unterspannung  [30...1140 V]",
          "Überspannung   [31...1150 V]", "Vorwarnung", "Alarm"}},
        {7,
         {"Vorwarnung [11...500 k]", "Alarm          [10...490 k]", "Unterspannung  [30...1090 V]",
          "Überspannung   [31...1100 V]", "Vorwarnung", "Alarm"}},
        {8,
         {"Vorwarnung [2...100 k]", "Alarm          [1...95 k]", "Unterspannung  [8...143 V]",
          "Überspannung   [9...144 V]", "Vorwarnung", "Alarm"}},
        {9,
         {"Vorwarnung [11...5000 k]", "Alarm          [10...4950 k]", "Unterspannung", "Überspannung",
          "Vorwarnung", "Alarm"}},
        {10,
         {"Vorwarnung [6...200 k]", "Alarm          [5...195 k]", "Unterspannung  [10...499 V]",
          "Überspannung   [11...500 V]", "Vorwarnung", "Alarm"}},
    };
    for (const Case& c : cases) {
        ParameterRig rig(c.type);
        frmMbParameter& editor = rig.editor();
        EXPECT_EQ((Texts{editor.lblRWarnung.caption, editor.lblRAlarm.caption, editor.chkUnterspg.caption,
                         editor.chkUeberSpg.caption, editor.lblZWarnung.caption, editor.lblZAlarm.caption}),
                  c.captions)
            << c.type;
    }
    ParameterRig unknown(1);
    unknown.test.program.DeviceType = 11;
    EXPECT_EQ(unknown.editor().lblRAlarm.caption.get(), "Alarm          []");
    EXPECT_EQ(unknown.editor().chkUeberSpg.caption.get(), "Überspannung   []");
}

TEST(Editor, NamesTheAlarmsOfTheType) {
    struct Case {
        int type;
        const char* first[2];
        const char* from6[6];
    };
    const Case cases[] = {
        {2,
         {"Gerätefehler E.xx", "Gerätefehler E.xx"},
         {"Voralarm Ze", "Alarm Ze", "Alarm Unterspannung", "Alarm Überspannung", "Selbsttest",
          "Gerätestart mit Alarm"}},
        {10,
         {"Geräefehler E.xx", "Gerätefehler E.xx"},
         {"Alarm Unterspannung", "Alarm Überspannung", "Selbsttest", "Gerätestart mit Alarm", "-", "-"}},
        {5,
         {"Geräefehler E.xx", "Gerätefehler E.xx"},
         {"Alarm Unterspannung", "Alarm Überspannung", "Selbsttest", "-", "-", "-"}},
        {9,
         {"Geräefehler E.xx", "Gerätefehler E.xx"},
         {"Alarm Unterspannung", "Alarm Überspannung", "Batteriespannung OK", "Selbsttest",
          "Gerätestart mit Alarm", "-"}},
    };
    for (const Case& c : cases) {
        ParameterRig rig(c.type);
        frmMbParameter& editor = rig.editor();
        EXPECT_EQ(editor.chkR1_Bit[1].caption.get(), c.first[0]);
        EXPECT_EQ(editor.chkR2_Bit[1].caption.get(), c.first[1]);
        EXPECT_EQ(editor.chkR1_Bit[5].caption.get(), "Alarm Re an L2/-");
        for (std::size_t index = 0; index < std::size(c.from6); ++index) {
            const CheckBox& box = editor.chkR2_Bit[index + 6];
            EXPECT_EQ(box.caption.get(), c.from6[index]) << c.type << " " << box.name;
            EXPECT_EQ(box.enabled.get(), box.caption.get() != "-") << c.type << " " << box.name;
        }
        EXPECT_EQ(editor.chkR1_Bit[9].caption.get() == "Selbstest", c.type == 9);
    }
    EXPECT_EQ(ParameterRig(3).editor().chkR2_Bit[11].name, "chkR2_Bit_11");
    EXPECT_EQ(ParameterRig(6).editor().chkR1_Bit[7].caption.get(), "Bit 7");
}

/// The frames that a type uses, of those that not all types use.
TEST(Editor, EnablesWhatTheTypeHas) {
    struct Case {
        int type;
        std::string frames;
        std::string delays;  ///< the boxes that are visible; "-" behind one that is disabled
    };
    const Case cases[] = {
        {1, "Frame4 Frame5 Frame11 Frame12 Frame13 ", "txtTan txtTan1- "},
        {2, "Frame4 Frame5 Frame11 Frame12 Frame13 ", "txtTan txtTan1- "},
        {3, "Frame5 Frame13 ", "txtTan txtTan2- "},
        {5, "Frame5 Frame13 ", "txtTan txtTan1- "},
        {6, "Frame5 Frame13 ", "txtTan txtTan2- "},
        {8, "Frame5 Frame12 ", "txtTan txtTan2- "},
        {9, "Frame13 Frame19 Frame20 Frame21 ", "txtTan1 txtTan2 "},
        {10, "Frame5 Frame13 Frame22 ", "txtTan txtTan2- "},
    };
    for (const Case& c : cases) {
        ParameterRig rig(c.type);
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
        EXPECT_EQ(frames, c.frames) << c.type;
        EXPECT_EQ(delays, c.delays) << c.type;
        EXPECT_EQ(editor.opt40uF.visible, c.type == 8);
        EXPECT_EQ(editor.chkRAlarm.visible, c.type <= 2);
        EXPECT_EQ(editor.Frame12.caption.get(),
                  c.type <= 2 ? "Netzfrequenz für Z-Messung" : "Netzableitkapazität");
        EXPECT_EQ(editor.opt60Hz_10uF.caption.get(), c.type == 8 ? "10 µF" : "60 Hz");
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
