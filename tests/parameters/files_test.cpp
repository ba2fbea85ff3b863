#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

#include "parameterrig.h"
#include "parameters/parameterfiles.h"
#include "platform/textcodec.h"

namespace vek {
namespace {

constexpr const char* path = "/daten/satz.GPM";

/// Types with their models and the number of keys in their files.
const std::tuple<int, std::string, int> models[] = {
    {1, "vekQB731", 62}, {2, "vekQCC731", 62},   {3, "vekQA731", 55},
    {4, "vekQD731", 55}, {5, "vekQCC731QF", 54}, {7, "vekQF731", 55},
    {8, "vekQG731", 60}, {9, "vekQJK731", 61},   {10, "vekQLN729", 57}};

class FileRig : public ParameterRig {
  public:
    using ParameterRig::ParameterRig;

    std::string& file(const std::string& name = path) { return test.profileFiles.files[name]; }

    Boxes save(std::optional<std::string> name = path) {
        editor();
        test.desktop.files = {std::move(name)};
        editor().cmd_Para_File_Save.click();
        return test.desktop.takeBoxes();
    }

    Boxes load(std::optional<std::string> name = path) {
        editor();
        test.desktop.files = {std::move(name)};
        editor().cmd_Para_File_open.click();
        return test.desktop.takeBoxes();
    }

    /// Replaces one line of the file.
    void edit(const std::string& line, const std::string& replacement) {
        const std::size_t at = file().find(line + "\r\n");
        ASSERT_NE(at, std::string::npos) << line;
        file().replace(at, line.size(), replacement);
    }

