#include "support/simulatedpeer.h"

#include <chrono>

namespace vek {

namespace {

sim::Time timeOf(const FakeClock& clock) {
    return clock.now().time_since_epoch();
}

}  // namespace

SimulatedPeer::SimulatedPeer(FakeSerial& serial, const FakeClock& clock, const sim::LineOptions& options)
    : line(options, timeOf(clock)), serial_(serial), clock_(clock) {
    serial_.peer = [this](std::string_view frame) { receive(frame); };
}

SimulatedPeer::~SimulatedPeer() {
    serial_.peer = nullptr;
}

void SimulatedPeer::receive(std::string_view frame) {
    const sim::Time now = timeOf(clock_);
    line.receive(sim::Bytes(frame.begin(), frame.end()), now);
    while (const auto next = line.nextEvent()) {
        const sim::Bytes due = line.transmit(*next);
        serial_.reply(Bytes(due.begin(), due.end()), std::chrono::duration_cast<Milliseconds>(*next - now));
    }
}

}  // namespace vek
