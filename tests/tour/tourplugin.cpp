#include "tourplugin.h"

#include <QObject>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <thread>

#include "chapters.h"
#include "tour.h"

namespace {

void allWindows(Tour& tour) {
    mainJob(tour);
    registerTools(tour);
    kdlBus(tour);
    battery(tour);
    parameters(tour);
}

void runTour() {
    try {
        Tour tour(qEnvironmentVariable("TOUR_FOLDER"));
        if (qEnvironmentVariable("TOUR_CHAPTER") == QStringLiteral("soak")) {
            soak(tour);
        } else {
            allWindows(tour);
        }
        endProgram(tour);
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
