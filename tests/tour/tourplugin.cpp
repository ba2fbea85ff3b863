#include "tourplugin.h"

#include <QObject>
#include <QString>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <thread>

#include "interpreter.h"

namespace {

using namespace Qt::StringLiterals;

void runTour() {
    try {
        Interpreter(QStringLiteral(TOUR_STEPS), qEnvironmentVariable("TOUR_FOLDER"))
            .run(qEnvironmentVariable("TOUR_RUN"));
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
