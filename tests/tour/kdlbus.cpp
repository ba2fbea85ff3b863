#include <QSlider>

#include "chapters.h"
#include "steps.h"
#include "tour.h"

namespace {

using namespace Qt::StringLiterals;

void chooseKdl(Tour& tour) {
    tour.step(u"Einstellungen > Schnittstelle: COM2, KDL-Protokoll"_s);
    tour.menu({u"Einstellungen"_s, u"Schnittstelle"_s});
    tour.press(u"optCom_1"_s);
    tour.press(u"optBaud_8"_s);
    tour.picture(u"ModBusLink"_s, u"kdl-interface.png"_s);
    tour.press(u"btnOk"_s);
    tour.expectText(u"sbStatusBar_1"_s, u"KDL-Port = COM2, 9600,e,7,1"_s);

    tour.step(u"Start > Debug > Messwert-Register is for Modbus only"_s);
    tour.menu({u"Start"_s, u"Debug"_s, u"Messwert-Register"_s});
    tour.answer(u"Hinweis"_s, u"Diese Funktion steht nur für das ModBus RTU - Protokoll zur Verfügung"_s,
                QMessageBox::Ok);
}

void searchDevice(Tour& tour) {
    tour.step(u"address 3 on the KDL bus"_s);
    tour.menu({u"Einstellungen"_s, u"Geräteadresse"_s});
    tour.type(u"cmbGeraeteAdresse"_s, u"3"_s);
    tour.press(u"btnÜbernehmen"_s);
    tour.answer(u"Hinweis"_s, u"Das Gerät vekQA731-K75-2 wurde gefunden!"_s, QMessageBox::Ok);
    tour.expectText(u"sbStatusBar_2"_s, u"KDL-Geräteadresse = 3"_s);
    tour.expectText(u"frmModBus"_s, u"KDL - Monitor   V2.2.2            vekQA731-K75-2"_s);
    if (!tour.text(u"RichTextBox1"_s).contains(u":;003:IDNM?&dZs\n"_s)) {
        throw TourFailure(u"the request for the name is not in the terminal"_s);
    }
}

void watchRows(Tour& tour) {
    tour.step(u"the monitor's rows over KDL"_s);
    tour.menu({u"Start"_s, u"Geräte"_s, u"Monitor"_s});
    tour.expectText(u"frmMbMonitor"_s, u"KDL - Monitor"_s);
    tour.press(u"cmdRunMonitor"_s);
    for (const int row : {0, 1, 3, 4, 9, 10, 11}) {
        const QString number = QString::number(row);
        tour.waitFor(u"row %1 shows a value"_s.arg(row), [&] {
            return !Tour::find(u"lblMesswert_"_s + number)->property("text").toString().isEmpty();
        });
        tour.saw(u"%1: %2 %3 \"%4\""_s.arg(
            tour.text(u"Label7_"_s + number), tour.text(u"lblMesswert_"_s + number),
            tour.text(u"lblEinheit_"_s + number), tour.text(u"lblMessName_"_s + number)));
    }
    expectIndicator(tour, u"LED_0"_s, green, u"green (operating value)"_s, 60);
    expectIndicator(tour, u"LED_0"_s, red, u"red (alarm)"_s, 60);
    tour.waitFor(
        u"a fault location"_s,
        [] {
            const QString sign = Tour::find(u"lblFehlerVorzeichen"_s)->property("text").toString();
            const int position = qobject_cast<QSlider*>(Tour::find(u"Slider1"_s))->value();
            return (sign == u'+' && position > 15) || (sign == u'-' && position < -15);
        },
        60);
    tour.saw(u"fault location %1 %, Rf- %2, Rf+ %3"_s.arg(
        tour.text(u"lblMesswert_8"_s), tour.text(u"lblReNeg"_s), tour.text(u"lblRePos"_s)));
    tour.picture(u"frmMbMonitor"_s, u"kdl-monitor.png"_s);
    stopMonitor(tour);
    tour.picture(u"frmModBusTerminal"_s, u"kdl-terminal.png"_s);
}

void resetAll(Tour& tour) {
    tour.step(u"FACT All over KDL: the device is on Modbus RTU again, as it left the factory"_s);
    tour.menu({u"Start"_s, u"Geräte"_s, u"Monitor"_s});
    tour.press(u"cmdFACTall"_s);
    tour.answer(u"Hinweis"_s,
                u"Das Geräte wurde auf die Werkseinstellungen (alle Parameter) zurückgesetzt."_s,
                QMessageBox::Ok);
    tour.press(u"cmdClose"_s);
    tour.waitFor(u"the monitor closes"_s, [] { return Tour::find(u"frmMbMonitor"_s) == nullptr; });
    chooseInterface(tour, {2, 3});
    findDevice(tour, 3, u"vekQA731-K75-2"_s);
}

}  // namespace

void kdlBus(Tour& tour) {
    tour.chapter(u"The KDL bus"_s);
    chooseKdl(tour);
    searchDevice(tour);
    watchRows(tour);
    resetAll(tour);
}

void endProgram(Tour& tour) {
    tour.chapter(u"End"_s);
    tour.step(u"Start > Beenden"_s);
    tour.complete();
    tour.menu({u"Start"_s, u"Beenden"_s});
}
