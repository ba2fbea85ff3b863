#include <QCoreApplication>
#include <QTemporaryDir>
#include <chrono>

#include "launch.h"
#include "report.h"
#include "samples.h"

/// From the start of the process to its first painted window, beside a program that has nothing but a window.
namespace vek::bench {

namespace {

using namespace Qt::StringLiterals;

constexpr int rounds = 40;
constexpr double milliseconds = 1e3;

double secondsToPaint(const QString& program, const QString& folder) {
    const std::chrono::duration<double> begin = std::chrono::steady_clock::now().time_since_epoch();
    return runDriven(program, u"vekpainted"_s, folder).figure - begin.count();
}

void measure() {
    const QTemporaryDir folder;
    const auto seconds =
        interleavedMedians(rounds, {[&] { return secondsToPaint(theProgram, folder.path()); },
                                    [&] { return secondsToPaint(u"bench/emptywindow"_s, folder.path()); }});
    print({"start: first painted window", seconds[0] * milliseconds, seconds[1] * milliseconds, "ms",
           "empty Qt window", 1.5});
}

}  // namespace

}  // namespace vek::bench

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    return vek::bench::run(vek::bench::measure);
}
