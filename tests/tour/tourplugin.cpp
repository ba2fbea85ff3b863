#include "tourplugin.h"

#include <QObject>
#include <QString>
#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <thread>

#include "chapters.h"
#include "tour.h"

namespace {

using namespace Qt::StringLiterals;

void allWindows(Tour& tour) {
    mainJob(tour);
    registerTools(tour);
    kdlBus(tour);
    battery(tour);
    parameters(tour);
    kdlDeviceWork(tour);
}

void secondRun(Tour& tour) {
    modbusDeviceWork(tour);
    endProgram(tour);
}

void longRun(Tour& tour) {
    soak(tour);
    endProgram(tour);
}

/// One run of the program.
struct Run {
    QString name;
    void (*chapters)(Tour&);
};

void runTour() {
    const std::array<Run, 3> runs = {{{{}, allWindows}, {u"second"_s, secondRun}, {u"soak"_s, longRun}}};
    const QString chosen = qEnvironmentVariable("TOUR_CHAPTER");
    try {
        Tour tour(qEnvironmentVariable("TOUR_FOLDER"));
        std::ranges::find(runs, chosen, &Run::name)->chapters(tour);
    } catch (const std::exception& failure) {
        std::printf("\n  FAILED: %s\n", failure.what());
        std::fflush(stdout);
        std::_Exit(1);
    }
}

}  // namespace

QObject* TourPlugin::create(const QString& name, const QString& parameters) {
    Q_UNUSED(name)
    Q_UNUSED(parameters)
    // A thread of its own, as the user sits outside the program, too; it goes with the process.
    std::thread(runTour).detach();
    return new QObject;
}
