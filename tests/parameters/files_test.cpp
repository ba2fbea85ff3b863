#include <gtest/gtest.h>

#include <random>
#include <sstream>

#include "devicemodel/devicetypes.h"
#include "editorbench.h"
#include "parameters/parameterfiles.h"
#include "platform/textcodec.h"

namespace vek {
namespace {

constexpr const char* path = "/daten/satz.GPM";
constexpr std::string_view typeNames = "?12345?789X";

Texts press(EditorBench& bench, Button& button) {
    bench.test.desktop.files = {path};
    return bench.click(button);
}

/// Sections with their keys as files.txt has them.
Texts outlineOf(const std::string& file) {
    std::istringstream lines(utf8FromWindows1252(file));
    Texts sections;
    for (std::string line; std::getline(lines, line);) {
        EXPECT_EQ(line.back(), '\r');
        if (line.front() == '[') {
            sections.push_back(line.substr(1, line.size() - 3) + " |");
        } else {
            sections.back() += " " + line.substr(0, line.find('='));
        }
    }
    return sections;
}

/// Takes all it can have, but for its place on the bus.
void fillWithAnything(sim::ParameterSet& device, std::mt19937& random) {
    for (std::uint16_t number = 3001; number <= 3030; ++number) {
        const bool bus = number >= 3015 && number <= 3017;
        for (int attempt = 0; !bus && attempt < 20000; ++attempt) {
            const auto value = static_cast<std::uint16_t>(random() % 5000);
            if (device.accepts(number, value)) {
                device.store(number, value);
                break;
            }
        }
    }
}

TEST(ParameterFile, HoldsTheKeysOfTheTypeAndBringsTheSetBack) {
    ASSERT_EQ(typeNames.size(), highestDeviceType + 1U) << "a type has no letter here and in files.txt";
    std::vector<Texts> expected(typeNames.size());
    for (const TableRow& row : readTable(VEK_TEST_FOLDER "files.txt")) {
        for (std::size_t type = 1; type < typeNames.size(); ++type) {
            if (row.cells.at(0).find(typeNames[type]) != std::string::npos) {
                expected[type].push_back(row.cells.at(1) + " | " + row.cells.at(2));
            }
        }
    }
    std::mt19937 random(1);
    for (int type = 1; type <= highestDeviceType; ++type) {
        EditorBench bench(type, false);
        fillWithAnything(bench.parameters, random);
        bench.parameters.set(sim::Parameter::ImpedanceOn, 1);
        const Texts saved = press(bench, bench.editor().cmd_Para_File_Save);
        if (expected[static_cast<std::size_t>(type)].empty()) {
            EXPECT_EQ(saved, Texts{"Hinweis|info|ok|Für dieses Gerät gibt es keine Parameter-Datei."});
            continue;
        }
        EXPECT_EQ(outlineOf(bench.test.profileFiles.files[path]), expected[static_cast<std::size_t>(type)])
            << type;
        EXPECT_EQ(bench.test.profileFiles.writeCount, 1) << "one replacement for the whole set";
        const sim::ParameterSet before = bench.parameters;
        fillWithAnything(bench.parameters, random);
        bench.read();
        press(bench, bench.editor().cmd_Para_File_open);
        EXPECT_EQ(bench.test.profileFiles.readCount, 1) << "one state of the file for the whole set";
        bench.write();
        for (std::uint16_t number = 3001; number <= 3030; ++number) {
            EXPECT_EQ(bench.parameters.read(number), before.read(number)) << type << " " << number;
        }
    }
}

TEST(ParameterFile, IsRefusedWhenItBelongsToAnotherDevice) {
    const std::string name = "vekQA731-K75-2";
    const std::pair<std::string, std::string> cases[] = {
        {"", ""},
        {"[ZEPHYRON]\r\nNAME=VEKQA731-K75-2\r\n", "VEKQA731-K75-2"},
        {std::string("\0\1\2\xFF\xFE[]==\r\r\n\0", 13), ""},
        {"[ZEPHYRON]\nNAME=anders\n[ZEPHYRON]\nNAME=" + name + "\n", "anders"},
    };
    EditorBench bench(3, false);
    frmMbParameter& editor = bench.editor();
    editor.txtTab.text = "77";
    const std::string refusal = ") ist nicht für das angeschlossenem Gerät (" + name + ") geeignet";
    for (const auto& [content, shownName] : cases) {
        bench.test.profileFiles.files[path] = content;
        EXPECT_EQ(press(bench, editor.cmd_Para_File_open),
                  Texts{std::string("Fehler|stop|ok|Parameter-Datei (").append(shownName).append(refusal)});
        EXPECT_EQ(editor.txtTab.text.get(), "77");
    }
    // A mark, line feeds, other case, most keys missing.
    bench.test.profileFiles.files[path] =
        "\xEF\xBB\xBF[zephyron]\nname = " + name + "\nNAME=x\n[Verz\xF6gerungszeiten]\nTAB=5\nTan";
    EXPECT_EQ(press(bench, editor.cmd_Para_File_open),
              Texts{"Hinweis|info|ok|Geräte-Parameter für vekQA731 aus Parameter-Datei eingelesen."});
    EXPECT_EQ(editor.txtTab.text.get() + editor.txtTan.text.get(), "5");
    EXPECT_TRUE(editor.chkAnkop.unknown && !editor.optBaud9600.value);

    for (const auto& [odd, accepted] : {std::pair("", false), {" 'x y'", true}, {"\tx\"", true}}) {
        bench.test.program.DeviceName = odd;
        press(bench, editor.cmd_Para_File_Save);
        EXPECT_EQ(press(bench, editor.cmd_Para_File_open).front().starts_with("Hinweis"), accepted) << odd;
    }
}

TEST(ParameterFile, IsNamedAfterTheDeviceWhateverThatCallsItself) {
    for (const TableRow& row : readTable(VEK_TEST_FOLDER "filenames.txt")) {
        EXPECT_EQ(parameterFileName(unescaped(row.cells.at(0))), row.cells.at(1)) << row.text;
    }
}

}  // namespace
}  // namespace vek
