#include <chrono>
#include <memory>
#include <string>
#include <vector>

#include "line/device.h"
#include "line/lineprogram.h"
#include "monitor/frmMbMonitor.h"
#include "report.h"
#include "samples.h"

/// How much of the line's time the monitor uses: the time of a cycle (nine times that of the middle one of
/// all channels, which are equally long on the line), beside what the bytes of its requests and replies take
/// at the baud rate. The device answers at once, without the silence that a real one keeps before its reply:
/// that would be its own time.
namespace vek::bench {

namespace {

constexpr double milliseconds = 1e3;
constexpr double bitsPerByte = 11;

struct Rate {
    int baudRate;
    int cycles;
    double bound;
};
constexpr Rate rates[] = {{1200, 1, 1.02}, {9600, 5, 1.02}, {57600, 30, 1.10}, {115200, 60, 1.10}};

/// The end of a channel's three transactions.
struct Mark {
    TimePoint time;
    std::uint64_t logLines;
};

/// The ends of all channels in that many cycles of the real monitor.
std::vector<Mark> runMonitor(LineProgram& line, int cycles) {
    std::vector<Mark> marks;
    line.desktop.onEvents = [&] {
        marks.push_back({Clock::now(), line.program.terminalLog.lineCount()});
        line.program.MonitorRunning = static_cast<int>(marks.size()) <= (cycles - 1) * polledChannels;
    };
    auto& monitor = line.program.windows.open(std::make_unique<frmMbMonitor>(line.program));
    monitor.cmdRunMonitor.click();
    line.desktop.onEvents = nullptr;
    return marks;
}

/// The log holds both frames of each transaction.
std::size_t bytesBetween(const LogStore& log, const Mark& begin, const Mark& end) {
    std::size_t count = 0;
    for (std::uint64_t index = begin.logLines; index < end.logLines; ++index) {
        count += log.line(index).bytes.size();
    }
    return count;
}

void measure(const Rate& rate) {
    sim::LineOptions options;
    options.device.baudRate = rate.baudRate;
    options.pace = true;
    options.turnaround = sim::Time{};
    DeviceProcess device(options);
    LineProgram line(device.dataFolder(), rate.baudRate, ",e,8,1");
    const std::vector<Mark> marks = runMonitor(line, rate.cycles);

    std::vector<double> channels;
    for (std::size_t index = 1; index < marks.size(); ++index) {
        channels.push_back(std::chrono::duration<double>(marks[index].time - marks[index - 1].time).count());
    }
    const auto bytes = static_cast<double>(bytesBetween(line.program.terminalLog, marks[0], marks[1]));
    print({"line use: monitor cycle at " + std::to_string(rate.baudRate) + " baud",
           polledChannels * median(channels) * milliseconds,
           polledChannels * bytes * bitsPerByte / rate.baudRate * milliseconds, "ms", "bytes on the line",
           rate.bound});
}

void measureAll() {
    for (const Rate& rate : rates) {
        measure(rate);
    }
}

}  // namespace

}  // namespace vek::bench

int main() {
    return vek::bench::run(vek::bench::measureAll);
}
