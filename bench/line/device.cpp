#include "line/device.h"

#include <poll.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <ctime>
#include <filesystem>
#include <optional>
#include <system_error>

namespace vek::bench {

namespace {

sim::Time steadyNow() {
    return std::chrono::steady_clock::now().time_since_epoch();
}

/// Sleeps until bytes come, a program opens or closes the port, or the line has something to send.
void wait(std::array<pollfd, 2>& sources, std::optional<sim::Time> until) {
    const auto left = until ? std::max(*until - steadyNow(), sim::Time{}) : sim::Time{};
    const auto seconds = std::chrono::floor<std::chrono::seconds>(left);
    timespec timeout{};
    timeout.tv_sec = seconds.count();
    timeout.tv_nsec = (left - seconds).count();
    ::ppoll(sources.data(), sources.size(), until ? &timeout : nullptr, nullptr);
}

[[noreturn]] void serve(sim::PseudoTerminal& terminal, const sim::LineOptions& options) {
    sim::SimulatedLine line(options, steadyNow());
    for (;;) {
        terminal.write(line.transmit(steadyNow()));
        std::array<pollfd, 2> sources{{{terminal.dataFd(), POLLIN, 0}, {terminal.usersFd(), POLLIN, 0}}};
        wait(sources, line.nextEvent());
        if (sources[1].revents != 0) {
            terminal.followUsers();
        }
        if (sources[0].revents != 0) {
            line.receive(terminal.read(), steadyNow());
        }
    }
}

/// The process serves the device and ends with this one.
pid_t startServing(sim::PseudoTerminal& terminal, const sim::LineOptions& options) {
    const pid_t parent = ::getpid();
    const pid_t process = ::fork();
    if (process < 0) {
        throw std::system_error(errno, std::generic_category(), "no process for the device");
    }
    if (process == 0) {
        constexpr unsigned long nanosecond = 1;
        ::prctl(PR_SET_PDEATHSIG, SIGKILL);
        ::prctl(PR_SET_TIMERSLACK, nanosecond);  // the usual 50 us are half a byte at 115200 bit/s
        if (::getppid() == parent) {
            serve(terminal, options);
        }
        ::_exit(0);
    }
    return process;
}

}  // namespace

DeviceProcess::DeviceProcess(const sim::LineOptions& options) : process_(startServing(terminal_, options)) {
    std::filesystem::create_directory(folder_.path() / "ports");
    std::filesystem::create_symlink(path(), folder_.path() / "ports" / "com1");
}

DeviceProcess::~DeviceProcess() {
    ::kill(process_, SIGKILL);
    ::waitpid(process_, nullptr, 0);
}

}  // namespace vek::bench