    std::string refusal(const std::string& name) {
        return error("Parameter-Datei (" + name + ") ist nicht für das angeschlossenem Gerät (" +
                     test.program.DeviceName + ") geeignet");
    }
};

/// Sections with their keys: "[RELAIS1] NO NC".
std::string outline(const std::string& file) {
    std::istringstream lines(utf8FromWindows1252(file));
    std::string result;
    for (std::string line; std::getline(lines, line);) {
        line.erase(line.find_last_not_of('\r') + 1);
        result += line.starts_with('[') ? (result.empty() ? "" : "\n") + line
                                        : " " + line.substr(0, line.find('='));
    }
    return result;
}

TEST(ParameterFile, HoldsTheKeysOfTheTypeInTheirOrder) {
    for (const auto& [type, model, keys] : models) {
        FileRig rig(type);
        EXPECT_EQ(rig.save(), Boxes{"Hinweis|info|ok|Geräte-Parameter für " + model +
                                    " unter /daten/satz.GPM gespeichert."});
        EXPECT_EQ(std::ranges::count(rig.file(), '='), keys + 1) << type;
        EXPECT_EQ(rig.test.program.ProfilePath, path);
        EXPECT_EQ(rig.test.profileFiles.writeCount, 1) << "one replacement for the whole set";
        EXPECT_EQ(rig.load(), Boxes{"Hinweis|info|ok|Geräte-Parameter für " + model +
                                    " aus Parameter-Datei eingelesen."});
        EXPECT_EQ(rig.test.profileFiles.readCount, 1) << "one state of the file for the whole set";
    }
    FileRig first(1);
    first.save();
    const std::string alarms =
        " GERAETEFEHLER VORALARM_L1/+ VORALARM_L2/- ALARM_L1/+ ALARM_L2/- VORALARM_Z ALARM_Z "
        "ALARM_UNTERSPANNUNG ALARM_UEBERSPANNUNG SELBSTTEST GERAETESTART_MIT_ALARM\n";
    EXPECT_EQ(outline(first.file()),
              "[ZEPHYRON] NAME\n[NETZANSCHLUSS_UEBERWACHUNG] WERT\n[START_CAL_TEST] WERT\n"
              "[FEHLERSPEICHER] WERT\n[STOP_MODUS] WERT\n[SEBSTTEST_INTERVALL] OFF 1H 24H\n"
              "[IMPEDANZ_MESSUNG] WERT\n[FREQUENZ] 50Hz 60Hz\n[RELAIS1] NO NC\n[RELAIS2] NO NC\n"
              "[ALARM_RELAIS1]" +
                  alarms + "[ALARM_RELAIS2]" + alarms +
                  "[BUS_ADRESSE] WERT\n"
                  "[BAUDRATE] KDL 1200_B 2400_B 4800_B 9600_B 19200_B 38400_B 57600_B 115200_B\n"
                  "[PARITÄT] NO ODD EVEN\n"
                  "[ANSPRECHWERT_RISIO] VORWARNUNG_ON_OFF VORWARNUNG ALARM_ON_OFF ALARM\n"
                  "[ANSPRECHWERTE_IMPEDANZ] VORWARNUNG ALARM\n"
                  "[ANSPRECHWERTE_SPANNUNG] UNTERSPANNUNG_ON_OFF UNTERSPANNUNG ÜBERSPANNUNG_ON_OFF "
                  "ÜBERSPANNUNG\n[VERZÖGERUNGSZEITEN] Tein Tan Tab");
    FileRig battery(9);
    battery.save();
    const std::string text = outline(battery.file());
    EXPECT_NE(text.find("[ALARM_RELAIS2] GERAETEFEHLER VORALARM_L1/+ VORALARM_L2/- ALARM_L1/+ ALARM_L2/- "
                        "ALARM_UNTERSPANNUNG ALARM_UEBERSPANNUNG BATTERIESPANNUNG_OK SELBSTTEST "
                        "GERAETESTART_MIT_ALARM RES11\n"),
              std::string::npos);
    EXPECT_TRUE(
        text.ends_with("[ANSPRECHWERT_RISIO] VORWARNUNG ALARM\n[VERZÖGERUNGSZEITEN] Tein Tan1 Tan2 "
                       "Tab\n[BATTERIESOLLWERTE] UBattH UBattL\n[CROSSFAULTWERTE] UCrossH UCrossL\n"
                       "[MESSPULS_DAUER] AUTO_08s AUTO_2s 08s 2s 8s"));
}

TEST(ParameterFile, BringsBackWhatWasSaved) {
    FileRig rig(1);
    rig.store({{3022, 0}});
    frmMbParameter& editor = rig.editor();
    editor.txtRWarnung.text = "1,5 k";
    editor.opt60Hz_10uF.value = true;
    editor.chkR2_Bit[11].value = true;
    rig.save();
    editor.chkZe.value = true;
    editor.chkZe.click();
    editor.txtZWarnung.text = "7";
    editor.txtRWarnung.text = "8";
    editor.opt50Hz_1uF.value = true;
    editor.chkR2_Bit[11].value = false;
    rig.load();
    EXPECT_FALSE(editor.chkZe.value || editor.Frame4.enabled || editor.chkRWarnung.visible);
    EXPECT_EQ(editor.txtZWarnung.text.get(), "---");
    EXPECT_EQ(editor.txtRWarnung.text.get(), "1,5 k");
    EXPECT_TRUE(editor.opt60Hz_10uF.value && editor.chkR2_Bit[11].value);
    EXPECT_FALSE(editor.opt50Hz_1uF.value);
}

TEST(ParameterFile, OptionsAndFlagsThatCannotBeReadStayAsTheyAre) {
    // What stands in the place of an option that is set and of a flag that is set.
    const std::tuple<std::string, bool, bool> cases[] = {
        {"tRUE", true, false}, {"-1", true, true}, {"0.4", true, false}, {"FALSE", false, false},
        {"", true, false},     {"1x", true, true}, {"0 ", false, false}, {"99999999999", true, true},
    };
    for (const auto& [value, option, flag] : cases) {
        FileRig rig(3);
        rig.editor().chkMemory.value = true;
        rig.save();
        rig.edit("EVEN=True", "EVEN=" + value);
        rig.edit("[FEHLERSPEICHER]\r\nWERT=1", "[FEHLERSPEICHER]\r\nWERT=" + value);
        rig.load();
        EXPECT_EQ(rig.editor().optEven.value, option) << value;
        EXPECT_EQ(rig.editor().chkMemory.value, flag) << value;
    }
    FileRig several(3);
    several.save();
    several.edit("NO=False", "NO=True");
    several.edit("ODD=False", "ODD=True");
    several.edit("EVEN=True", "EVEN=False");
    several.load();
    EXPECT_TRUE(several.editor().optOdd.value && !several.editor().optNo.value) << "the last one that is set";
}

TEST(ParameterFile, IsRefusedWhenItBelongsToAnotherDevice) {
    const std::string name = "vekQA731-K75-2";
    const std::pair<std::string, std::string> cases[] = {
        {"", ""},
        {"[ZEPHYRON]\r\nNAME=VEKQA731-K75-2\r\n", "VEKQA731-K75-2"},
        {std::string("\0\1\2\xFF\xFE[]==\r\r\n\0", 13), ""},
        {"[ZEPHYRON]\nNAME=anders\n[ZEPHYRON]\nNAME=" + name + "\n", "anders"},
    };
    for (const auto& [content, shownName] : cases) {
        FileRig rig(3);
        frmMbParameter& editor = rig.editor();
        editor.txtTab.text = "77";
        rig.file() = content;
        EXPECT_EQ(rig.load(), Boxes{rig.refusal(shownName)});
        EXPECT_EQ(editor.txtTab.text.get(), "77");
    }
    FileRig loose(3);
    loose.file() = "\xEF\xBB\xBF[zephyron]\nname = " + name + "\nNAME=x\n[Verz\xF6gerungszeiten]\nTAB=5\nTan";
    EXPECT_EQ(loose.load().front().substr(0, 15), "Hinweis|info|ok") << "mark, line feeds, other case";
    EXPECT_EQ(loose.editor().txtTab.text.get(), "5");
    EXPECT_EQ(loose.editor().txtTan.text.get(), "") << "missing";
    EXPECT_FALSE(loose.editor().chkAnkop.value) << "missing";
    EXPECT_TRUE(loose.editor().optBaud9600.value) << "missing";
}

TEST(ParameterFile, ACancelledDialogMeansTheDevicesOwnFile) {
    FileRig rig(3);
    const std::string own = "vekQA731-K75-2.GPM";
    rig.save(std::nullopt);
    EXPECT_TRUE(rig.test.profileFiles.files.contains(own));
    EXPECT_EQ(rig.test.program.ProfilePath, own);
    rig.editor().txtTab.text = "9";
    rig.load(std::nullopt);
    EXPECT_EQ(rig.editor().txtTab.text.get(), "0");
    Texts dialogs;
    for (const FileDialog& dialog : rig.test.desktop.dialogs) {
        dialogs.push_back(dialog.title + "|" + dialog.fileName + "|" + dialog.filePattern);
    }
    EXPECT_EQ(dialogs, (Texts{"Parameter in Datei speichern|" + own + "|*.GPM",
                              "Parameter-Datei öffnen|*.GPM|*.GPM"}));
}

TEST(ParameterFile, TypesWithoutAFile) {
    FileRig without(6);
    EXPECT_EQ(without.save(), Boxes{});
    EXPECT_EQ(without.test.profileFiles.writeCount, 0);
    without.file() = "[ZEPHYRON]\nNAME=" + without.test.program.DeviceName + "\n";
    EXPECT_EQ(without.load(), Boxes{});
    FileRig unknown(1);
    unknown.editor();
    unknown.test.program.DeviceType = 11;
    EXPECT_EQ(unknown.save(), Boxes{error("Parameter konnten nicht gesichert werden")});
    unknown.file() = "[ZEPHYRON]\nNAME=" + unknown.test.program.DeviceName + "\n";
    EXPECT_EQ(unknown.load(), Boxes{error("Parameter konnten nicht eingelesen werden")});
}

TEST(ParameterFile, IsNamedAfterTheDeviceWhateverThatCallsItself) {
    const std::pair<std::string, std::string> cases[] = {
        {"vekQA731-K75-2", "vekQA731-K75-2.GPM"},
        {"Gerät 7", "Gerät 7.GPM"},
        {"", "_.GPM"},
        {"../../etc/passwd", "______etc_passwd.GPM"},
        {"...", "___.GPM"},
        {"a.", "a_.GPM"},
        {"C:\\temp\\x", "C__temp_x.GPM"},
        {"a*b?c\"d<e>f|g", "a_b_c_d_e_f_g.GPM"},
        {std::string("a\nb\tc\0d\x7F", 8), "a_b_c_d_.GPM"},
        {"a\xC2\x85"
         "b",
         "a_b.GPM"},
        {"a\xFF", "a_.GPM"},
        {"con", "_con.GPM"},
        {"NUL.txt", "_NUL.txt.GPM"},
        {"Lpt1", "_Lpt1.GPM"},
        {"CONSOLE", "CONSOLE.GPM"},
    };
    for (const auto& [name, file] : cases) {
        EXPECT_EQ(parameterFileName(name), file) << name;
    }
}

}  // namespace
}  // namespace vek
