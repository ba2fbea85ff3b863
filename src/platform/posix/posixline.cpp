#include "platform/posix/posixserial.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <termios.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <ctime>
#include <thread>
#include <utility>

#include "platform/posix/comports.h"
#include "platform/posix/ttysettings.h"

namespace vek {

namespace {

using std::chrono::duration_cast;
using std::chrono::microseconds;
using std::chrono::nanoseconds;
using std::chrono::seconds;

constexpr int lastPort = 16;
constexpr std::size_t mostWaiting = 65536;
constexpr std::size_t chunkSize = 4096;

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

PosixSerial::PosixSerial(std::string dataFolder) : dataFolder_(std::move(dataFolder)) {}

PosixSerial::~PosixSerial() {
    disconnect();
}

bool PosixSerial::setPortNumber(int number) {
    if (open_ || number < 1 || number > lastPort) {
        return false;
    }
    number_ = number;
    return true;
}

bool PosixSerial::setSettings(std::string_view settings) {
    const auto parsed = parseSerialSettings(settings);
    settings_ = parsed.value_or(settings_);
    return parsed.has_value();
}

PortError PosixSerial::open() {
    if (open_) {
        return PortError::InUse;
    }
    lineSettings_ = settings_;
    const PortError error = connect();
    open_ = error == PortError::None;
    return error;
}

void PosixSerial::close() {
    disconnect();
    open_ = false;
    received_.clear();
}

PortError PosixSerial::connect() {
    const std::string path = comDevicePath(dataFolder_, number_);
    FileDescriptor device(::open(path.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC));
    if (!device) {
        return portErrorOf(errno);
    }
    PortError error = claim(device.get());
    if (error != PortError::None) {
        return error;
    }
    device_ = std::move(device);
    error = applySettings(device_.get(), lineSettings_);
    if (error != PortError::None) {
        disconnect();
        return error;
    }
    lowLatencyRaised_ = raiseLowLatency(device_.get());
    ::tcflush(device_.get(), TCIOFLUSH);
    return PortError::None;
}

void PosixSerial::disconnect() {
    if (!device_) {
        return;
    }
    if (sendQueueCount() > 0) {
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

std::size_t PosixSerial::receivedCount() {
    receiveWaiting();
    return received_.size();
}

Bytes PosixSerial::readInput() {
    receiveWaiting();
    return std::exchange(received_, {});
}

/// Takes what the system has received, if there is anything. Reading an empty port costs far more than this
/// question: the kernel then waits until its worker has handed on what is under way.
void PosixSerial::receiveWaiting() {
    int count = 0;
    const bool isEmpty = device_ && ::ioctl(device_.get(), FIONREAD, &count) == 0 && count == 0;
    if (!isEmpty) {
        receive();
    }
}

/// Takes what the system has received, as much as may wait here at most, and notices a hang-up.
void PosixSerial::receive() {
    std::size_t taken = 0;
    for (std::size_t count = chunkSize; count == chunkSize && taken < mostWaiting; taken += count) {
        count = receiveChunk();  // less than a whole one was the last: no read just to hear that
    }
}

/// One read. Returns how many bytes there were; what has no room is lost. A hang-up ends the connection.
std::size_t PosixSerial::receiveChunk() {
    std::array<char, chunkSize> chunk;
    while (device_) {
        const ssize_t result = ::read(device_.get(), chunk.data(), chunk.size());
        if (result > 0) {
            const auto count = static_cast<std::size_t>(result);
            received_.append(chunk.data(), std::min(count, mostWaiting - received_.size()));
            lastArrival_ = Clock::now();
            return count;
        }
        if (result < 0 && errno == EAGAIN) {
            return 0;
        }
        if (result == 0 || errno != EINTR) {
            disconnect();
        }
    }
    return 0;
}

void PosixSerial::writeOutput(std::string_view bytes) {
    if (!open_) {
        return;
    }
    const bool wasThere = static_cast<bool>(device_);
    if (!wasThere) {
        connect();  // quietly: a device that is still away is one that does not answer
    }
    if (!send(bytes) && wasThere) {
        connect();
        send(bytes);
    }
}

/// Sends the bytes, or as many as the line takes in their time. False when the device vanished before the
/// first of them.
bool PosixSerial::send(std::string_view bytes) {
    constexpr Milliseconds grace{50};
    const TimePoint deadline = Clock::now() + lineSettings_.byteTime() * bytes.size() + grace;
    const std::size_t all = bytes.size();
    while (device_ && !bytes.empty()) {
        const ssize_t result = ::write(device_.get(), bytes.data(), bytes.size());
        if (result > 0) {
            bytes.remove_prefix(static_cast<std::size_t>(result));
        } else if (result == 0 || errno == EAGAIN) {
            if (!waitFor(POLLOUT, deadline)) {
                return true;
            }
        } else if (errno != EINTR) {
            disconnect();
        }
    }
    return device_ || bytes.size() < all;
}

std::size_t PosixSerial::sendQueueCount() {
    int count = 0;
    const bool known = device_ && ::ioctl(device_.get(), TIOCOUTQ, &count) == 0 && count > 0;
    return known ? static_cast<std::size_t>(count) : 0;
}

void PosixSerial::waitSent() {
    constexpr microseconds standstill = seconds{1};
    constexpr microseconds shortest = Milliseconds{1};
    constexpr microseconds longest = Milliseconds{50};  // soon enough to see that the device has vanished
    const microseconds byteTime = lineSettings_.byteTime();
    std::size_t queued = sendQueueCount();
    TimePoint deadline = Clock::now() + byteTime * queued + standstill;
    while (queued > 0 && Clock::now() < deadline) {
        std::this_thread::sleep_for(std::clamp<microseconds>(byteTime * queued, shortest, longest));
        const std::size_t left = sendQueueCount();
        if (left < queued) {
            deadline = Clock::now() + byteTime * left + standstill;
        }
        queued = left;
    }
}

bool PosixSerial::waitReceived(std::size_t count, TimePoint deadline) {
    receiveWaiting();
    while (received_.size() < count) {
        sleepWithinFrame(count - received_.size(), deadline);
        if (!waitFor(POLLIN, deadline)) {
            return false;
        }
        receive();
    }
    return true;
}

/// Sleeps while a frame is coming in, as long as the missing bytes take at least: each of them by itself
/// would wake the program for nothing. The last one is left to the event wait, also when it was not noticed
/// at once that the one before had come.
void PosixSerial::sleepWithinFrame(std::size_t missing, TimePoint deadline) const {
    constexpr microseconds shortest = Milliseconds{2};
    constexpr microseconds longest = Milliseconds{50};  // soon enough to see that the device has vanished
    const microseconds byteTime = lineSettings_.byteTime();
    const TimePoint now = Clock::now();
    const TimePoint due =
        std::min(lastArrival_ + byteTime * static_cast<Clock::rep>(missing - 1), now + longest);
    if (now - lastArrival_ < 2 * byteTime && due - now >= shortest) {
        std::this_thread::sleep_until(std::min(due, deadline));
    }
}

/// Sleeps until the device has one of the events, or hangs up, or until the deadline. Without a device it is
/// the deadline. False when that has passed.
bool PosixSerial::waitFor(short events, TimePoint deadline) {
    const TimePoint now = Clock::now();
    if (deadline <= now) {
        return false;
    }
    if (!device_) {
        std::this_thread::sleep_until(deadline);
        return false;
    }
    pollfd state{device_.get(), events, 0};
    const timespec limit = timespecOf(deadline - now);
    const int result = ::ppoll(&state, 1, &limit, nullptr);
    const bool hungUp = (state.revents & (POLLHUP | POLLERR | POLLNVAL)) != 0;
    if (hungUp || (result < 0 && errno != EINTR)) {
        while (receiveChunk() > 0) {
            // the last bytes before it
        }
        disconnect();
    }
    return true;
}

PortInfo PosixSerial::portInfo(int number) const {
    return comPortInfo(dataFolder_, number);
}

}  // namespace vek
