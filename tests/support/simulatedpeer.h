#pragma once

#include "simulator/line.h"
#include "support/fakeserial.h"

namespace vek {

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
