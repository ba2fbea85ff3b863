#include <gtest/gtest.h>

#include "parameters/frmMbParameter.h"
#include "support/stories.h"

namespace vek {
namespace {

TEST(ParameterEditor, DoesAsTheStoriesTell) {
    Stories stories;
    const auto pressing = [](const char* button) {
        return [button](Bench& bench, const std::string& file) {
            bench.test.desktop.files = {file.empty() ? std::nullopt : std::optional(file)};
            bench.press(button);
        };
    };
    stories.operations["open"] = [](Bench& bench, const std::string& /*operand*/) {
        bench.test.open<LastWindow>();
        bench.test.open<frmMbParameter>();
    };
    stories.operations["read"] = pressing("cmdReadPara");
    stories.operations["write"] = pressing("cmdWritePara");
    stories.operations["load"] = pressing("cmd_Para_File_open");
    stories.operations["save"] = pressing("cmd_Para_File_Save");
    stories.operations["taken"] = [](Bench& bench, const std::string& type) {
        bench.test.program.DeviceType = static_cast<std::uint8_t>(std::stoi(type));
    };
    stories.tell(VEK_TEST_FOLDER "stories.txt");
}

}  // namespace
}  // namespace vek
