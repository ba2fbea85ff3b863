#include "program/windows.h"

#include <gtest/gtest.h>

#include "program/childform.h"
#include "support/testprogram.h"

namespace vek {
namespace {

using Log = std::vector<std::string>;

/// Tells the log what happens to it.
class Recorder : public ChildForm {
  public:
    Recorder(Program& program, Log& log) : ChildForm(program, "recorder"), log_(log) {}
    ~Recorder() override { log_.emplace_back("gone"); }

    Box layout() override { return stretch(); }
    void load() override {
        ChildForm::load();
        if (closesAtOnce) {
            close();
        }
    }
    void unload() override {
        ChildForm::unload();
        log_.emplace_back("unload");
    }

    bool closesAtOnce = false;

  private:
    Log& log_;
};

TEST(Windows, AClosedOneLeavesTheScreenAtOnceAndItsObjectLater) {
    Log log;  // outlives the forms that write to it
    TestProgram test;
    Windows& windows = test.program.windows;
    Recorder& form = windows.open(std::make_unique<Recorder>(test.program, log));
    EXPECT_EQ(windows.find("recorder"), &form);
    EXPECT_FALSE(test.program.shell.commandsAvailable) << "the main window's";
    windows.close(form);
    windows.close(form);
    EXPECT_EQ(windows.find("recorder"), nullptr);
    EXPECT_TRUE(test.program.shell.commandsAvailable);
    EXPECT_EQ(log, Log{"unload"});
    windows.collect();
    EXPECT_EQ(log, (Log{"unload", "gone"}));

    auto next = std::make_unique<Recorder>(test.program, log);
    next->closesAtOnce = true;
    EXPECT_FALSE(windows.isOpen(windows.open(std::move(next))));
    EXPECT_EQ(test.host.log, (Log{"+recorder", "-recorder", "-recorder"})) << "the second was never shown";
}

}  // namespace
}  // namespace vek
