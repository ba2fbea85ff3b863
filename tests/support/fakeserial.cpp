#include "support/fakeserial.h"

#include <algorithm>
#include <utility>

#include "platform/serialsettings.h"

namespace vek {

void FakeSerial::reply(std::string_view bytes, Milliseconds delay, Milliseconds gap) {
    if (!connected_) {
        return;
    }
    TimePoint time = clock_.now() + delay;
    for (const char byte : bytes) {
        const auto later =
            std::upper_bound(arrivals_.begin(), arrivals_.end(), time,
                             [](TimePoint t, const Arrival& arrival) { return t < arrival.time; });
        arrivals_.insert(later, {time, byte});
        time += gap;
    }
}

void FakeSerial::hangUp() {
    receive();
    pluggedIn_ = false;
    connected_ = false;
    arrivals_.clear();
    sentAt_ = {};
}

std::optional<TimePoint> FakeSerial::nextArrival() const {
    return arrivals_.empty() ? std::nullopt : std::optional(arrivals_.front().time);
}

std::optional<TimePoint> FakeSerial::lastArrival() const {
    return arrivals_.empty() ? std::nullopt : std::optional(arrivals_.back().time);
}

bool FakeSerial::setPortNumber(int number) {
    if (open_ || number < 1 || number > 16) {
        return false;
    }
    number_ = number;
    return true;
}

bool FakeSerial::setSettings(std::string_view settings) {
    if (!parseSerialSettings(settings)) {
        return false;
    }
    settings_ = settings;
    return true;
}

PortError FakeSerial::open() {
    if (open_) {
        return PortError::InUse;
    }
    const auto error = openErrors.find(number_);
    if (error != openErrors.end() && error->second != PortError::None) {
        return error->second;
    }
    if (!pluggedIn_) {
        return PortError::NotThere;
    }
    openings.push_back({number_, settings_});
    open_ = true;
    connected_ = true;
    return PortError::None;
}

void FakeSerial::close() {
    if (!open_) {
        return;
    }
    ++closeCount;
    open_ = false;
    connected_ = false;
    arrivals_.clear();
    sentAt_ = {};
    received_.clear();
}

void FakeSerial::receive() {
    while (!arrivals_.empty() && arrivals_.front().time <= clock_.now()) {
        received_ += arrivals_.front().byte;
        arrivals_.pop_front();
    }
}

std::size_t FakeSerial::receivedCount() {
    receive();
    return received_.size();
}

Bytes FakeSerial::readInput() {
    receive();
    if (onRead && !received_.empty()) {
        onRead(received_);
    }
    return std::exchange(received_, {});
}

void FakeSerial::writeOutput(std::string_view bytes) {
    if (onWrite) {
        onWrite(bytes);
    }
    connected_ = open_ && pluggedIn_;
    if (!connected_) {
        lost.emplace_back(bytes);
        return;
    }
    written.emplace_back(bytes);
    sending_ = sendQueueCount() + bytes.size();
    sentAt_ = std::max(sentAt_, clock_.now()) + sendTime;
    if (peer) {
        peer(bytes);
    }
}

std::size_t FakeSerial::sendQueueCount() {
    return clock_.now() < sentAt_ ? sending_ : 0;
}

void FakeSerial::waitSent() {
    // A frame that takes longer than this is one on a line that stands still.
    constexpr Milliseconds standstill{1000};
    clock_.advanceTo(std::min(sentAt_, clock_.now() + standstill));
}

bool FakeSerial::waitReceived(std::size_t count, TimePoint deadline) {
    while (receivedCount() < count) {
        if (arrivals_.empty() || arrivals_.front().time > deadline) {
            clock_.advanceTo(deadline);
            return false;
        }
        clock_.advanceTo(arrivals_.front().time);
    }
    return true;
}

PortInfo FakeSerial::portInfo(int number) const {
    return {"/dev/ttyFake" + std::to_string(number), "dialout"};
}

}  // namespace vek
