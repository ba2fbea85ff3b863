#include "steps.h"

#include <QWidget>

#include "tour.h"

using namespace Qt::StringLiterals;

const QColor green(0, 255, 0);
const QColor yellow(255, 255, 0);
const QColor red(255, 0, 0);
const QColor grey(192, 192, 192);

void expectIndicator(Tour& tour, const QString& name, const QColor& color, const QString& meaning,
                     int seconds) {
    tour.waitFor(
        u"%1 %2"_s.arg(name, meaning),
        [&] {
            QWidget* lamp = Tour::find(name);
            return lamp != nullptr && lamp->grab().toImage().pixelColor(lamp->rect().center()) == color;
        },
        seconds);
    tour.saw(u"%1 %2, value %3 %4, \"%5\""_s.arg(name, meaning, tour.text(u"lblMesswert_0"_s),
                                                 tour.text(u"lblEinheit_0"_s),
                                                 tour.text(u"lblMessName_0"_s)));
}

void stopMonitor(Tour& tour) {
    tour.step(u"\"Stop\""_s);
    tour.press(u"cmdStop"_s);
    tour.waitFor(u"\"Start Monitor\" can be pressed again"_s,
                 [] { return Tour::find(u"cmdRunMonitor"_s)->isEnabled(); });
    const auto lines = [&] { return tour.text(u"RichTextBox1"_s).count(u'\n'); };
    const auto atStop = lines();
    tour.saw(u"the poll has ended, %1 lines in the terminal"_s.arg(atStop));
    tour.press(u"cmdClose"_s);
    tour.waitFor(u"the monitor closes"_s, [] { return Tour::find(u"cmdRunMonitor"_s) == nullptr; });
    if (lines() != atStop) {
        throw TourFailure(u"frames were sent after the stop"_s);
    }
}
