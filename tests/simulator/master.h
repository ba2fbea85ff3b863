#pragma once

#include <array>
#include <bit>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

#include "simulator/line.h"
#include "support/hexbytes.h"

namespace vek::sim {

inline Bytes hex(std::string_view text) {
    const std::string bytes = fromHex(text);
    return {bytes.begin(), bytes.end()};
}

inline Bytes withCrc(Bytes frame) {
    appendCrc(frame);
    return frame;
}

inline void appendWord(Bytes& bytes, int word) {
    bytes.push_back(static_cast<std::uint8_t>(word >> 8));
    bytes.push_back(static_cast<std::uint8_t>(word));
}

// A Modbus master at a simulated line, with the clock in its hand.
class Master {
  public:
    explicit Master(const LineOptions& options = {}) : line(options) {}

    // Sends the bytes, collects all that comes back, and leaves a pause before the next request.
    Bytes send(const Bytes& bytes) {
        line.receive(bytes, now);
        Bytes reply = collect();
        now += std::chrono::milliseconds(50);
        return reply;
    }

    Bytes collect() {
        Bytes reply;
        while (const auto next = line.nextEvent()) {
            now = std::max(now, *next);
            const Bytes due = line.transmit(now);
            reply.insert(reply.end(), due.begin(), due.end());
        }
        return reply;
    }

    Bytes readBlock(int start, int count) { return send(request(3, start, count)); }

    // The value of a register, or minus the exception code, or -100 when there is no valid reply.
    int read(int reg) {
        const Bytes reply = readBlock(reg, 1);
        return outcome(reply, reply.size() > 4 ? reply[3] * 256 + reply[4] : 0);
    }

    // 0, or minus the exception code, or -100 when there is no valid reply.
    int write(int start, std::initializer_list<int> words) {
        Bytes frame = request(16, start, static_cast<int>(words.size()), false);
        frame.push_back(static_cast<std::uint8_t>(2 * words.size()));
        for (const int word : words) {
            appendWord(frame, word);
        }
        return outcome(send(withCrc(frame)), 0);
    }

    float value(int channel) {
        const int start = 1000 + 4 * channel;
        const int high = read(start);
        return std::bit_cast<float>(static_cast<std::uint32_t>(high) << 16U |
                                    static_cast<std::uint32_t>(read(start + 1)));
    }
    int status(int channel) { return read(1002 + 4 * channel); }
    int description(int channel) { return read(1003 + 4 * channel); }

    void wait(double seconds) { now += fromSeconds(seconds); }

    SimulatedLine line;
    Time now{};
    std::uint8_t address = 3;

  private:
    Bytes request(int function, int start, int count, bool complete = true) const {
        Bytes frame{address, static_cast<std::uint8_t>(function)};
        appendWord(frame, start);
        appendWord(frame, count);
        return complete ? withCrc(frame) : frame;
    }

    static int outcome(const Bytes& reply, int value) {
        if (!hasValidCrc(reply)) {
            return -100;
        }
        return (reply[1] & 0x80) != 0 ? -reply[2] : value;
    }
};

inline LineOptions ofType(int type) {
    LineOptions options;
    options.device.type = type;
    return options;
}

}  // namespace vek::sim
