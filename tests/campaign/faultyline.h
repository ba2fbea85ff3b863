#pragma once

#include <functional>
#include <random>
#include <string_view>
#include <utility>
#include <vector>

#include "campaign/figures.h"
#include "support/simulatedpeer.h"
#include "support/testprogram.h"

namespace vek {

/// One request of the program and what came of it.
struct Exchange {
    Bytes request;
    Bytes received;      ///< what the program read while it waited for the reply
    Bytes sent;          ///< the device's reply as it was put on the line, spoiled or not
    Bytes genuine;       ///< the same before it was spoiled; Modbus reads only
    bool clean = false;  ///< no fault, and nothing of an earlier exchange still on its way
};

/// A simulated device on a line where anything may go wrong at any request, and a witness of what the program
/// was given to read.
class FaultyLine {
  public:
    FaultyLine(TestProgram& test, const sim::LineOptions& options, Figures& figures);
    FaultyLine(const FaultyLine&) = delete;
    FaultyLine& operator=(const FaultyLine&) = delete;
    ~FaultyLine();

    /// Called before each request.
    std::function<void(std::string_view frame)> beforeRequest;

    /// Number of requests so far.
    std::size_t requests() const { return requests_; }

    /// The exchanges since the last call.
    std::vector<Exchange> take() { return std::exchange(exchanges_, {}); }

    sim::Device& device() { return peer_.line.device(); }

    /// A number from 0 to `end` - 1.
    unsigned draw(unsigned end) { return static_cast<unsigned>(random_() % end); }

  private:
    void begin(std::string_view frame);
    void drawFaults(Exchange& exchange);
    bool strike(std::size_t index);
    bool stayPulledOut();
    void read(std::string_view bytes);
    void observe(sim::SimulatedLine::Direction direction, std::span<const std::uint8_t> frame);
    bool isKdl() const { return test_.program.kdlActive(); }

    TestProgram& test_;
    SimulatedPeer peer_;
    Figures& figures_;
    std::mt19937 random_;
    std::vector<Exchange> exchanges_;
    std::size_t requests_ = 0;
    bool waiting_ = false;  ///< the program waits for the reply to the last exchange
    TimePoint deadline_;
    unsigned pulledOutFor_ = 0;  ///< requests
    TimePoint busyUntil_;        ///< the last byte of all replies so far, should it not be lost before
    Bytes heard_;
    Subscription logged_;
};

/// What every use of the program on such a line has: the program, the line, and where the mismatches go.
class Episode {
  protected:
    Episode(std::uint32_t seed, bool kdl, Figures& figures);

    void expect(bool good, const std::string& what);
    void expectText(const Label& label, const std::string& expected);
    /// Another field that showed what the device sent, or else that there is no value.
    void count(bool value) { ++(value ? figures_.values : figures_.missing); }

    Figures& figures_;
    std::uint32_t seed_;
    TestProgram test_;
    FaultyLine line_;
};

}  // namespace vek
