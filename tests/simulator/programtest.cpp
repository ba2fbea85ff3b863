#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <signal.h>  // NOLINT(modernize-deprecated-headers): kill is no part of <csignal>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "master.h"
#include "platform/temporaryfolder.h"
#include "simulator/pty.h"

namespace vek::sim {
namespace {

namespace fs = std::filesystem;

const Bytes nameRequest = hex("03 03 26 48 00 01 0E B6");
const Bytes nameReply = withCrc(hex("03 03 02 76 65"));
constexpr int patience = 10000;  // ms; only failures take that long

// The simulator as a process of its own, with its standard output in a pipe.
class Process {
  public:
    explicit Process(std::vector<std::string> arguments) {
        std::array<int, 2> ends{};
        EXPECT_EQ(::pipe2(ends.data(), O_CLOEXEC), 0);
        output_ = FileDescriptor(ends[0]);
        const FileDescriptor input(ends[1]);
        // It ends by itself even if a failing test cannot end it.
        arguments.insert(arguments.begin(), {SIMULATOR_PROGRAM, "--duration", "30"});
        std::vector<char*> argv(arguments.size() + 1, nullptr);
        std::ranges::transform(arguments, argv.begin(),
                               [](std::string& argument) { return argument.data(); });
        pid_ = ::fork();
        if (pid_ == 0) {
            ::dup2(input.get(), STDOUT_FILENO);
            ::dup2(input.get(), STDERR_FILENO);
            ::execv(SIMULATOR_PROGRAM, argv.data());
            ::_exit(127);
        }
    }
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;
    ~Process() {
        if (pid_ > 0) {
            ::kill(pid_, SIGKILL);
            wait();
        }
    }

    // Reads the output up to this text; empty when it does not come.
    std::string readUntil(const std::string& text) {
        std::string output;
        pollfd source{output_.get(), POLLIN, 0};
        char c = 0;
        while (::poll(&source, 1, patience) > 0 && ::read(output_.get(), &c, 1) == 1) {
            output += c;
            if (output.ends_with(text)) {
                return output;
            }
        }
        return "";
    }

    void signal(int number) const { ::kill(pid_, number); }

    // Exit status, or -1 when a signal ended it.
    int wait() {
        int status = 0;
        ::waitpid(std::exchange(pid_, -1), &status, 0);
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

  private:
    pid_t pid_ = -1;
    FileDescriptor output_;
};

// A port opened the way a serial program does: exclusive and at 9600 bit/s.
FileDescriptor openPort(const fs::path& path) {
    FileDescriptor port(::open(path.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC));
    termios settings{};
    tcgetattr(port.get(), &settings);
    cfmakeraw(&settings);
    cfsetspeed(&settings, B9600);
    tcsetattr(port.get(), TCSANOW, &settings);
    ioctl(port.get(), TIOCEXCL);
    return port;
}

// Fewer bytes than wanted mean that no more came.
Bytes askForName(const FileDescriptor& port) {
    EXPECT_EQ(::write(port.get(), nameRequest.data(), nameRequest.size()), ssize_t{8});
    Bytes reply;
    std::uint8_t byte = 0;
    pollfd source{port.get(), POLLIN, 0};
    while (reply.size() < nameReply.size() && ::poll(&source, 1, patience) > 0 &&
           ::read(port.get(), &byte, 1) == 1) {
        reply.push_back(byte);
    }
    return reply;
}

class Program : public testing::Test {
  protected:
    TemporaryFolder folder;
    fs::path link = folder.path() / "com1";
};

bool hasInput(const FileDescriptor& port) {
    pollfd source{port.get(), POLLIN, 0};
    return ::poll(&source, 1, patience) == 1;
}

TEST(PseudoTerminal, ForgetsItsUsersAsASerialPortDoes) {
    PseudoTerminal terminal;
    const auto unread = [&](const FileDescriptor& port) {
        terminal.followUsers();
        int count = -1;
        ioctl(port.get(), FIONREAD, &count);
        return count;
    };
    terminal.write(nameReply);
    {
        const FileDescriptor port = openPort(terminal.path());
        EXPECT_EQ(unread(port), 0) << "sent before anybody was there";
        terminal.write(nameReply);
        EXPECT_TRUE(hasInput(port));
    }
    terminal.followUsers();
    for (int passing = 0; passing < 3; ++passing) {
        const std::array<FileDescriptor, 2> together{openPort(terminal.path()), openPort(terminal.path())};
        terminal.followUsers();
    }
    terminal.followUsers();
    const FileDescriptor port = openPort(terminal.path());
    ASSERT_GE(port.get(), 0) << "still exclusive";
    EXPECT_EQ(unread(port), 0) << "left over by the one before";
    EXPECT_EQ(terminal.baudRate(), 9600);
    terminal.write(nameReply);
    EXPECT_TRUE(hasInput(port)) << "users who came together have not been miscounted";
}

TEST_F(Program, ServesOneUserAfterTheOtherAndLeavesNothing) {
    fs::create_symlink("/nowhere", link);
    Process simulator({"--link", link.string(), "--pace", "--fault", "cut=2,from=100"});
    const std::string introduction = simulator.readUntil("from request 100 on\n");
    EXPECT_NE(introduction.find("vekQB731-K7W-2 (type 1), Modbus RTU, address 3, 9600 bit/s"),
              std::string::npos);
    EXPECT_NE(introduction.find(fs::read_symlink(link).string()), std::string::npos);
    for (int user = 0; user < 3; ++user) {
        const FileDescriptor port = openPort(link);
        ASSERT_GE(port.get(), 0);
        EXPECT_EQ(askForName(port), nameReply);
        int exclusive = 1;
        ioctl(port.get(), TIOCGEXCL, &exclusive);
        EXPECT_EQ(exclusive, 0) << "the next user would be locked out";
    }
    simulator.signal(SIGTERM);
    EXPECT_EQ(simulator.wait(), 0);
    EXPECT_FALSE(fs::exists(fs::symlink_status(link)));
}

TEST_F(Program, ComesBackBehindTheSameLinkAfterAHangUp) {
    Process simulator({"--link", link.string(), "--fault", "hangup=0.1,times=1"});
    ASSERT_FALSE(simulator.readUntil("at most 1 times\n").empty());
    const FileDescriptor lost = openPort(link);
    EXPECT_EQ(askForName(lost), Bytes());
    ASSERT_FALSE(simulator.readUntil("The line is back").empty());
    const FileDescriptor port = openPort(link);
    EXPECT_EQ(askForName(port), nameReply);
    simulator.signal(SIGINT);
    EXPECT_EQ(simulator.wait(), 0);
}

TEST_F(Program, KeepsItsHandsOffFilesAndBadOptions) {
    std::ofstream(link) << "precious";
    Process refused({"--link", link.string()});
    EXPECT_FALSE(refused.readUntil("is left alone\n").empty());
    EXPECT_EQ(refused.wait(), 1);
    EXPECT_EQ(fs::file_size(link), 8U);
    EXPECT_EQ(Process({"--type", "12"}).wait(), 2);
    EXPECT_EQ(Process({"--help"}).wait(), 0);
    EXPECT_EQ(Process({"--duration", "0.05"}).wait(), 0);
}

}  // namespace
}  // namespace vek::sim
