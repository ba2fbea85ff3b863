#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <signal.h>  // NOLINT(modernize-deprecated-headers): kill is no part of <csignal>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include "platform/temporaryfolder.h"
#include "simulator/options.h"
#include "simulator/pty.h"
#include "support/hexbytes.h"

namespace vek::sim {
namespace {

namespace fs = std::filesystem;

// The simulator as a process of its own. It ends by itself even if a failing test cannot end it.
class Process {
  public:
    explicit Process(const std::string& options)
        : output_(::popen(("echo $$; exec " SIMULATOR_PROGRAM " --duration 30 " + options + " 2>&1").c_str(),
                          "r")),
          pid_(std::stoi(readLineWith(""))) {}

    // Reads the output up to a line with this text; empty when it does not come.
    std::string readLineWith(const std::string& text) {
        char line[200];
        while (std::fgets(line, sizeof line, output_) != nullptr) {
            if (std::string(line).find(text) != std::string::npos) {
                return line;
            }
        }
        return "";
    }

    void signal(int number) const { ::kill(pid_, number); }
    int exitStatus() { return WEXITSTATUS(::pclose(output_)); }

  private:
    FILE* output_;
    pid_t pid_;
};

// The answer to a request for the first register of the name, to a program that opens the port as a serial
// program does; "" when none comes.
std::string firstLettersOfTheName(const fs::path& link) {
    const FileDescriptor port(::open(link.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC));
    termios settings{};
    tcgetattr(port.get(), &settings);
    cfmakeraw(&settings);
    cfsetspeed(&settings, B9600);
    tcsetattr(port.get(), TCSANOW, &settings);
    ioctl(port.get(), TIOCEXCL);
    const std::string request = fromHex("03 03 26 48 00 01 0E B6");
    EXPECT_EQ(::write(port.get(), request.data(), request.size()), ssize_t{8});
    std::string reply;
    pollfd source{port.get(), POLLIN, 0};
    char byte = 0;
    while (reply.size() < 7 && ::poll(&source, 1, 10000) > 0 && ::read(port.get(), &byte, 1) == 1) {
        reply += byte;
    }
    return reply.size() == 7 ? reply.substr(3, 2) : "";
}

TEST(Simulator, ServesOneUserAfterTheOtherAndLeavesNothing) {
    const TemporaryFolder folder;
    const fs::path link = folder.path() / "com1";
    fs::create_symlink("/nowhere", link);
    Process simulator("--pace --fault hangup=0.1,times=1 --link " + link.string());
    EXPECT_NE(simulator.readLineWith("vekQB731-K7W-2 (type 1), Modbus RTU, address 3, 9600 bit/s"), "");
    ASSERT_NE(simulator.readLineWith("at most 1 times"), "");
    EXPECT_EQ(firstLettersOfTheName(link), "") << "the adapter is pulled out";
    ASSERT_NE(simulator.readLineWith("The line is back"), "");
    EXPECT_EQ(firstLettersOfTheName(link), "ve");
    EXPECT_EQ(firstLettersOfTheName(link), "ve") << "the user before has locked the port";
    simulator.signal(SIGTERM);
    EXPECT_EQ(simulator.exitStatus(), 0);
    EXPECT_FALSE(fs::exists(fs::symlink_status(link)));

    std::ofstream(link) << "precious";
    Process refused("--link " + link.string());
    EXPECT_NE(refused.readLineWith("is left alone"), "");
    EXPECT_EQ(refused.exitStatus(), 1);
    EXPECT_EQ(fs::file_size(link), 8U);
}

TEST(Simulator, RefusesNonsenseAndSaysWhere) {
    std::istringstream lines(
        "--type 11;--type x;--address 248;--baud 1000;--speed nan;--parity mark;--state tired;"
        "--battery flat;--battery;--name averyverylongdevicename;--nonsense;--fault storm;--fault late;"
        "--fault late=x;--fault silence=3;--fault silence,command=;--fault crc,every=0;--fault lacks=70000");
    for (std::string line; std::getline(lines, line, ';');) {
        const std::string option = line.substr(0, line.find(' '));
        const std::string value = line.substr(std::min(option.size() + 1, line.size()));
        const auto parsed =
            value.empty() ? parseOptions({{option}}) : parseOptions({{option, std::string_view(value)}});
        ASSERT_TRUE(std::holds_alternative<std::string>(parsed)) << line;
        const std::string& problem = std::get<std::string>(parsed);
        EXPECT_TRUE(problem.find(option) != std::string::npos || problem.find("fault") != std::string::npos)
            << problem;
    }
}

}  // namespace
}  // namespace vek::sim
