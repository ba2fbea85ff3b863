#include "driver.h"

#include <QApplication>
#include <QThread>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <exception>
#include <thread>

#include "tour/tour.h"

namespace {

using namespace Qt::StringLiterals;

constexpr int settleSeconds = 3;
constexpr int measuredSeconds = 20;

[[noreturn]] void finish(double figure, double rate = 0) {
    std::printf("figure %.9g %.9g\n", figure, rate);
    std::fflush(stdout);
    std::_Exit(0);
}

qsizetype loggedLines(Tour& tour) {
    return tour.text(u"RichTextBox1"_s).count(u'\n');
}

/// What the whole process takes while this thread only sleeps.
[[noreturn]] void measureProcessor(Tour& tour) {
    using Clock = std::chrono::steady_clock;
    QThread::sleep(settleSeconds);
    const qsizetype lines = loggedLines(tour);
    const auto begin = Clock::now();
    const std::clock_t used = std::clock();
    QThread::sleep(measuredSeconds);
    const double processor = static_cast<double>(std::clock() - used) / CLOCKS_PER_SEC;
    const double seconds = std::chrono::duration<double>(Clock::now() - begin).count();
    finish(processor / seconds, static_cast<double>(loggedLines(tour) - lines) / seconds);
}

void idle(Tour& tour) {
    tour.text(u"frmModBus"_s);
    measureProcessor(tour);
}

void monitor(Tour& tour) {
    tour.menu({u"Einstellungen"_s, u"Geräteadresse"_s});
    tour.type(u"cmbGeraeteAdresse"_s, u"3"_s);
    tour.press(u"btnÜbernehmen"_s);
    tour.answer(u"Hinweis"_s, u"Das Gerät vekQB731-K7W-2 wurde gefunden!"_s, QMessageBox::Ok);
    tour.menu({u"Start"_s, u"Geräte"_s, u"Monitor"_s});
    tour.press(u"cmdRunMonitor"_s);
    tour.expectText(u"lblDevName"_s, u"vekQB731-K7W-2"_s);
    measureProcessor(tour);
}

void drive(void (*story)(Tour&)) {
    try {
        Tour tour{QString()};
        story(tour);
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "%s\n", failure.what());
        std::_Exit(1);
    }
}

}  // namespace

QObject* BenchDriver::create(const QString& name, const QString& parameters) {
    Q_UNUSED(parameters)
    // A thread of its own, as the user sits outside the program, too; it goes with the process.
    std::thread(drive, name == u"vekmonitor"_s ? monitor : idle).detach();
    return new QObject;
}
