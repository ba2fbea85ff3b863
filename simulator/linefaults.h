#pragma once

#include <cstdint>
#include <optional>
#include <random>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "simulator/modbusslave.h"
#include "simulator/time.h"

namespace vek::sim {

enum class FaultKind : std::uint8_t {
    Silence,    // the request is not heard at all
    Late,       // the reply comes `amount` milliseconds late
    Slow,       // the bytes of the reply come one by one with `amount` milliseconds between them
    WrongCrc,   // the request is carried out and its reply sent with a wrong CRC or trailer
    Cut,        // only the first `amount` bytes of the reply are sent
    Unended,    // the reply lacks its CR LF, if it has one
    Noise,      // `amount` arbitrary bytes come right before the reply
    Early,      // `amount` arbitrary bytes come as soon as the request has been heard
    Trail,      // `amount` arbitrary bytes come right after the reply
    Flip,       // `amount` bits of the reply are turned over, anywhere in it
    Double,     // the reply comes twice
    Foreign,    // the reply names another device, and is right otherwise
    Echo,       // the request comes back, as an adapter sends it that hears itself, before the reply
    Exception,  // the request is not carried out but refused with code `amount`
    Lacks,      // as if the register did not exist
    Refuses,    // as if the register took no value
    HangUp,     // the line breaks at the request and is back after `amount` seconds
};

// What a fault can be meant for: the head of a Modbus request or the command of a KDL request.
struct LineRequest {
    RequestHead head;
    std::string_view command;
};

// Something that goes wrong on the line, and with which requests it does. The requests that fit `reg` and
// `command` are counted from 1; of these the fault strikes from the `from`th on, each one whose number
// divides by `every`, and no more than `times` times (0: no limit).
struct LineFault {
    FaultKind kind = FaultKind::Silence;
    double amount = 0;
    std::optional<std::uint16_t> reg;
    std::string command{};  // how a KDL command begins after its ":"; empty for all requests
    unsigned every = 1;
    unsigned from = 1;
    unsigned times = 0;
};

// Reads KIND[=AMOUNT][,register=R][,command=C][,every=N][,from=M][,times=K]. Returns what is wrong with it as
// a text.
std::variant<LineFault, std::string> parseFault(std::string_view text);
// One English phrase for a summary.
std::string describe(const LineFault& fault);
// The kinds with their meaning, one line each, as a help text.
std::string faultHelp();

// What happens to one request.
struct FaultEffects {
    bool silent = false;
    Time delay{};
    Time byteGap{};
    bool wrongChecksum = false;
    std::optional<std::size_t> cutAfter;
    bool unended = false;
    std::size_t noise = 0;
    std::size_t earlyNoise = 0;
    std::size_t trailingNoise = 0;
    std::size_t flippedBits = 0;
    bool twice = false;
    bool foreign = false;
    bool echo = false;
    std::optional<std::uint8_t> exception;
    std::optional<Time> hangUp;
};

// All faults of a line, with their counts.
class FaultPlan {
  public:
    explicit FaultPlan(std::uint32_t seed) : random_(seed) {}

    void add(const LineFault& fault) { faults_.push_back({fault}); }
    void clear() { faults_.clear(); }
    // Counts the request and returns what strikes it.
    FaultEffects strike(const LineRequest& request);
    // Spoils the bytes of a reply.
    void spoil(Bytes& reply, const FaultEffects& effects, Protocol protocol);
    // Arbitrary bytes as the protocol's characters can carry them; they repeat from run to run.
    Bytes noise(std::size_t count, Protocol protocol);

  private:
    struct Entry {
        LineFault fault;
        unsigned requests = 0;
        unsigned strikes = 0;
    };
    static bool strikes(Entry& entry, const LineRequest& request);

    std::vector<Entry> faults_;
    std::mt19937 random_;
};

}  // namespace vek::sim
