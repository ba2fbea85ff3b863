#include "program/windows.h"

#include <gtest/gtest.h>

#include "program/childform.h"
#include "support/testprogram.h"

namespace vek {
namespace {

using Log = std::vector<std::string>;

/// Tells the log what happens to it.
class Recorder : public Form {
  public:
    Recorder(Log& itsLog, std::string formName) : Form(std::move(formName), Kind::Child), log_(itsLog) {}
    ~Recorder() override { log_.push_back("~" + name); }

    std::function<void()> loading;

    Box layout() override { return stretch(); }
    void load() override {
        log_.push_back("load " + name);
        if (loading) {
            loading();
        }
    }
    void unload() override { log_.push_back("unload " + name); }
    void closeBoxPressed() override {}

  private:
    Log& log_;
};

class WindowsTest : public testing::Test {
  protected:
    Recorder& open(const char* name) { return windows.open(std::make_unique<Recorder>(log, name)); }

    Log log;
    FakeFormHost host;
    Windows windows{host};
};

TEST_F(WindowsTest, AClosedWindowLeavesTheScreenAtOnceAndItsObjectLater) {
    Recorder& a = open("a");
    open("b");
    EXPECT_EQ(windows.find("a"), &a);
    windows.close(a);
    windows.close(a);
    EXPECT_FALSE(windows.isOpen(a));
    EXPECT_EQ(windows.find("a"), nullptr);
    EXPECT_EQ(a.name, "a") << "still alive";
    EXPECT_EQ(host.log, (Log{"+a", "+b", "-a"}));
    windows.collect();
    EXPECT_EQ(log, (Log{"load a", "load b", "unload a", "~a"}));
}

TEST_F(WindowsTest, AWindowThatClosesItselfWhileItLoadsIsNeverShown) {
    auto form = std::make_unique<Recorder>(log, "a");
    form->loading = [this, opened = form.get()] { windows.close(*opened); };
    Recorder& a = windows.open(std::move(form));
    EXPECT_FALSE(windows.isOpen(a));
    EXPECT_EQ(std::count(host.log.begin(), host.log.end(), "+a"), 0);
}

TEST_F(WindowsTest, AllCloseInReverseOrder) {
    for (const char* name : {"a", "b", "c"}) {
        open(name);
    }
    windows.closeAll();
    EXPECT_EQ(host.log, (Log{"+a", "+b", "+c", "-c", "-b", "-a"}));
    windows.closeAll();
    EXPECT_EQ(log.size(), 6U);
}

class Child final : public ChildForm {
  public:
    explicit Child(Program& program) : ChildForm(program, "child") {}
    Box layout() override { return stretch(); }
};

TEST(ProgramState, ChildWindowsTakeTheMainWindowsCommandsAway) {
    TestProgram test;
    EXPECT_TRUE(test.program.shell.commandsAvailable);
    Child& child = test.open<Child>();
    EXPECT_FALSE(test.program.shell.commandsAvailable);
    child.closeBoxPressed();
    EXPECT_TRUE(test.program.shell.commandsAvailable);
}

TEST(ProgramState, OneOperationAtATimeUsesTheLine) {
    TestProgram test;
    {
        const LineUse first(test.program);
        EXPECT_TRUE(first);
        {
            const LineUse second(test.program);
            EXPECT_FALSE(second);
        }
        EXPECT_TRUE(test.program.lineInUse) << "who was refused does not free the line";
    }
    EXPECT_FALSE(test.program.lineInUse);
    EXPECT_TRUE(test.endsProgram([&] {
        const LineUse use(test.program);
        throw ProgramEnd{};
    }));
    EXPECT_FALSE(test.program.lineInUse);
}

}  // namespace
}  // namespace vek
