#include "steps.h"

#include <QProgressBar>
#include <QWidget>
#include <array>

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

void chooseInterface(Tour& tour, const InterfaceChoice& choice) {
    constexpr int kdlProtocol = 8;
    constexpr std::array rates = {1200, 2400, 4800, 9600, 19200, 38400, 57600, 115200, 9600};
    const bool kdl = choice.protocol == kdlProtocol;
    tour.menu({u"Einstellungen"_s, u"Schnittstelle"_s});
    tour.press(u"optCom_%1"_s.arg(choice.port - 1));
    tour.press(u"optBaud_%1"_s.arg(choice.protocol));
    tour.press(u"opt8e1"_s);
    tour.press(u"btnOk"_s);
    // While no profile is chosen, the dialog has nowhere to store its three settings.
    for (int setting = 0; setting < 3 && !choice.storable; ++setting) {
        tour.answer(u"Fehler"_s, u"Keine gültige Parameter-Datei vorhanden"_s, QMessageBox::Ok);
    }
    tour.expectText(u"sbStatusBar_1"_s, u"%1-Port = COM%2, %3%4"_s.arg(kdl ? u"KDL"_s : u"ModBus RTU"_s)
                                            .arg(choice.port)
                                            .arg(rates.at(static_cast<std::size_t>(choice.protocol)))
                                            .arg(kdl ? u",e,7,1"_s : u",e,8,1"_s));
}

void findDevice(Tour& tour, int address, const QString& name) {
    tour.menu({u"Einstellungen"_s, u"Geräteadresse"_s});
    tour.type(u"cmbGeraeteAdresse"_s, QString::number(address));
    tour.press(u"btnÜbernehmen"_s);
    tour.answer(u"Hinweis"_s, u"Das Gerät %1 wurde gefunden!"_s.arg(name), QMessageBox::Ok);
}

void setParameters(Tour& tour) {
    tour.press(u"cmdWritePara"_s);
    // Over Modbus, whatever is asked next is answered after the writing, which handles no events.
    tour.waitFor(u"all parameters are written"_s, [] {
        const auto* bar = qobject_cast<QProgressBar*>(Tour::find(u"prgFortschritt"_s));
        return bar->value() == bar->maximum() && Tour::find(u"cmdWritePara"_s)->isEnabled();
    });
    tour.saw(u"\"Parameter setzen\" has run"_s);
}

void readParameters(Tour& tour) {
    tour.press(u"cmdReadPara"_s);
    tour.waitFor(u"all parameters are read"_s, [] { return Tour::find(u"cmdReadPara"_s)->isEnabled(); });
    tour.saw(u"\"Parameter auslesen\" has run"_s);
}

void stopPoll(Tour& tour) {
    tour.press(u"cmdStop"_s);
    tour.waitFor(u"\"Start Monitor\" can be pressed again"_s,
                 [] { return Tour::find(u"cmdRunMonitor"_s)->isEnabled(); });
}

void stopMonitor(Tour& tour) {
    tour.step(u"\"Stop\""_s);
    stopPoll(tour);
    const auto lines = [&] { return tour.text(u"RichTextBox1"_s).count(u'\n'); };
    const auto atStop = lines();
    tour.saw(u"the poll has ended, %1 lines in the terminal"_s.arg(atStop));
    tour.press(u"cmdClose"_s);
    tour.waitFor(u"the monitor closes"_s, [] { return Tour::find(u"cmdRunMonitor"_s) == nullptr; });
    if (lines() != atStop) {
        throw TourFailure(u"frames were sent after the stop"_s);
    }
}
