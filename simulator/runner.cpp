#include "simulator/runner.h"

#include <poll.h>
#include <signal.h>  // NOLINT(modernize-deprecated-headers): sigprocmask is no part of <csignal>
#include <sys/signalfd.h>

#include <algorithm>
#include <array>
#include <exception>
#include <iomanip>
#include <iterator>
#include <memory>
#include <ostream>
#include <sstream>

#include "simulator/pty.h"

namespace vek::sim {
namespace {

// A scheduler may tear a request apart for longer than the line would; this is still far below any time-out.
constexpr Time tolerantGap = std::chrono::milliseconds(20);

// The signals that end the program, as something to poll for: a master that never stops talking cannot keep
// them out.
class StopSignals {
  public:
    StopSignals() {
        sigset_t stopping;
        sigemptyset(&stopping);
        sigaddset(&stopping, SIGINT);
        sigaddset(&stopping, SIGTERM);
        sigprocmask(SIG_BLOCK, &stopping, nullptr);
        arrived_ = FileDescriptor(signalfd(-1, &stopping, SFD_CLOEXEC));
    }

    int fd() const { return arrived_.get(); }

  private:
    FileDescriptor arrived_;
};

Time steadyNow() {
    return std::chrono::steady_clock::now().time_since_epoch();
}

// The pseudo-terminal together with its link; both go while the line is down.
struct Port {
    explicit Port(const std::string& linkPath) {
        if (!linkPath.empty()) {
            link = std::make_unique<PortLink>(linkPath, terminal.path());
        }
    }
    PseudoTerminal terminal;
    std::unique_ptr<PortLink> link;
};

class Runner {
  public:
    Runner(const ProgramOptions& options, std::ostream& out, std::ostream& log);
    void run();

  private:
    void introduce();
    void logFrame(SimulatedLine::Direction direction, std::span<const std::uint8_t> frame);
    void followLine(Time now);
    void wait(Time now);
    void serve(bool usersChanged, bool readable);

    const ProgramOptions& options_;
    std::ostream& out_;
    std::ostream& log_;
    StopSignals signals_;
    bool stopped_ = false;
    Time start_;
    SimulatedLine line_;
    std::unique_ptr<Port> port_;
};

std::string describeInterface(const DeviceOptions& device) {
    const std::string address = "address " + std::to_string(device.address);
    if (device.kdl) {
        return "KDL, " + address + ", 9600 bit/s, 7 data bits, parity even";
    }
    return "Modbus RTU, " + address + ", " + std::to_string(device.baudRate) + " bit/s, parity " +
           std::string(parityNames.at(device.parity));
}

std::string hexOf(std::span<const std::uint8_t> bytes) {
    std::ostringstream text;
    text << std::hex << std::uppercase << std::setfill('0');
    for (const std::uint8_t byte : bytes) {
        text << ' ' << std::setw(2) << int{byte};
    }
    return text.str();
}

// Characters as they are; what does not print, noise and line ends, as a dot.
std::string textOf(std::span<const std::uint8_t> bytes) {
    std::string text(1, ' ');
    std::ranges::transform(bytes, std::back_inserter(text), [](std::uint8_t byte) {
        return byte >= 0x20 && byte < 0x7F ? static_cast<char>(byte) : '.';
    });
    return text;
}

LineOptions forPseudoTerminal(LineOptions options) {
    options.frameGap = tolerantGap;
    return options;
}

Runner::Runner(const ProgramOptions& options, std::ostream& out, std::ostream& log)
    : options_(options),
      out_(out),
      log_(log),
      start_(steadyNow()),
      line_(forPseudoTerminal(options.line), start_),
      port_(std::make_unique<Port>(options.link)) {
    if (options.verbose) {
        line_.setObserver([this](auto direction, auto frame) { logFrame(direction, frame); });
    }
}

void Runner::introduce() {
    const Device& device = line_.device();
    out_ << "Simulated device " << device.name() << " (type " << device.type().number << "), "
         << describeInterface(options_.line.device)
         << (options_.line.pace ? ", bytes paced at this rate" : ", bytes not paced") << ".\n"
         << "Reach it at " << port_->terminal.path();
    if (!options_.link.empty()) {
        out_ << ", or through the link " << options_.link;
    }
    out_ << ".\n" << (options_.line.faults.empty() ? "No faults on the line.\n" : "Faults on the line:\n");
    for (const LineFault& fault : options_.line.faults) {
        out_ << "  - " << describe(fault) << '\n';
    }
    out_ << std::flush;
}

void Runner::logFrame(SimulatedLine::Direction direction, std::span<const std::uint8_t> frame) {
    log_ << std::fixed << std::setprecision(3) << inSeconds(steadyNow() - start_)
         << (direction == SimulatedLine::Direction::ToDevice ? " <-" : " ->");
    const bool asText = line_.protocol() == Protocol::Kdl;
    log_ << (asText ? textOf(frame) : hexOf(frame)) << std::endl;
}

void Runner::run() {
    introduce();
    while (!stopped_) {
        const Time now = steadyNow();
        if (options_.duration.has_value() && now - start_ >= *options_.duration) {
            return;
        }
        followLine(now);
        wait(now);
    }
}

// Sends what is due, and takes the port away or brings it back as the line goes down and up.
void Runner::followLine(Time now) {
    const Bytes due = line_.transmit(now);
    if (line_.isDown(now)) {
        port_.reset();
    } else if (!port_) {
        port_ = std::make_unique<Port>(options_.link);
        out_ << "The line is back at " << port_->terminal.path() << ".\n" << std::flush;
    }
    if (port_) {
        port_->terminal.write(due);
    }
}

void Runner::wait(Time now) {
    std::optional<Time> until = line_.nextEvent();
    if (options_.duration.has_value()) {
        until = std::min(until.value_or(Time::max()), start_ + *options_.duration);
    }
    timespec timeout{};
    if (until.has_value() && *until > now) {
        const auto seconds = std::chrono::floor<std::chrono::seconds>(*until - now);
        timeout.tv_sec = seconds.count();
        timeout.tv_nsec = (*until - now - seconds).count();
    }
    std::array<pollfd, 3> sources{{{port_ ? port_->terminal.dataFd() : -1, POLLIN, 0},
                                   {port_ ? port_->terminal.usersFd() : -1, POLLIN, 0},
                                   {signals_.fd(), POLLIN, 0}}};
    const int ready = ppoll(sources.data(), sources.size(), until.has_value() ? &timeout : nullptr, nullptr);
    if (ready > 0) {
        stopped_ = sources[2].revents != 0;
        serve(sources[1].revents != 0, sources[0].revents != 0);
    }
}

void Runner::serve(bool usersChanged, bool readable) {
    if (usersChanged) {
        port_->terminal.followUsers();
    }
    if (readable) {
        const Bytes bytes = port_->terminal.read();
        line_.setMasterBaudRate(options_.line.pace ? port_->terminal.baudRate() : std::nullopt);
        line_.receive(bytes, steadyNow());
    }
}

}  // namespace

int runSimulator(const ProgramOptions& options, std::ostream& out, std::ostream& log) {
    try {
        Runner(options, out, log).run();
        return 0;
    } catch (const std::exception& problem) {
        log << "vekXX731_Simulator: " << problem.what() << std::endl;
        return 1;
    }
}

}  // namespace vek::sim
