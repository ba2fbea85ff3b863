#include "support/stories.h"

#include <gtest/gtest.h>

#include <regex>
#include <sstream>

#include "app/frmModBus.h"

namespace vek {
namespace {

const std::string settingsFile = "/daten/vekXX731_Monitor.ini";

void begin(Bench& bench, const std::string& content) {
    bench.test.program.DeviceType = 0;
    bench.test.program.DeviceName = "";
    if (!content.empty()) {
        bench.test.profileFiles.files[settingsFile] =
            std::regex_replace(content, std::regex(R"(\\n)"), "\r\n");
    }
    bench.test.open<frmModBus>();
}

/// What of the main window's commands can be used.
std::string toolsOf(Bench& bench) {
    const auto& window = dynamic_cast<frmModBus&>(*bench.test.program.windows.find("frmModBus"));
    const bool all[] = {window.Toolbar1.visible, window.mnuStart.enabled, window.mnuEinstellungen.enabled,
                        window.mnuInfo.enabled};
    const auto used = std::count(std::begin(all), std::end(all), true);
    return used == 4 ? "on" : used == 0 ? "off" : "some";
}

TEST(Program, DoesAsTheStoriesTell) {
    Stories stories;
    using Operand = const std::string&;
    stories.operations["begin"] = begin;
    stories.operations["start"] = [](Bench& bench, Operand) {
        const Program& program = bench.test.program;
        begin(bench, "[RS485]\\nCOM= 3\\nBAUD= 9600\\nFRAME=" + program.FrameFormat + "\\n");
    };
    stories.operations["item"] = [](Bench& bench, Operand name) { bench.press(name); };
    stories.operations["key"] = [](Bench& bench, Operand key) {
        dynamic_cast<ToolBar&>(bench.control("Toolbar1")).buttonClick(key);
    };
    stories.operations["known"] = [](Bench& bench, Operand operand) {
        std::istringstream words(operand);
        int address = 0;
        int type = 0;
        Program& program = bench.test.program;
        program.KdlAddressPrefix = blankKdlPrefix;
        words >> address >> type >> program.KdlAddressPrefix;
        program.DeviceAddress = static_cast<std::uint8_t>(address);
        program.DeviceType = static_cast<std::uint8_t>(type);
    };
    stories.operations["folder"] = [](Bench& bench, Operand result) {
        bench.test.folders.answer = {result == "invalid"   ? FolderResult::InvalidArgument
                                     : result == "missing" ? FolderResult::NotFound
                                                           : FolderResult::Failed,
                                     ""};
    };
    stories.operations["readonly"] = [](Bench& bench, Operand) {
        bench.test.profileFiles.refuseWrites = true;
    };
    stories.operations["nofile"] = [](Bench& bench, Operand) { bench.test.program.ProfilePath = ""; };
    stories.states["settings"] = [](Bench& bench) {
        return std::regex_replace(bench.test.profileFiles.files[settingsFile], std::regex("\r\n"), "\\n");
    };
    stories.states["written"] = [](Bench& bench) {
        return std::to_string(bench.test.profileFiles.writeCount);
    };
    stories.states["tools"] = toolsOf;
    stories.states["terminal"] = [](Bench& bench) {
        return bench.test.program.windows.find("frmModBusTerminal")->visible ? "on" : "off";
    };
    stories.tell(VEK_TEST_FOLDER "stories.txt");
}

}  // namespace
}  // namespace vek
