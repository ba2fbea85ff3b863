// Parameter files loaded into the editor. Input: device type, how the device is called, the file.
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
std::string savedFile(TestProgram& test, ParameterControls& controls) {
    test.profileFiles.files.erase(saved);
    test.desktop.files = {saved};
    SaveParameterFile(test.program, controls);
    return test.profileFiles.files[saved];
}

bool load(TestProgram& test, ParameterControls& controls, const char* path) {
    test.desktop.takeBoxes();
    test.desktop.files = {path};
    LoadParameterFile(test.program, controls);
    require(!test.desktop.boxes.empty(), "the user is told");
    return test.desktop.boxes.front().starts_with("Hinweis|");
}

}  // namespace

void fuzz(Input input) {
    constexpr std::array<std::uint8_t, 9> typesWithFile = {1, 2, 3, 4, 5, 7, 8, 9, 10};
    TestProgram test;
    test.program.DeviceType = typesWithFile.at(input.byte() % typesWithFile.size());
    const bool anotherDevice = input.byte() % 4 == 3;
    test.profileFiles.files[loaded] = input.rest();
    test.program.ProfilePath = loaded;
    test.program.DeviceName = GetProfileValue(test.program, "NAME", "ZEPHYRON") + (anotherDevice ? "x" : "");
    ParameterControls controls;
    const std::string before = savedFile(test, controls);
    const bool accepted = load(test, controls, loaded);
    const std::string after = savedFile(test, controls);
    require(accepted != (anotherDevice || test.program.DeviceName.empty()),
            "a file is accepted for its device");
    require(accepted || after == before, "a refused file changes nothing");
}

}  // namespace vek
