#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include "campaign/pluggedline.h"
#include "modbus/ModBus.h"
#include "support/testprogram.h"

namespace vek {
namespace {

constexpr int portOpened = 0;
constexpr int portRefused = 1;

/// Another process opens COM1 at its own settings, sends, and ends. How it got on.
int runSecondProgram(const std::filesystem::path& dataFolder) {
    const pid_t process = ::fork();
    if (process == 0) {
        PosixSerial port(dataFolder);
        TestProgram second({}, &port);
        second.program.ComPort = 1;
        second.program.BaudRate = 1200;
        second.program.FrameFormat = ",o,8,1";
        OpenPort(second.program);
        const bool refused = !port.isOpen() && second.desktop.boxes.size() == 1;
        port.writeOutput("intruder");
        ClosePort(second.program);
        ::_exit(refused ? portRefused : portOpened);
    }
    int status = 0;
    ::waitpid(process, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

TEST(TwoPrograms, TheSecondIsRefusedWhileTheFirstReads) {
    PluggedLine line(sim::LineOptions{});
    TestProgram first({}, &line);
    line.clock = &first.clock;
    first.configure();
    first.program.ComPort = 1;
    int second = -1;
    line.duringReply = [&] { second = runSecondProgram(line.dataFolder()); };

    OpenPort(first.program);
    for (int transaction = 0; transaction < 20 && !HasFailure(); ++transaction) {
        second = -1;
        EXPECT_EQ(MbReadRegisters(first.program, 9800, 1), "30309") << transaction;
        EXPECT_EQ(second, portRefused) << transaction;
        EXPECT_TRUE(MbWriteRegisters(first.program, 3007, 1, 2, WordToBytes(45))) << transaction;
        EXPECT_EQ(second, portRefused) << transaction;
    }
    EXPECT_TRUE(first.desktop.boxes.empty());
    EXPECT_EQ(line.unanswered(), 0U);
    ClosePort(first.program);

    EXPECT_EQ(runSecondProgram(line.dataFolder()), portOpened) << "the port is free again";
}

}  // namespace
}  // namespace vek
