#include "simulator/line.h"

#include <algorithm>
#include <utility>

namespace vek::sim {
namespace {

using namespace std::chrono_literals;

constexpr std::size_t longestFrame = 256;
constexpr Time shortestGap = 1750us;
constexpr std::uint8_t broadcastAddress = 0;

// The same reply as a neighbour would send it.
Bytes fromNeighbour(Bytes frame) {
    ++frame.front();
    frame.resize(frame.size() - 2);
    appendCrc(frame);
    return frame;
}

}  // namespace

SimulatedLine::SimulatedLine(const LineOptions& options, Time start)
    : options_(options),
      device_(options.device, start),
      modbus_(device_),
      kdl_(device_),
      faults_(options.device.seed),
      settings_(device_.busSettings()),
      receivedUntil_(start),
      outputEnd_(start),
      downUntil_(start) {
    for (const LineFault& fault : options.faults) {
        faults_.add(fault);
    }
}

Time SimulatedLine::characterTime() const {
    return Time(1s) * settings_.bitsPerCharacter / settings_.baudRate;
}

Time SimulatedLine::silentInterval() const {
    return std::max(shortestGap, characterTime() * 7 / 2);
}

Time SimulatedLine::frameGap() const {
    return std::max(options_.frameGap, silentInterval());
}

Time SimulatedLine::turnaround() const {
    constexpr Time usual = std::chrono::milliseconds(5);
    const bool keepsSilence = options_.pace && protocol() == Protocol::Modbus;
    return options_.turnaround.value_or(std::max(usual, keepsSilence ? silentInterval() : Time{}));
}

void SimulatedLine::receive(std::span<const std::uint8_t> bytes, Time now) {
    endFrameBySilence(now);
    const bool understood = !masterBaudRate_.has_value() || *masterBaudRate_ == settings_.baudRate;
    if (isDown(now) || !understood || bytes.empty()) {
        return;
    }
    const Time perByte = options_.pace ? characterTime() : Time{};
    receivedUntil_ = std::max(receivedUntil_, now) + perByte * static_cast<Time::rep>(bytes.size());
    received_.insert(received_.end(), bytes.begin(), bytes.end());
    if (protocol() == Protocol::Kdl) {
        takeKdl();
    } else {
        takeModbus();
    }
}

// The known requests tell their length, so that a reply need not wait for the silence after them. Anything
// else (a wrong CRC, a byte too many, an unknown function) lies there until silence ends it.
void SimulatedLine::takeModbus() {
    spoiled_ = spoiled_ || received_.size() > longestFrame;
    if (spoiled_) {
        received_.clear();
    } else if (requestLength(received_) == received_.size() && hasValidCrc(received_)) {
        handleModbus(std::exchange(received_, {}), receivedUntil_);
    }
}

// A line ends with its CR LF however long that takes.
void SimulatedLine::takeKdl() {
    while (protocol() == Protocol::Kdl) {
        const auto end =
            std::search(received_.begin(), received_.end(), kdlLineEnd.begin(), kdlLineEnd.end());
        if (end == received_.end()) {
            break;
        }
        const Bytes line(received_.begin(), end);
        received_.erase(received_.begin(), end + kdlLineEnd.size());
        const auto request = parseKdlRequest(line);
        if (request.has_value() && request->address == settings_.address) {
            handleKdl(*request, line, receivedUntil_);
        }
    }
    if (received_.size() > longestFrame) {
        received_.erase(received_.begin(), received_.end() - longestFrame);
    }
}

bool SimulatedLine::awaitsSilence() const {
    return protocol() == Protocol::Modbus && (spoiled_ || !received_.empty());
}

void SimulatedLine::endFrameBySilence(Time now) {
    if (!awaitsSilence() || now < receivedUntil_ + frameGap()) {
        return;
    }
    const Bytes frame = std::exchange(received_, {});
    const bool unknownFunction = !requestLength(frame).has_value();
    if (!std::exchange(spoiled_, false) && unknownFunction && hasValidCrc(frame)) {
        handleModbus(frame, receivedUntil_);
    }
}

void SimulatedLine::handleModbus(const Bytes& frame, Time end) {
    const RequestHead head = parseHead(frame);
    const bool forMe = head.address == settings_.address;
    if (!forMe && head.address != broadcastAddress) {
        return;
    }
    begin(frame, end);
    if (!forMe) {
        if (head.isWrite()) {
            modbus_.answer(frame);
        }
    } else if (const auto effects = admit({head, {}}, end)) {
        echo(frame, *effects, end);
        const Bytes bytes = effects->exception.has_value()
                                ? ModbusSlave::exceptionReply(head, *effects->exception)
                                : modbus_.answer(frame);
        reply(effects->foreign ? fromNeighbour(bytes) : bytes, *effects, end);
    }
    // The reply has still been timed by the old settings; from here on the new ones count.
    settings_ = device_.busSettings();
}

void SimulatedLine::handleKdl(const KdlRequest& request, const Bytes& line, Time end) {
    begin(line, end);
    if (const auto effects = admit({{}, request.command}, end)) {
        Bytes heard = line;
        heard.insert(heard.end(), kdlLineEnd.begin(), kdlLineEnd.end());
        echo(heard, *effects, end);
        const int neighbours = effects->foreign ? 1 : 0;
        const std::string text =
            kdlReply(static_cast<std::uint16_t>(settings_.address + neighbours),
                     effects->exception.has_value() ? KdlSlave::refusal(*effects->exception)
                                                    : kdl_.answer(request.command));
        reply(Bytes(text.begin(), text.end()), *effects, end);
    }
    settings_ = device_.busSettings();
}

void SimulatedLine::begin(const Bytes& frame, Time end) {
    if (observer_) {
        observer_(Direction::ToDevice, frame);
    }
    device_.advance(end);
}

// What happens to a request, or nothing when it does not even reach the device.
std::optional<FaultEffects> SimulatedLine::admit(const LineRequest& request, Time end) {
    const FaultEffects effects = faults_.strike(request);
    if (effects.hangUp.has_value()) {
        hangUp(end, *effects.hangUp);
    }
    return effects.hangUp.has_value() || effects.silent ? std::nullopt : std::optional(effects);
}

void SimulatedLine::echo(const Bytes& request, const FaultEffects& effects, Time end) {
    if (effects.echo) {
        schedule(request, end, {});
    }
}

void SimulatedLine::reply(Bytes bytes, const FaultEffects& effects, Time end) {
    schedule(faults_.noise(effects.earlyNoise, protocol()), end, {});
    faults_.spoil(bytes, effects, protocol());
    if (observer_) {
        observer_(Direction::FromDevice, bytes);
    }
    schedule(bytes, end + turnaround() + effects.delay, effects.byteGap);
}

void SimulatedLine::hangUp(Time now, Time duration) {
    down_ = true;
    downUntil_ = now + duration;
    received_.clear();
    output_.clear();
    outputEnd_ = downUntil_;
}

void SimulatedLine::schedule(const Bytes& bytes, Time start, Time gap) {
    if (bytes.empty()) {
        return;  // a reply that never comes keeps the line free
    }
    const Time perByte = gap + (options_.pace ? characterTime() : Time{});
    outputEnd_ = std::max(outputEnd_, start);
    for (const std::uint8_t byte : bytes) {
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
    if (awaitsSilence()) {
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
