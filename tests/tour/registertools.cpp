#include <QWidget>

#include "chapters.h"
#include "tour.h"

namespace {

using namespace Qt::StringLiterals;

void expectColumns(Tour& tour, int row, const QString& hex, const QString& decimal, const QString& ascii) {
    tour.expectText(u"lblHexVal_%1"_s.arg(row), hex);
    tour.expectText(u"lblDezVal_%1"_s.arg(row), decimal);
    tour.expectText(u"lblChr_%1"_s.arg(row), ascii);
}

void closeWindow(Tour& tour, const QString& name) {
    tour.key(name, Qt::Key_Escape);
    tour.waitFor(u"%1 closes"_s.arg(name), [&] { return Tour::find(name) == nullptr; });
}

void readChannel(Tour& tour) {
    tour.step(u"Start > Debug > Messwert-Register: an address below the channels"_s);
    tour.menu({u"Start"_s, u"Debug"_s, u"Messwert-Register"_s});
    tour.type(u"txtMessRegNr"_s, u"999"_s);
    tour.press(u"cmdMessRegRead"_s);
    tour.answer(u"Fehler"_s, u"Keine gültige Registeradresse vorhanden."_s, QMessageBox::Ok);

    tour.step(u"the voltage between the conductors, from register 1008"_s);
    tour.type(u"txtMessRegNr"_s, u"1008"_s);
    tour.press(u"cmdMessRegRead"_s);
    tour.expectText(u"lblBezTxt"_s, u"Spannung"_s);
    tour.expectText(u"lblMessBeschreibung"_s, u"76"_s);
    tour.expectText(u"lblEinheitTxt"_s, u"V"_s);
    tour.expectText(u"lblRangeTxt"_s, u"gültig"_s);
    tour.saw(u"value %1"_s.arg(tour.text(u"lblMessVal"_s)));
    tour.picture(u"frmMessReg"_s, u"measurement-register.png"_s);
    closeWindow(tour, u"frmMessReg"_s);
}

void readAndWriteRegisters(Tour& tour) {
    tour.step(u"Start > Debug > Parameter-Register: the device's name, ten registers from 9800"_s);
    tour.menu({u"Start"_s, u"Debug"_s, u"Parameter-Register"_s});
    tour.type(u"txtParaReg"_s, u"9800"_s);
    tour.type(u"cmbRegAnz"_s, u"10"_s);
    tour.press(u"cmdRead"_s);
    expectColumns(tour, 0, u"7665"_s, u"30309"_s, u"ve"_s);
    expectColumns(tour, 9, u"0000"_s, u"0"_s, u"\uFFFD\uFFFD"_s);
    tour.picture(u"frmParaReg"_s, u"parameter-register.png"_s);

    tour.step(u"write 45 into register 3007, read it again"_s);
    tour.type(u"txtParaReg"_s, u"3007"_s);
    tour.type(u"cmbRegAnz"_s, u"1"_s);
    tour.type(u"txtRegVal"_s, u"45"_s);
    tour.press(u"cmdWrite"_s);
    tour.answer(u"Hinweis"_s, u"Parameter erfolgreich geschrieben!"_s, QMessageBox::Ok);
    tour.press(u"cmdRead"_s);
    expectColumns(tour, 0, u"002D"_s, u"45"_s, u"\uFFFD-"_s);

    tour.step(u"what the device and the window refuse"_s);
    tour.type(u"txtRegVal"_s, u"9999"_s);
    tour.press(u"cmdWrite"_s);
    tour.answer(u"MODBUS-Fehler"_s, u"Unzulässiger Datenwert"_s, QMessageBox::Ok);
    tour.type(u"cmbRegAnz"_s, u"11"_s);
    tour.press(u"cmdRead"_s);
    tour.answer(u"Fehler"_s, u"Ungültiges Parameter-Register."_s, QMessageBox::Ok);
    closeWindow(tour, u"frmParaReg"_s);
}

}  // namespace

void registerTools(Tour& tour) {
    tour.chapter(u"Registers"_s);
    readChannel(tour);
    readAndWriteRegisters(tour);
}
