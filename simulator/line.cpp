#include "simulator/line.h"

#include <algorithm>
#include <utility>

namespace vek::sim {
namespace {

using namespace std::chrono_literals;

constexpr std::size_t longestFrame = 256;
constexpr Time shortestGap = 1750us;
constexpr std::uint8_t broadcastAddress = 0;

}  // namespace

SimulatedLine::SimulatedLine(const LineOptions& options, Time start)
    : options_(options),
      device_(options.device, start),
      slave_(device_),
      faults_(options.device.seed),
      settings_(device_.busSettings()),
      receivedUntil_(start),
      outputEnd_(start),
      downUntil_(start) {
    for (const LineFault& fault : options.faults) {
        faults_.add(fault);
    }
}

// Start bit, eight data bits, parity if there is one, stop bit.
Time SimulatedLine::characterTime() const {
    return settings_.baudRate == 0 ? Time{} : Time(1s) * (settings_.parity ? 11 : 10) / settings_.baudRate;
}

Time SimulatedLine::frameGap() const {
    return std::max({options_.frameGap, shortestGap, characterTime() * 7 / 2});
}

void SimulatedLine::receive(std::span<const std::uint8_t> bytes, Time now) {
    endFrameBySilence(now);
    const bool understood = !masterBaudRate_.has_value() || *masterBaudRate_ == settings_.baudRate;
    if (isDown(now) || !understood || settings_.baudRate == 0 || bytes.empty()) {
        return;
    }
    const Time perByte = options_.pace ? characterTime() : Time{};
    receivedUntil_ = std::max(receivedUntil_, now) + perByte * static_cast<Time::rep>(bytes.size());
    spoiled_ = spoiled_ || received_.size() + bytes.size() > longestFrame;
    if (!spoiled_) {
        received_.insert(received_.end(), bytes.begin(), bytes.end());
        takeCompleteFrame();
    }
}

// The known requests tell their length, so that a reply need not wait for the silence after them. Anything
// else (a wrong CRC, a byte too many, an unknown function) lies there until silence ends it.
void SimulatedLine::takeCompleteFrame() {
    if (requestLength(received_) == received_.size() && hasValidCrc(received_)) {
        handle(std::exchange(received_, {}), receivedUntil_);
    }
}

void SimulatedLine::endFrameBySilence(Time now) {
    if ((received_.empty() && !spoiled_) || now < receivedUntil_ + frameGap()) {
        return;
    }
    const Bytes frame = std::exchange(received_, {});
    const bool unknownFunction = !requestLength(frame).has_value();
    if (!std::exchange(spoiled_, false) && unknownFunction && hasValidCrc(frame)) {
        handle(frame, receivedUntil_);
    }
}

void SimulatedLine::handle(const Bytes& frame, Time end) {
    const RequestHead head = parseHead(frame);
    const bool forMe = head.address == settings_.address;
    if (!forMe && head.address != broadcastAddress) {
        return;
    }
    if (observer_) {
        observer_(Direction::ToDevice, frame);
    }
    device_.advance(end);
    if (forMe) {
        respond(head, frame, end);
    } else if (head.isWrite()) {
        slave_.answer(frame);
    }
    // The reply has still been timed by the old settings; from here on the new ones count.
    settings_ = device_.busSettings();
}

void SimulatedLine::respond(const RequestHead& head, const Bytes& frame, Time end) {
    const FaultEffects effects = faults_.strike(head);
    if (effects.hangUp.has_value()) {
        hangUp(end, *effects.hangUp);
        return;
    }
    if (effects.silent) {
        return;
    }
    Bytes reply = effects.exception.has_value() ? ModbusSlave::exceptionReply(head, *effects.exception)
                                                : slave_.answer(frame);
    faults_.spoil(reply, effects);
    if (observer_) {
        observer_(Direction::FromDevice, reply);
    }
    const Time gap = options_.pace ? frameGap() : Time{};
    schedule(reply, end + std::max(options_.turnaround, gap) + effects.delay);
}

void SimulatedLine::hangUp(Time now, Time duration) {
    down_ = true;
    downUntil_ = now + duration;
    output_.clear();
    outputEnd_ = downUntil_;
}

void SimulatedLine::schedule(const Bytes& reply, Time start) {
    const Time perByte = options_.pace ? characterTime() : Time{};
    outputEnd_ = std::max(outputEnd_, start);
    for (const std::uint8_t byte : reply) {
        outputEnd_ += perByte;
        output_.push_back({outputEnd_, byte});
    }
}

std::optional<Time> SimulatedLine::nextEvent() const {
    std::optional<Time> next;
    const auto consider = [&next](Time time) { next = std::min(next.value_or(time), time); };
    if (!output_.empty()) {
        consider(output_.front().due);
    }
    if (!received_.empty() || spoiled_) {
        consider(receivedUntil_ + frameGap());
    }
    if (down_) {
        consider(downUntil_);
    }
    return next;
}

Bytes SimulatedLine::transmit(Time now) {
    endFrameBySilence(now);
    down_ = isDown(now);
    Bytes due;
    while (!output_.empty() && output_.front().due <= now) {
        due.push_back(output_.front().byte);
        output_.pop_front();
    }
    return due;
}

}  // namespace vek::sim
