#include <QCoreApplication>
#include <QTemporaryDir>
#include <chrono>
#include <cstddef>

#include "launch.h"
#include "report.h"
#include "samples.h"

/// From the start of the process to its first painted window, beside a program that has nothing but a window;
/// and beside the same with a word in it, since whoever writes anything has to find the system's fonts first.
namespace vek::bench {

namespace {

using namespace Qt::StringLiterals;

constexpr int rounds = 40;
constexpr double milliseconds = 1e3;

/// A start of the program, or of one with nothing but a window, as a sample.
Sample startOf(const QString& program, const QString& folder, const QStringList& arguments = {}) {
    return [=] {
        const std::chrono::duration<double> begin = std::chrono::steady_clock::now().time_since_epoch();
        return runDriven(program, u"vekpainted"_s, folder, arguments).figure - begin.count();
    };
}

void measure() {
    const QTemporaryDir folder;
    const QString window = u"bench/emptywindow"_s;
    const auto seconds =
        interleavedMedians(rounds, {startOf(theProgram, folder.path()), startOf(window, folder.path()),
                                    startOf(window, folder.path(), {u"Text"_s})});
    const auto report = [&](std::size_t peer, const char* name) {
        print({"start: first painted window", seconds[0] * milliseconds, seconds[peer] * milliseconds, "ms",
               name, 1.5});
    };
    report(1, "empty Qt window");
    report(2, "Qt window with a word");
}

}  // namespace

}  // namespace vek::bench

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    return vek::bench::run(vek::bench::measure);
}
