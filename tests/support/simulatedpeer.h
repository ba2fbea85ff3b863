#pragma once

#include <utility>
#include <vector>

#include "simulator/line.h"
#include "support/fakeserial.h"

namespace vek {

/// A fault of the line at one register.
inline sim::LineFault fault(sim::FaultKind kind, int reg, double amount = 0, unsigned from = 1,
                            unsigned times = 0) {
    return {
        .kind = kind, .amount = amount, .reg = static_cast<std::uint16_t>(reg), .from = from, .times = times};
}

/// A device of the type on a line with these faults.
inline sim::LineOptions deviceOf(int type, std::vector<sim::LineFault> faults = {}) {
    sim::LineOptions options;
    options.device.type = type;
    options.faults = std::move(faults);
    return options;
}

/// A simulated device at the other end of a FakeSerial.
class SimulatedPeer {
  public:
    SimulatedPeer(FakeSerial& serial, const FakeClock& clock, const sim::LineOptions& options);
    SimulatedPeer(const SimulatedPeer&) = delete;
    SimulatedPeer& operator=(const SimulatedPeer&) = delete;
    ~SimulatedPeer();

    sim::SimulatedLine line;

  private:
    void receive(std::string_view frame);

    FakeSerial& serial_;
    const FakeClock& clock_;
};

}  // namespace vek
