#include <modbus/modbus.h>

#include <array>
#include <cerrno>
#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "devicemodel/measurementchannel.h"
#include "line/device.h"
#include "line/lineprogram.h"
#include "modbus/ModBus.h"
#include "monitor/modbuspoll.h"
#include "report.h"
#include "samples.h"

/// The reads of one monitor cycle, beside libmodbus reading the same from the same device over the same
/// pseudo-terminal. Whoever has its turn opens the port, which does not count, and closes it again.
namespace vek::bench {

namespace {

constexpr int rounds = 1500;
constexpr double microseconds = 1e6;
constexpr int baudRate = 115200;

struct Read {
    std::uint16_t start, count;
};

/// As a monitor reads a channel: value, status, description.
std::vector<Read> cycleReads() {
    std::vector<Read> reads;
    for (int slot = 0; slot < polledChannels; ++slot) {
        const auto start = static_cast<std::uint16_t>(channelStartRegister(slot));
        reads.insert(reads.end(), {{start, 2},
                                   {static_cast<std::uint16_t>(start + 2), 1},
                                   {static_cast<std::uint16_t>(start + 3), 1}});
    }
    return reads;
}

class Peer {
  public:
    explicit Peer(const std::string& path)
        : line_(modbus_new_rtu(path.c_str(), baudRate, 'N', 8, 1), &modbus_free) {
        check(line_ ? modbus_set_slave(line_.get(), 3) : -1);
    }

    double cycle(const std::vector<Read>& reads) {
        check(modbus_connect(line_.get()));
        const double seconds = secondsOf([&] {
            for (const Read& read : reads) {
                check(modbus_read_registers(line_.get(), read.start, read.count, values_.data()));
            }
        });
        modbus_close(line_.get());
        return seconds;
    }

  private:
    static void check(int result) {
        if (result < 0) {
            throw std::runtime_error(std::string("libmodbus: ") + modbus_strerror(errno));
        }
    }

    std::unique_ptr<modbus_t, decltype(&modbus_free)> line_;
    std::array<std::uint16_t, MODBUS_MAX_READ_REGISTERS> values_{};
};

double ourCycle(Program& program, const std::vector<Read>& reads) {
    OpenPort(program);
    const double seconds = secondsOf([&] {
        for (const Read& read : reads) {
            if (!readData(program, read.start, read.count)) {
                throw std::runtime_error("no data");
            }
        }
    });
    ClosePort(program);
    return seconds;
}

/// What the log alone costs: the last lines of one appended to another.
double logCycle(const LogStore& log, LogStore& copy, std::size_t lineCount) {
    std::vector<LogLine> lines;
    for (std::uint64_t index = log.lineCount() - lineCount; index < log.lineCount(); ++index) {
        lines.push_back(log.line(index));
    }
    return secondsOf([&] {
        for (const LogLine& line : lines) {
            copy.append(line.color, line.form, line.bytes);
        }
    });
}

void measure() {
    sim::LineOptions options;
    options.device.baudRate = baudRate;
    options.device.parity = 0;
    options.turnaround = sim::Time{};
    DeviceProcess device(options);
    LineProgram ours(device.dataFolder(), baudRate, ",n,8,1");
    Peer peer(device.path());
    LogStore copy;
    const std::vector<Read> reads = cycleReads();

    const auto seconds = interleavedMedians(
        rounds, {[&] { return ourCycle(ours.program, reads); }, [&] { return peer.cycle(reads); },
                 [&] { return logCycle(ours.program.terminalLog, copy, 2 * reads.size()); }});
    const double theirs = seconds[1] * microseconds;
    print({"transaction: 27 reads of a monitor cycle", seconds[0] * microseconds, theirs, "us", "libmodbus",
           1.05});
    print({"transaction: the same without the log's share", (seconds[0] - seconds[2]) * microseconds, theirs,
           "us", "libmodbus", 1.0});
}

}  // namespace

}  // namespace vek::bench

int main() {
    return vek::bench::run(vek::bench::measure);
}
