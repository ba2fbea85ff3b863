#pragma once

#include <chrono>

#include "simulator/line.h"
#include "support/fakeserial.h"

namespace vek {

/// A simulated device at the other end of a FakeSerial.
class SimulatedPeer {
  public:
    SimulatedPeer(FakeSerial& serial, const FakeClock& clock, const sim::LineOptions& options)
        : line(options, clock.now().time_since_epoch()), serial_(serial), clock_(clock) {
        serial_.peer = [this](std::string_view frame) { receive(frame); };
    }
    SimulatedPeer(const SimulatedPeer&) = delete;
    SimulatedPeer& operator=(const SimulatedPeer&) = delete;
    ~SimulatedPeer() { serial_.peer = nullptr; }

    sim::SimulatedLine line;

  private:
    void receive(std::string_view frame) {
        const sim::Time now = clock_.now().time_since_epoch();
        line.receive(sim::Bytes(frame.begin(), frame.end()), now);
        while (const auto next = line.nextEvent()) {
            const sim::Bytes due = line.transmit(*next);
            serial_.reply(Bytes(due.begin(), due.end()),
                          std::chrono::duration_cast<Milliseconds>(*next - now));
        }
    }

    FakeSerial& serial_;
    const FakeClock& clock_;
};

}  // namespace vek
