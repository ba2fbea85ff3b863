#include "simulator/pty.h"

#include <fcntl.h>
#include <sys/inotify.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <stdexcept>
#include <system_error>
#include <utility>

namespace vek::sim {
namespace {

namespace fs = std::filesystem;

[[noreturn]] void failWithErrno(const char* what) {
    throw std::system_error(errno, std::generic_category(), what);
}

int checked(int result, const char* what) {
    if (result < 0) {
        failWithErrno(what);
    }
    return result;
}

void makeRaw(int fd) {
    termios settings{};
    checked(tcgetattr(fd, &settings), "cannot read the settings of the pseudo-terminal");
    cfmakeraw(&settings);
    checked(tcsetattr(fd, TCSANOW, &settings), "cannot set up the pseudo-terminal");
}

struct Rate {
    speed_t code;
    int baudRate;
};
constexpr std::array<Rate, 8> rates{{{B1200, 1200},
                                     {B2400, 2400},
                                     {B4800, 4800},
                                     {B9600, 9600},
                                     {B19200, 19200},
                                     {B38400, 38400},
                                     {B57600, 57600},
                                     {B115200, 115200}}};

}  // namespace

FileDescriptor::FileDescriptor(FileDescriptor&& other) noexcept : fd_(std::exchange(other.fd_, -1)) {}

FileDescriptor& FileDescriptor::operator=(FileDescriptor&& other) noexcept {
    std::swap(fd_, other.fd_);
    return *this;
}

FileDescriptor::~FileDescriptor() {
    if (fd_ >= 0) {
        ::close(fd_);
    }
}

PseudoTerminal::PseudoTerminal()
    : master_(checked(posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC),
                      "cannot open a pseudo-terminal")) {
    checked(grantpt(master_.get()), "cannot grant the pseudo-terminal");
    checked(unlockpt(master_.get()), "cannot unlock the pseudo-terminal");
    std::array<char, 128> name{};
    if (const int error = ptsname_r(master_.get(), name.data(), name.size()); error != 0) {
        throw std::system_error(error, std::generic_category(), "cannot name the pseudo-terminal");
    }
    path_ = name.data();
    slave_ = FileDescriptor(checked(::open(path_.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC),
                                    "cannot open the far end of the pseudo-terminal"));
    makeRaw(slave_.get());
    events_ =
        FileDescriptor(checked(inotify_init1(IN_NONBLOCK | IN_CLOEXEC), "cannot watch the pseudo-terminal"));
    checked(inotify_add_watch(events_.get(), path_.c_str(), IN_OPEN | IN_CLOSE),
            "cannot watch the pseudo-terminal");
}

void PseudoTerminal::followUsers() {
    alignas(inotify_event) std::array<char, 4096> events{};
    for (ssize_t size = 0; (size = ::read(events_.get(), events.data(), events.size())) > 0;) {
        // A watch on a single file brings events without names, each as long as the next.
        for (std::size_t offset = 0; offset < static_cast<std::size_t>(size);
             offset += sizeof(inotify_event)) {
            inotify_event event{};
            std::memcpy(&event, events.data() + offset, sizeof(event));
            used_ = (event.mask & IN_OPEN) != 0;
            if (!used_) {
                forgetUser();
            }
        }
    }
}

// A pseudo-terminal keeps both of these until its last end is closed, which is ours.
void PseudoTerminal::forgetUser() {
    ioctl(slave_.get(), TIOCNXCL);
    tcflush(slave_.get(), TCIFLUSH);
}

Bytes PseudoTerminal::read() {
    Bytes bytes(1024);
    const ssize_t count = ::read(master_.get(), bytes.data(), bytes.size());
    bytes.resize(count > 0 ? static_cast<std::size_t>(count) : 0);
    if (!bytes.empty()) {
        // The system folds equal events into one, so a close need not mean that nobody is left; whoever talks
        // is.
        used_ = true;
        // Once it talks, a program has had the port to itself long enough to be told apart from a second one
        // by its lock; lifting the exclusive mark now lets it close and open the port without a moment of
        // "busy".
        ioctl(slave_.get(), TIOCNXCL);
    }
    return bytes;
}

void PseudoTerminal::write(std::span<const std::uint8_t> bytes) {
    while (used_ && !bytes.empty()) {
        const ssize_t count = ::write(master_.get(), bytes.data(), bytes.size());
        if (count <= 0) {
            return;
        }
        bytes = bytes.subspan(static_cast<std::size_t>(count));
    }
}

std::optional<int> PseudoTerminal::baudRate() const {
    termios settings{};
    if (tcgetattr(slave_.get(), &settings) != 0) {
        return std::nullopt;
    }
    for (const Rate& rate : rates) {
        if (cfgetospeed(&settings) == rate.code) {
            return rate.baudRate;
        }
    }
    return std::nullopt;
}

PortLink::PortLink(std::string path, const std::string& target) : path_(std::move(path)), target_(target) {
    std::error_code error;
    const fs::file_status status = fs::symlink_status(path_, error);
    if (fs::exists(status) && !fs::is_symlink(status)) {
        throw std::runtime_error(path_ + " exists and is no symbolic link; it is left alone");
    }
    const std::string fresh = path_ + "." + std::to_string(::getpid());
    fs::remove(fresh, error);
    fs::create_symlink(target_, fresh, error);
    if (!error) {
        fs::rename(fresh, path_, error);
    }
    if (error) {
        std::error_code ignored;
        fs::remove(fresh, ignored);
        throw std::runtime_error("cannot make the link " + path_ + ": " + error.message());
    }
}

PortLink::~PortLink() {
    std::error_code error;
    if (fs::read_symlink(path_, error) == target_) {
        fs::remove(path_, error);
    }
}

}  // namespace vek::sim
