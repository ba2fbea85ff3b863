#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <optional>
#include <span>
#include <vector>

#include "simulator/device.h"
#include "simulator/kdlframe.h"
#include "simulator/kdlslave.h"
#include "simulator/linefaults.h"
#include "simulator/modbusslave.h"
#include "simulator/time.h"

namespace vek::sim {

struct LineOptions {
    DeviceOptions device;
    std::vector<LineFault> faults;
    // Whether bytes take their time at the device's baud rate; without it they pass at once.
    bool pace = false;
    // From the end of a request to the start of its reply. By itself 5 ms, and on a Modbus line with pace at
    // least the silence that tells frames apart.
    std::optional<Time> turnaround;
    // A gap of this length ends a Modbus frame; never less than 3.5 characters or 1.75 ms.
    Time frameGap{};
};

// A device at the end of a serial line, byte by byte, on a clock that the caller owns. Hand in what the
// master sends, ask when something is due, and fetch it then:
//
//     SimulatedLine line(options);
//     line.receive(request, now);
//     while (auto next = line.nextEvent()) {
//         now = *next;
//         append(reply, line.transmit(now));
//     }
//
// Times must not run backwards from call to call.
class SimulatedLine {
  public:
    enum class Direction : std::uint8_t { ToDevice, FromDevice };
    // Sees every request frame that was taken and every reply as it is going to be sent.
    using Observer = std::function<void(Direction, std::span<const std::uint8_t>)>;

    explicit SimulatedLine(const LineOptions& options, Time start = {});
    SimulatedLine(const SimulatedLine&) = delete;
    SimulatedLine& operator=(const SimulatedLine&) = delete;

    // Bytes of the master, the first of which starts at `now`. Lost while the line is down.
    void receive(std::span<const std::uint8_t> bytes, Time now);
    // When transmit() is to be called next: bytes are due, a frame ends by silence or the line comes back.
    // Nothing while all is quiet. May be in the past.
    std::optional<Time> nextEvent() const;
    // The bytes that are due by `now`, each one once.
    Bytes transmit(Time now);
    // Whether a hang-up lasts; whoever owns the real line takes it down meanwhile.
    bool isDown(Time now) const { return down_ && now < downUntil_; }

    // The rate at which the master sends, if known. At another rate than its own the device understands
    // nothing.
    void setMasterBaudRate(std::optional<int> baudRate) { masterBaudRate_ = baudRate; }
    void setObserver(Observer observer) { observer_ = std::move(observer); }

    // What the device speaks. To an observer: the protocol of the frame it sees.
    Protocol protocol() const { return settings_.protocol; }
    Device& device() { return device_; }
    FaultPlan& faults() { return faults_; }

  private:
    struct DueByte {
        Time due;
        std::uint8_t byte;
    };

    Time characterTime() const;
    Time silentInterval() const;
    Time frameGap() const;
    Time turnaround() const;
    void endFrameBySilence(Time now);
    bool awaitsSilence() const;
    void takeModbus();
    void takeKdl();
    void handleModbus(const Bytes& frame, Time end);
    void handleKdl(const KdlRequest& request, const Bytes& line, Time end);
    void begin(const Bytes& frame, Time end);
    std::optional<FaultEffects> admit(const LineRequest& request, Time end);
    void echo(const Bytes& request, const FaultEffects& effects, Time end);
    void reply(Bytes bytes, const FaultEffects& effects, Time end);
    void hangUp(Time now, Time duration);
    void schedule(const Bytes& bytes, Time start, Time gap);

    LineOptions options_;
    Device device_;
    ModbusSlave modbus_;
    KdlSlave kdl_;
    FaultPlan faults_;
    Observer observer_;
    std::optional<int> masterBaudRate_;
    InterfaceSettings settings_;  // as the device uses it; follows the parameters after each reply
    Bytes received_;
    bool spoiled_ = false;  // what has been received can be no frame any more
    Time receivedUntil_;
    std::deque<DueByte> output_;
    Time outputEnd_;
    bool down_ = false;
    Time downUntil_;
};

}  // namespace vek::sim
