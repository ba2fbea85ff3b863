#include "platform/posix/posixline.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <termios.h>

#include <cerrno>
#include <chrono>
#include <ctime>
#include <utility>

#include "platform/posix/comports.h"
#include "platform/posix/ttysettings.h"

namespace vek {

namespace {

using std::chrono::duration_cast;
using std::chrono::nanoseconds;
using std::chrono::seconds;

timespec timespecOf(nanoseconds span) {
    const auto whole = duration_cast<seconds>(span);
    timespec result{};
    result.tv_sec = whole.count();
    result.tv_nsec = (span - whole).count();
    return result;
}

/// None when this program alone has the device now.
PortError claim(int device) {
    if (::isatty(device) == 0) {
        return PortError::NotThere;
    }
    if (::flock(device, LOCK_EX | LOCK_NB) != 0 || ::ioctl(device, TIOCEXCL) != 0) {
        return portErrorOf(errno);
    }
    return PortError::None;
}

}  // namespace

PosixLine::PosixLine(std::string dataFolder) : dataFolder_(std::move(dataFolder)) {}

PosixLine::~PosixLine() {
    close();
}

PortError PosixLine::open(int number, const SerialSettings& settings) {
    const std::string path = comDevicePath(dataFolder_, number);
    FileDescriptor device(::open(path.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC));
    if (!device) {
        return portErrorOf(errno);
    }
    PortError error = claim(device.get());
    if (error != PortError::None) {
        return error;
    }
    device_ = std::move(device);
    error = applySettings(device_.get(), settings);
    if (error != PortError::None) {
        close();
        return error;
    }
    input_.descriptor = device_.get();
    hungUp_ = false;
    lowLatencyRaised_ = raiseLowLatency(device_.get());
    ::tcflush(device_.get(), TCIOFLUSH);
    return PortError::None;
}

void PosixLine::close() {
    if (!device_) {
        return;
    }
    if (queued() > 0) {
        // The driver would hold close() until the bytes are gone, on a line that stands still for 30 seconds.
        ::tcflush(device_.get(), TCOFLUSH);
    }
    if (std::exchange(lowLatencyRaised_, false)) {
        lowerLowLatency(device_.get());
    }
    // A pseudo-terminal would stay exclusive for as long as its other end is open.
    ::ioctl(device_.get(), TIOCNXCL);
    device_.reset();
}

/// Asks first whether there is anything. Reading an empty port costs far more than this question: the kernel
/// then waits until its worker has handed on what is under way.
std::size_t PosixLine::read(std::span<char> room) {
    int count = 0;
    if (!hungUp_ && ::ioctl(device_.get(), FIONREAD, &count) == 0 && count == 0) {
        return 0;
    }
    ssize_t result = 0;
    do {
        result = ::read(device_.get(), room.data(), room.size());
    } while (result < 0 && errno == EINTR);
    if (result > 0) {
        return static_cast<std::size_t>(result);
    }
    if (result == 0 || errno != EAGAIN || hungUp_) {
        close();
    }
    return 0;
}

std::size_t PosixLine::write(std::string_view bytes) {
    const ssize_t result = ::write(device_.get(), bytes.data(), bytes.size());
    if (result > 0) {
        return static_cast<std::size_t>(result);
    }
    const bool fullOrInterrupted = result == 0 || errno == EAGAIN || errno == EINTR;
    if (!fullOrInterrupted || hungUp_) {
        close();
    }
    return 0;
}

std::size_t PosixLine::queued() {
    int count = 0;
    const bool known = ::ioctl(device_.get(), TIOCOUTQ, &count) == 0 && count > 0;
    return known ? static_cast<std::size_t>(count) : 0;
}

bool PosixLine::wait(Event event, TimePoint deadline) {
    const TimePoint now = Clock::now();
    if (deadline <= now) {
        return false;
    }
    pollfd state{device_.get(), static_cast<short>(event == Event::Input ? POLLIN : POLLOUT), 0};
    const timespec limit = timespecOf(deadline - now);
    const int result = ::ppoll(&state, 1, &limit, nullptr);
    hungUp_ = (state.revents & (POLLHUP | POLLERR | POLLNVAL)) != 0 || (result < 0 && errno != EINTR);
    return true;
}

PortInfo PosixLine::info(int number) const {
    return comPortInfo(dataFolder_, number);
}

}  // namespace vek
