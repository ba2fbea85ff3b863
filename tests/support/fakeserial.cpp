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
    sendings_.clear();
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
    sendings_.clear();
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
    const TimePoint begin = sendings_.empty() ? clock_.now() : std::max(sendings_.back().done, clock_.now());
    sendings_.push_back({begin + sendTime, bytes.size()});
    if (peer) {
        peer(bytes);
    }
}

std::size_t FakeSerial::sendQueueCount() {
    while (!sendings_.empty() && sendings_.front().done <= clock_.now()) {
        sendings_.pop_front();
    }
    std::size_t count = 0;
    for (const Sending& sending : sendings_) {
        count += sending.count;
    }
    return count;
}

void FakeSerial::waitSent() {
    // A frame that takes longer than this is one on a line that stands still.
    constexpr Milliseconds standstill{1000};
    while (sendQueueCount() > 0) {
        const TimePoint patience = clock_.now() + standstill;
        const TimePoint done = sendings_.front().done;
        clock_.advanceTo(std::min(done, patience));
        if (done > patience) {
            return;
        }
    }
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
