#include <QFile>
#include <QSlider>

#include "chapters.h"
#include "steps.h"
#include "tour.h"

namespace {

using namespace Qt::StringLiterals;

QString settingsFile() {
    QFile file(qEnvironmentVariable("XDG_DATA_HOME") + u"/vekXX731_Monitor.ini"_s);
    return file.open(QIODevice::ReadOnly) ? QString::fromLatin1(file.readAll()) : QString();
}

void expectInFile(Tour& tour, const QStringList& lines) {
    const QString content = settingsFile();
    for (const QString& line : lines) {
        if (!content.contains(line + u"\r\n"_s)) {
            throw TourFailure(u"the settings file lacks \"%1\":\n%2"_s.arg(line, content));
        }
        tour.saw(u"settings file has the line \"%1\""_s.arg(line));
    }
}

void firstStart(Tour& tour) {
    tour.chapter(u"First start"_s);
    tour.step(u"the main window opens, the terminal beside it"_s);
    tour.expectText(u"frmModBus"_s, u"ModBus RTU / KDL - Monitor   V2.2.2"_s);
    tour.expectText(u"sbStatusBar_1"_s, u"Port = COM0, 0"_s);
    tour.expectText(u"frmModBusTerminal"_s, u"Terminal"_s);
    expectInFile(tour, {u"[RS485]"_s, u"COM=0"_s, u"BAUD=0"_s, u"FRAME="_s, u"U_MODUL=10,73"_s});
    tour.picture(u"frmModBus"_s, u"main-window.png"_s);

    tour.step(u"Start > Geräte > Monitor before anything is set"_s);
    tour.menu({u"Start"_s, u"Geräte"_s, u"Monitor"_s}, u"menu.png"_s);
    tour.answer(u"Hinweis"_s, u"Zuerst die Schnittstellenparameter und die Geräteadresse einstellen"_s,
                QMessageBox::Ok, u"message-not-set.png"_s);

    tour.step(u"Info"_s);
    tour.menu({u"Info"_s});
    tour.expectText(u"lblVersion"_s, u"Version 2.2.2"_s);
    tour.expectText(u"frmAbout"_s, u"Info zu MODBUS RTU / KDL - Monitor"_s);
    tour.picture(u"frmAbout"_s, u"about.png"_s);
    tour.key(u"cmdOK"_s, Qt::Key_Escape);
    tour.waitFor(u"the about box closes on Escape"_s, [] { return Tour::find(u"frmAbout"_s) == nullptr; });
}

void interfaceSettings(Tour& tour) {
    tour.chapter(u"Interface"_s);
    tour.step(u"Einstellungen > Schnittstelle: COM1, 9600 Baud, even parity"_s);
    tour.menu({u"Einstellungen"_s, u"Schnittstelle"_s});
    tour.expectText(u"ModBusLink"_s, u"Protocol - Inteface Settings"_s);
    if (!tour.isEnabled(u"optCom_0"_s) || tour.isEnabled(u"optCom_9"_s)) {
        throw TourFailure(u"COM1 must be offered and COM10 not"_s);
    }
    tour.saw(u"COM10: "_s + tour.inProgram([] { return Tour::find(u"optCom_9"_s)->toolTip(); }));
    tour.press(u"optCom_0"_s);
    tour.press(u"optBaud_3"_s);
    tour.press(u"opt8e1"_s);
    tour.picture(u"ModBusLink"_s, u"interface.png"_s);
    tour.press(u"btnOk"_s);
    tour.expectText(u"sbStatusBar_1"_s, u"ModBus RTU-Port = COM1, 9600,e,8,1"_s);
    expectInFile(tour, {u"COM= 1"_s, u"BAUD= 9600"_s, u"FRAME=,e,8,1"_s});
}

void searchDevice(Tour& tour) {
    tour.chapter(u"Device search"_s);
    tour.step(u"address 9, where no device is"_s);
    tour.menu({u"Einstellungen"_s, u"Geräteadresse"_s});
    tour.type(u"cmbGeraeteAdresse"_s, u"9"_s);
    tour.key(u"cmbGeraeteAdresse"_s, Qt::Key_Return);
    tour.answer(
        u"MODBUS-Fehler"_s,
        u"CRC-Fehler:\n\nOk                ->  Programm fortsetzen\nAbbrechen  ->  Programm beenden"_s,
        QMessageBox::Ok, u"message-crc.png"_s);
    tour.answer(
        u"Hinweis"_s,
        u"Gerät mit der Adresse 9 ist nicht am ModBus vorhanden bzw. falsche Schnittstelle oder falsches "
        "Protokoll eingestellt!"_s,
        QMessageBox::Ok);

    tour.step(u"address 3"_s);
    tour.menu({u"Einstellungen"_s, u"Geräteadresse"_s});
    tour.type(u"cmbGeraeteAdresse"_s, u"3"_s);
    tour.picture(u"frmGeräteadresse"_s, u"address.png"_s);
    tour.press(u"btnÜbernehmen"_s);
    tour.answer(u"Hinweis"_s, u"Das Gerät vekQB731-K7W-2 wurde gefunden!"_s, QMessageBox::Ok,
                u"message-found.png"_s);
    tour.expectText(u"sbStatusBar_2"_s, u"ModBus-Geräteadresse =  3"_s);
    tour.expectText(u"frmModBus"_s, u"Modbus RTU - Monitor   V2.2.2            vekQB731-K7W-2"_s);
}

void watchBothSides(Tour& tour) {
    tour.step(u"alarms come and go, on one side and on the other"_s);
    expectIndicator(tour, u"LED_0"_s, green, u"green"_s, 60);
    expectIndicator(tour, u"LED_0"_s, yellow, u"yellow (pre-alarm)"_s, 60);
    expectIndicator(tour, u"LED_0"_s, red, u"red (alarm)"_s, 60);
    for (const QString& side : {u"+"_s, u"-"_s}) {
        tour.waitFor(
            u"a fault on the side %1 in alarm"_s.arg(side),
            [&] {
                QWidget* lamp = Tour::find(u"LED_0"_s);
                return lamp->grab().toImage().pixelColor(lamp->rect().center()) == red &&
                       Tour::find(u"lblFehlerVorzeichen"_s)->property("text").toString() == side;
            },
            90);
        const int slider =
            tour.inProgram([] { return qobject_cast<QSlider*>(Tour::find(u"Slider1"_s))->value(); });
        tour.saw(u"side %1: fault position %2 %, R %3 kOhm, Rf- %4, Rf+ %5"_s.arg(side).arg(slider).arg(
            tour.text(u"lblMesswert_0"_s), tour.text(u"lblReNeg"_s), tour.text(u"lblRePos"_s)));
        if ((slider > 0) != (side == u"+"_s)) {
            throw TourFailure(u"the bar stands on the wrong side"_s);
        }
        tour.picture(u"frmMbMonitor"_s, side == u"+"_s ? u"monitor-plus.png"_s : u"monitor-minus.png"_s);
    }
    expectIndicator(tour, u"LED_0"_s, green, u"green again"_s, 90);
}

void watchValues(Tour& tour) {
    tour.chapter(u"Monitor"_s);
    tour.step(u"Start > Geräte > Monitor, \"Start Monitor\""_s);
    tour.menu({u"Start"_s, u"Geräte"_s, u"Monitor"_s});
    tour.expectText(u"frmMbMonitor"_s, u"ModBus RTU - Monitor"_s);
    if (tour.indicator(u"LED_0"_s) != grey) {
        throw TourFailure(u"an indicator shows a state before anything was read"_s);
    }
    tour.press(u"cmdRunMonitor"_s);
    tour.expectText(u"lblDevName"_s, u"vekQB731-K7W-2"_s);
    for (int slot = 0; slot < 9; ++slot) {
        const QString number = QString::number(slot);
        tour.waitFor(u"slot %1 shows a value"_s.arg(slot), [&] {
            return !Tour::find(u"lblMesswert_"_s + number)->property("text").toString().isEmpty() &&
                   !Tour::find(u"lblMessName_"_s + number)->property("text").toString().isEmpty();
        });
        tour.saw(
            u"%1: %2 %3 %4"_s.arg(tour.text(u"Label7_"_s + number), tour.text(u"lblMesswert_"_s + number),
                                  tour.text(u"lblRange_"_s + number), tour.text(u"lblEinheit_"_s + number)));
    }
    tour.picture(u"frmMbMonitor"_s, u"monitor.png"_s);

    tour.step(u"values move"_s);
    const QString counter = tour.text(u"lblMesswert_8"_s);
    tour.waitFor(u"the update counter moves on"_s,
                 [&] { return Tour::find(u"lblMesswert_8"_s)->property("text").toString() != counter; });
    tour.saw(u"update counter %1, then %2"_s.arg(counter, tour.text(u"lblMesswert_8"_s)));
    watchBothSides(tour);

    stopMonitor(tour);
}

void lookAtTerminal(Tour& tour) {
    tour.chapter(u"Terminal"_s);
    tour.step(u"every frame stands in the terminal window"_s);
    const QStringList lines = tour.text(u"RichTextBox1"_s).split(u'\n');
    // Read of the device name: ten registers from 9800 of slave 3, then the reply that carries it.
    const auto request = lines.indexOf(u"03032648000A4F71"_s);
    if (request < 0 || !lines.value(request + 1).startsWith(u"03031476656B5142"_s)) {
        throw TourFailure(u"the search for the device is not in the terminal:\n"_s +
                          lines.mid(0, 8).join(u'\n'));
    }
    tour.saw(lines[request] + u" and its reply "_s + lines[request + 1]);
    tour.picture(u"frmModBusTerminal"_s, u"terminal.png"_s);

    tour.step(u"Einstellungen > Terminalfenster hides and shows it, nothing is lost"_s);
    tour.menu({u"Einstellungen"_s, u"Terminalfenster"_s});
    tour.waitFor(u"the terminal is hidden"_s, [] { return Tour::find(u"frmModBusTerminal"_s) == nullptr; });
    tour.menu({u"Einstellungen"_s, u"Terminalfenster"_s});
    if (tour.text(u"RichTextBox1"_s).split(u'\n') != lines) {
        throw TourFailure(u"the terminal's log has changed while it was hidden"_s);
    }
    tour.saw(u"the same %1 lines"_s.arg(lines.size() - 1));
}

}  // namespace

void mainJob(Tour& tour) {
    firstStart(tour);
    interfaceSettings(tour);
    searchDevice(tour);
    watchValues(tour);
    lookAtTerminal(tour);
}
