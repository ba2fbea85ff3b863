#include <gtest/gtest.h>

#include "editorbench.h"

namespace vek {
namespace {

/// Between two reads the user can act: a second press does nothing, and a closed editor reads no further.
TEST(Editor, LetsTheUserActWhileItReads) {
    for (const bool kdl : {false, true}) {
        EditorBench bench(3, kdl);
        frmMbParameter& editor = bench.editor();
        bench.requests.clear();
        bench.test.desktop.onEvents = [&] {
            EXPECT_FALSE(editor.cmdReadPara.enabled || editor.cmdWritePara.enabled);
            EXPECT_LE(bench.requests.size() - static_cast<std::size_t>(editor.prgFortschritt.done), 1U);
            editor.cmdWritePara.click();
            editor.cmdReadPara.click();
            if (bench.requests.size() == 4 && !bench.test.program.shell.commandsAvailable) {
                editor.cmdClose.click();
            }
        };
        editor.cmdReadPara.click();
        EXPECT_EQ(bench.requests.size(), 4U);
        EXPECT_FALSE(bench.test.serial.isOpen());
        EXPECT_TRUE(bench.test.program.shell.commandsAvailable);
    }
}

TEST(Editor, TellsHowFarItsFirstReadingIsInTheMainWindow) {
    EditorBench bench(3, false);
    Texts told;
    bench.test.desktop.onEvents = [&] { told.push_back(bench.test.program.shell.activity); };
    bench.editor();
    EXPECT_EQ(told.front(), "Parameter werden gelesen: 0 von 21") << "before the first register is asked for";
    EXPECT_EQ(told.back(), "Parameter werden gelesen: 20 von 21");
    EXPECT_EQ(bench.test.program.shell.activity.get(), "");
}

/// Whoever closes the window, presses again or goes on typing meanwhile leaves no half set behind.
TEST(Editor, FinishesTheSetBeforeItHearsTheUser) {
    for (const bool kdl : {false, true}) {
        EditorBench bench(3, kdl);
        frmMbParameter& editor = bench.editor();
        bench.requests.clear();
        int heard = 0;
        bench.test.desktop.onEvents = [&] {
            ++heard;
            EXPECT_EQ(bench.requests.size(), kdl ? 14U : 18U) << "the whole set";
            editor.txtTab.text = "9";
            editor.cmdWritePara.click();
            editor.closeBoxPressed();
        };
        EXPECT_EQ(bench.write(), Texts{});
        EXPECT_EQ(heard, 1);
        EXPECT_EQ(bench.requests.size(), kdl ? 14U : 18U);
        EXPECT_EQ(bench.parameters.value(sim::Parameter::ReleaseDelay), 0);
    }
}

}  // namespace
}  // namespace vek
