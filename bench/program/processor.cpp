#include <QCoreApplication>
#include <QTemporaryDir>
#include <stdexcept>
#include <string>

#include "launch.h"
#include "line/device.h"
#include "report.h"

/// What the program with its windows takes of a processor: while it polls a device at 9600 baud, which leaves
/// no pause between its frames, and while it has nothing to do.
namespace vek::bench {

namespace {

using namespace Qt::StringLiterals;

constexpr double busyLimit = 0.05;
constexpr double idleLimit = 0.001;
constexpr double milliseconds = 1e3;

/// Frames in a second below which it is not a poll that was measured.
constexpr double leastRate = 20;

void report(const std::string& what, const Finding& found, double limit) {
    print({"processor: " + what, found.figure * milliseconds, limit * milliseconds, "ms/s", "limit", 1.0});
}

void measureMonitor(const std::string& name, bool kdl, const QByteArray& frame) {
    sim::LineOptions options;
    options.device.kdl = kdl;
    options.pace = true;
    options.turnaround = sim::Time{};
    const DeviceProcess device(options);
    const QString folder = QString::fromStdString(device.dataFolder());
    writeSettings(folder, frame);
    const Finding found = runDriven(theProgram, u"vekmonitor"_s, folder);
    if (found.rate < leastRate) {
        throw std::runtime_error("the poll of the " + name + " stood still");
    }
    report(name + ", " + std::to_string(static_cast<int>(found.rate)) + " frames/s", found, busyLimit);
}

void measure() {
    measureMonitor("Modbus monitor", false, ",e,8,1");
    measureMonitor("KDL monitor", true, ",e,7,1");
    const QTemporaryDir folder;
    report("nothing to do", runDriven(theProgram, u"vekidle"_s, folder.path()), idleLimit);
}

}  // namespace

}  // namespace vek::bench

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    return vek::bench::run(vek::bench::measure);
}
