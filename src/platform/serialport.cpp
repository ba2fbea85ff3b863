#include "platform/serialport.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <utility>

namespace vek {

namespace {

using std::chrono::microseconds;
using std::chrono::seconds;

constexpr int lastPort = 16;
constexpr std::size_t mostWaiting = 65536;

}  // namespace

PassingTime& machineTime() {
    static PassingTime time;
    return time;
}

SerialPort::SerialPort(std::unique_ptr<RawLine> line, PassingTime& time)
    : line_(std::move(line)), time_(time) {}

bool SerialPort::setPortNumber(int number) {
    if (open_ || number < 1 || number > lastPort) {
        return false;
    }
    number_ = number;
    return true;
}

bool SerialPort::setSettings(std::string_view settings) {
    const auto parsed = parseSerialSettings(settings);
    settings_ = parsed.value_or(settings_);
    return parsed.has_value();
}

PortError SerialPort::open() {
    if (open_) {
        return PortError::InUse;
    }
    lineSettings_ = settings_;
    const PortError error = line_->open(number_, lineSettings_);
    open_ = error == PortError::None;
    return error;
}

void SerialPort::close() {
    line_->close();
    open_ = false;
    received_.clear();
}

std::size_t SerialPort::receivedCount() {
    takeReceived();
    return received_.size();
}

Bytes SerialPort::readInput() {
    takeReceived();
    return std::exchange(received_, {});
}

/// As much as may wait here at most, so that a flood does not hold up the program; what has no room is lost.
bool SerialPort::takeReceived() {
    std::array<char, 4096> chunk;
    std::size_t taken = 0;
    for (std::size_t count = chunk.size(); count == chunk.size() && taken < mostWaiting; taken += count) {
        count = line_->isOpen() ? line_->read(chunk) : 0;
        received_.append(chunk.data(), std::min(count, mostWaiting - received_.size()));
    }
    if (taken > 0) {
        lastArrival_ = time_.now();
    }
    return taken > 0;
}

void SerialPort::writeOutput(std::string_view bytes) {
    if (!open_) {
        return;
    }
    const bool wasThere = line_->isOpen();
    if (!wasThere) {
        line_->open(number_,
                    lineSettings_);  // quietly: a device that is still away is one that does not answer
    }
    if (!send(bytes) && wasThere) {
        line_->open(number_, lineSettings_);
        send(bytes);
    }
}

/// Sends the bytes, or as many as the line takes in their time. False when the device vanished before the
/// first of them.
bool SerialPort::send(std::string_view bytes) {
    constexpr Milliseconds grace{50};
    const TimePoint deadline = time_.now() + lineSettings_.byteTime() * bytes.size() + grace;
    const std::size_t all = bytes.size();
    while (line_->isOpen() && !bytes.empty()) {
        const std::size_t count = line_->write(bytes);
        bytes.remove_prefix(count);
        if (count == 0 && line_->isOpen() && !line_->wait(RawLine::Event::Room, deadline)) {
            return true;
        }
    }
    return line_->isOpen() || bytes.size() < all;
}

std::size_t SerialPort::sendQueueCount() {
    return line_->isOpen() ? line_->queued() : 0;
}

void SerialPort::waitSent() {
    constexpr microseconds standstill = seconds{1};
    constexpr microseconds shortest = Milliseconds{1};
    constexpr microseconds longest = Milliseconds{50};  // soon enough to see that the device has vanished
    const microseconds byteTime = lineSettings_.byteTime();
    std::size_t queued = sendQueueCount();
    TimePoint deadline = time_.now() + byteTime * queued + standstill;
    while (queued > 0 && time_.now() < deadline) {
        time_.sleepUntil(time_.now() + std::clamp<microseconds>(byteTime * queued, shortest, longest));
        const std::size_t left = sendQueueCount();
        if (left < queued) {
            deadline = time_.now() + byteTime * left + standstill;
        }
        queued = left;
    }
}

bool SerialPort::waitReceived(std::size_t count, TimePoint deadline) {
    takeReceived();
    while (received_.size() < count) {
        sleepWithinFrame(count - received_.size(), deadline);
        const bool inTime = waitFor(RawLine::Event::Input, deadline);
        takeReceived();
        if (!inTime) {
            break;
        }
    }
    return received_.size() >= count;
}

/// Sleeps while a frame is coming in, as long as the missing bytes take at least: each of them by itself
/// would wake the program for nothing. The last one is left to the event wait, also when it was not noticed
/// at once that the one before had come.
void SerialPort::sleepWithinFrame(std::size_t missing, TimePoint deadline) const {
    constexpr microseconds shortest = Milliseconds{2};
    constexpr microseconds longest = Milliseconds{50};  // soon enough to see that the device has vanished
    const microseconds byteTime = lineSettings_.byteTime();
    const TimePoint now = time_.now();
    const TimePoint due =
        std::min(lastArrival_ + byteTime * static_cast<Clock::rep>(missing - 1), now + longest);
    if (now - lastArrival_ < 2 * byteTime && due - now >= shortest) {
        time_.sleepUntil(std::min(due, deadline));
    }
}

/// Without a device it is the deadline. False when that has passed.
bool SerialPort::waitFor(RawLine::Event event, TimePoint deadline) {
    if (line_->isOpen()) {
        return line_->wait(event, deadline);
    }
    time_.sleepUntil(deadline);
    return false;
}

}  // namespace vek
