// Parameter files loaded into the editor. Input: device type, how the device is called, the file.
#include <algorithm>
#include <array>

#include "fuzz.h"
#include "parameters/parameterfiles.h"
#include "program/IOatINI.h"
#include "support/testprogram.h"

namespace vek {
namespace {

constexpr const char* loaded = "geladen.GPM";
constexpr const char* saved = "gespeichert.GPM";

/// The editor's content as a new file would hold it.
std::string savedFile(TestProgram& test, const ParameterControls& controls) {
    test.profileFiles.files.erase(saved);
    test.desktop.files = {saved};
    SaveParameterFile(test.program, controls);
    return test.profileFiles.files[saved];
}

/// The box that tells what came of loading.
std::string load(TestProgram& test, ParameterControls& controls, const char* path) {
    test.desktop.takeBoxes();
    test.desktop.files = {path};
    LoadParameterFile(test.program, controls);
    require(test.desktop.boxes.size() <= 1, "one message");
    return test.desktop.boxes.empty() ? "" : test.desktop.boxes.front();
}

/// Whether a file gives such a text back: blanks and quotes around it do not belong to a value, and it stands
/// on one line.
bool survivesAFile(const std::string& text) {
    constexpr std::string_view lost = " \t\"'";
    return text.empty() ||
           (lost.find(text.front()) == std::string_view::npos &&
            lost.find(text.back()) == std::string_view::npos && text.find('\r') == std::string::npos);
}

bool allSurviveAFile(const TestProgram& test, const ParameterControls& c) {
    const std::array texts = {&c.txtRWarnung, &c.txtRAlarm,   &c.txtZWarnung, &c.txtZAlarm,
                              &c.txtUnterSpg, &c.txtUeberSpg, &c.txtAdresse,  &c.txtTein,
                              &c.txtTan,      &c.txtTan1,     &c.txtTan2,     &c.txtTab,
                              &c.txtBattH,    &c.txtBattL,    &c.txtCrossH,   &c.txtCrossL};
    return survivesAFile(test.program.DeviceName) &&
           std::all_of(texts.begin(), texts.end(),
                       [](const TextBox* box) { return survivesAFile(box->text.get()); });
}

template <class... Buttons>
bool atMostOne(const Buttons&... buttons) {
    return (int{buttons.value.get()} + ...) <= 1;
}

void checkGroups(const ParameterControls& c) {
    require(atMostOne(c.optSelfTestOff, c.optSelfTest1h, c.optSelfTest24h) &&
                atMostOne(c.opt50Hz_1uF, c.opt60Hz_10uF, c.opt20uF, c.opt30uF, c.opt40uF, c.opt50uF) &&
                atMostOne(c.optBaud0, c.optBaud1200, c.optBaud2400, c.optBaud4800, c.optBaud9600,
                          c.optBaud19200, c.optBaud38400, c.optBaud57600, c.optBaud115200),
            "one option of a group is set, or none");
}

void run(Input input) {
    constexpr std::array<std::uint8_t, 9> typesWithFile = {1, 2, 3, 4, 5, 7, 8, 9, 10};
    TestProgram test;
    test.program.DeviceType = typesWithFile.at(input.byte() % typesWithFile.size());
    const bool anotherDevice = input.byte() % 4 == 3;
    test.profileFiles.files[loaded] = input.rest();
    test.program.ProfilePath = loaded;
    test.program.DeviceName = GetProfileValue(test.program, "NAME", "ZEPHYRON") + (anotherDevice ? "x" : "");

    ParameterControls controls;
    const std::string before = anotherDevice ? savedFile(test, controls) : "";
    const bool accepted = load(test, controls, loaded).starts_with("Hinweis|");
    require(accepted != anotherDevice, "a file is accepted for its device");
    checkGroups(controls);
    const std::string after = savedFile(test, controls);
    require(accepted || after == before, "a refused file changes nothing");
    if (accepted && allSurviveAFile(test, controls)) {
        ParameterControls others;
        require(load(test, others, saved).starts_with("Hinweis|"), "a file that was saved is accepted");
        require(savedFile(test, others) == after, "loading brings back what was saved");
    }
}

}  // namespace
}  // namespace vek

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    vek::run(vek::Input(data, size));
    return 0;
}
