#include <QFile>
#include <QWidget>

#include "chapters.h"
#include "steps.h"
#include "tour.h"

namespace {

using namespace Qt::StringLiterals;

QString shownText(const QString& name) {
    return Tour::find(name)->property("text").toString();
}

void findDevice(Tour& tour) {
    tour.step(u"the battery device at COM3, address 3"_s);
    tour.menu({u"Einstellungen"_s, u"Schnittstelle"_s});
    tour.press(u"optCom_2"_s);
    tour.press(u"optBaud_3"_s);
    tour.press(u"opt8e1"_s);
    tour.press(u"btnOk"_s);
    tour.expectText(u"sbStatusBar_1"_s, u"ModBus RTU-Port = COM3, 9600,e,8,1"_s);
    tour.menu({u"Einstellungen"_s, u"Geräteadresse"_s});
    tour.type(u"cmbGeraeteAdresse"_s, u"3"_s);
    tour.press(u"btnÜbernehmen"_s);
    tour.answer(u"Hinweis"_s, u"Das Gerät vekQH731-K7-2 wurde gefunden!"_s, QMessageBox::Ok);
}

/// One state of the string as the window tells it.
struct Scene {
    QString status, counting, cellVoltage, module, count, capacitance;
    QColor color;
    QString picture;
};

QList<Scene> scenes() {
    const QString none = u"---"_s;
    const QString fromPlus = u"Von L+ Anz. Module bis Rf"_s;
    const QString fromMinus = u"Von L- Anz. Module bis Rf"_s;
    const QString inRange = u"1,200"_s;
    return {
        {u"Batteriespannung OK"_s, fromPlus, none, u"18,0"_s, u"18,0"_s, inRange, green, u"battery-ok.png"_s},
        {u"Strang offen"_s, fromPlus, none, none, none, inRange, green, u"battery-open.png"_s},
        {u"Spannungsfehler"_s, fromPlus, none, none, none, inRange, red, u"battery-voltage.png"_s},
        {u"CrossFault"_s, fromPlus, u"28,3"_s, u"2,6"_s, u"33,4"_s, inRange, red,
         u"battery-cross-plus.png"_s},
        {u"CrossFault"_s, fromMinus, u"-354,0"_s, u"33,0"_s, u"33,0"_s, inRange, red,
         u"battery-cross-minus.png"_s},
        {u"unrelevanter Crossfault"_s, fromPlus, u"291,7"_s, u"27,2"_s, u"8,8"_s, inRange, green,
         u"battery-cross-irrelevant.png"_s},
        {u"Batteriespannung OK"_s, fromMinus, none, u"12,1"_s, u"12,1"_s, u"1,600"_s, green,
         u"battery-capacitance.png"_s},
    };
}

void watchScenes(Tour& tour) {
    for (const Scene& scene : scenes()) {
        tour.waitFor(
            scene.picture,
            [&] {
                return shownText(u"Label28"_s) == scene.status && shownText(u"Label25"_s) == scene.counting &&
                       shownText(u"Label33"_s) == scene.cellVoltage &&
                       shownText(u"Label35"_s) == scene.module && shownText(u"Label34"_s) == scene.count &&
                       shownText(u"lblMesswert_3"_s) == scene.capacitance;
            },
            60);
        const QColor background =
            tour.inProgram([] { return Tour::find(u"Label28"_s)->grab().toImage().pixelColor(4, 4); });
        if (background != scene.color) {
            throw TourFailure(u"the background of \"%1\" is %2"_s.arg(scene.status, background.name()));
        }
        tour.saw(u"%1: cell voltage %2, module %3; %4: %5"_s.arg(scene.status, scene.cellVoltage,
                                                                 scene.module, scene.counting, scene.count));
        tour.picture(u"frmBatMonitor"_s, scene.picture);
    }
    // The state is read after the value.
    expectIndicator(tour, u"LED_3"_s, red, u"red, as the capacitance is above the range"_s, 10);
}

void expectSaved(Tour& tour, const QString& line) {
    QFile file(qEnvironmentVariable("XDG_DATA_HOME") + u"/vekXX731_Monitor.ini"_s);
    if (!file.open(QIODevice::ReadOnly) || !QString::fromLatin1(file.readAll()).contains(line + u"\r\n"_s)) {
        throw TourFailure(u"the settings file lacks \"%1\""_s.arg(line));
    }
    tour.saw(u"settings file has the line \"%1\""_s.arg(line));
}

void watchString(Tour& tour) {
    tour.step(u"Start > Geräte > Monitor opens the battery monitor with the data of the settings file"_s);
    tour.menu({u"Start"_s, u"Geräte"_s, u"Monitor"_s});
    tour.expectText(u"frmBatMonitor"_s, u"ModBus RTU - Monitor"_s);
    tour.expectText(u"txtBatVoltage"_s, u"10,73"_s);
    tour.expectText(u"txtAnzBatModul"_s, u"36"_s);
    tour.expectText(u"txtModBer"_s, u"5000"_s);
    tour.expectText(u"txtRoffVal"_s, u"20000"_s);
    tour.picture(u"frmBatMonitor"_s, u"battery-data.png"_s);

    tour.step(u"\"Start Monitor\": the string goes through its states"_s);
    tour.press(u"cmdRunMonitor"_s);
    watchScenes(tour);

    tour.step(u"an offset resistance, entered while the monitor runs"_s);
    tour.press(u"chkRoffset"_s);
    tour.type(u"txtRoffVal"_s, u"500,5"_s);
    stopMonitor(tour);
    expectSaved(tour, u"ON_ROFF=1"_s);
    expectSaved(tour, u"ROFF_VAL=500,5"_s);
    expectSaved(tour, u"U_MODUL=10,73"_s);
}

}  // namespace

void battery(Tour& tour) {
    tour.chapter(u"Battery string"_s);
    findDevice(tour);
    watchString(tour);
}
