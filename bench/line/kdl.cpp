#include <stdexcept>
#include <string_view>

#include "kdl/KDLBusLink.h"
#include "line/device.h"
#include "line/lineprogram.h"
#include "report.h"
#include "samples.h"

/// A transaction on the KDL bus, beside the pause before the request and the time of the bytes.
namespace vek::bench {

namespace {

constexpr int rounds = 60;
constexpr int baudRate = 9600;
constexpr double bitsPerByte = 10;
constexpr double pause = 5e-3;
constexpr double milliseconds = 1e3;

/// The log shows frames without their line ends.
double bytesOfLastTransaction(const LogStore& log) {
    const std::uint64_t end = log.lineCount();
    const std::string_view lineEnd = kdlLineEnd;
    return static_cast<double>(log.line(end - 1).bytes.size() + log.line(end - 2).bytes.size() +
                               2 * lineEnd.size());
}

void measure() {
    sim::LineOptions options;
    options.device.kdl = true;
    options.pace = true;
    options.turnaround = sim::Time{};
    DeviceProcess device(options);
    LineProgram line(device.dataFolder(), baudRate, kdlFrameFormat);
    KdlSetAddress(line.program, "3");
    KdlOpenPort(line.program);
    const auto seconds =
        interleavedMedians(rounds, {[&] {
                               return secondsOf([&] {
                                   if (KdlTransact(line.program, ":IDNM?") == kdlTimeOutError) {
                                       throw std::runtime_error("the device does not answer");
                                   }
                               });
                           }});
    KdlClosePort(line.program);
    print({"KDL: transaction at 9600 baud", seconds[0] * milliseconds,
           (pause + bytesOfLastTransaction(line.program.terminalLog) * bitsPerByte / baudRate) * milliseconds,
           "ms", "5 ms and the bytes", 1.05});
}

}  // namespace

}  // namespace vek::bench

int main() {
    return vek::bench::run(vek::bench::measure);
}
