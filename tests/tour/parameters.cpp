#include <QAbstractButton>

#include "chapters.h"
#include "steps.h"
#include "tour.h"

namespace {

using namespace Qt::StringLiterals;

struct Device {
    int type;
    int port;
    QString name;
};

void openEditor(Tour& tour, const Device& device, bool storable) {
    tour.step(u"%1 at COM%2, address 3"_s.arg(device.name).arg(device.port));
    chooseInterface(tour, {device.port, 3, storable});
    findDevice(tour, 3, device.name);

    tour.step(u"Start > Geräte > Parameter reads the device"_s);
    tour.menu({u"Start"_s, u"Geräte"_s, u"Parameter"_s});
    tour.expectText(u"frmMbParameter"_s, u"Parameter"_s);
    tour.saw(u"Vorwarnung %1, Alarm %2, address %3"_s.arg(
        tour.text(u"txtRWarnung"_s), tour.text(u"txtRAlarm"_s), tour.text(u"txtAdresse"_s)));
    tour.picture(u"frmMbParameter"_s, u"parameters-type-%1.png"_s.arg(device.type));
}

void closeEditor(Tour& tour) {
    tour.press(u"cmdClose"_s);
    tour.waitFor(u"the editor closes"_s, [] { return Tour::find(u"frmMbParameter"_s) == nullptr; });
}

void expectSet(Tour& tour, const QString& option) {
    tour.waitFor(u"%1 is set"_s.arg(option),
                 [&] { return qobject_cast<QAbstractButton*>(Tour::find(option))->isChecked(); });
    tour.saw(u"%1 is set"_s.arg(option));
}

void checkRanges(Tour& tour) {
    tour.step(u"a threshold beyond its range"_s);
    tour.type(u"txtRWarnung"_s, u"991"_s);
    tour.press(u"cmdWritePara"_s);
    tour.answer(u"Fehler"_s, u"Ungültiger Ansprechwert. Ran = 2...990."_s, QMessageBox::Ok,
                u"message-out-of-range.png"_s);
    readParameters(tour);
    tour.expectText(u"txtRWarnung"_s, u"100"_s);
}

void switchImpedance(Tour& tour) {
    tour.step(u"impedance measurement off"_s);
    tour.press(u"chkZe"_s);
    tour.waitFor(u"its thresholds cannot be used"_s,
                 [] { return !Tour::find(u"txtZWarnung"_s)->isEnabled(); });
    setParameters(tour);
    tour.expectText(u"txtZWarnung"_s, u"---"_s);
}

void moveDevice(Tour& tour) {
    tour.step(u"address 7, odd parity, 19200 Baud"_s);
    tour.type(u"txtRWarnung"_s, u"250"_s);
    tour.type(u"txtAdresse"_s, u"7"_s);
    tour.press(u"optOdd"_s);
    tour.press(u"optBaud19200"_s);
    setParameters(tour);
    tour.expectText(u"sbStatusBar_1"_s, u"ModBus-Port = COM4, 19200,o,8,1"_s);
    tour.expectText(u"sbStatusBar_2"_s, u"ModBus-Geräteadresse = 7"_s);
    tour.type(u"txtRWarnung"_s, u""_s);
    readParameters(tour);
    tour.expectText(u"txtRWarnung"_s, u"250"_s);
    expectSet(tour, u"optBaud19200"_s);
}

void chooseFile(Tour& tour, const QString& button, const QString& file) {
    tour.press(button);
    tour.type(u"fileNameEdit"_s, file);
    tour.key(u"fileNameEdit"_s, Qt::Key_Return);
}

void useFile(Tour& tour) {
    const QString file = qEnvironmentVariable("XDG_DATA_HOME") + u"/satz.GPM"_s;
    tour.step(u"the set goes into a file and comes back"_s);
    chooseFile(tour, u"cmd_Para_File_Save"_s, file);
    tour.answer(u"Hinweis"_s, u"Geräte-Parameter für vekQB731 unter %1 gespeichert."_s.arg(file),
                QMessageBox::Ok);
    tour.type(u"txtRWarnung"_s, u"1"_s);
    chooseFile(tour, u"cmd_Para_File_open"_s, file);
    tour.answer(u"Hinweis"_s, u"Geräte-Parameter für vekQB731 aus Parameter-Datei eingelesen."_s,
                QMessageBox::Ok);
    tour.expectText(u"txtRWarnung"_s, u"250"_s);
}

void refuseFile(Tour& tour, const Device& device) {
    tour.step(u"the file of another device is refused"_s);
    chooseFile(tour, u"cmd_Para_File_open"_s, qEnvironmentVariable("XDG_DATA_HOME") + u"/satz.GPM"_s);
    tour.answer(
        u"Fehler"_s,
        u"Parameter-Datei (vekQB731-K7W-2) ist nicht für das angeschlossenem Gerät (%1) geeignet"_s.arg(
            device.name),
        QMessageBox::Ok);
}

void chooseOption(Tour& tour, const QString& option) {
    tour.step(u"%1, written and read again"_s.arg(option));
    tour.press(option);
    setParameters(tour);
    readParameters(tour);
    expectSet(tour, option);
}

}  // namespace

void parameters(Tour& tour) {
    tour.chapter(u"Parameters"_s);
    openEditor(tour, {1, 4, u"vekQB731-K7W-2"_s}, false);
    checkRanges(tour);
    switchImpedance(tour);
    moveDevice(tour);
    useFile(tour);
    closeEditor(tour);

    const Device capacitance = {8, 5, u"vekQG731-K7-2"_s};
    openEditor(tour, capacitance, true);
    chooseOption(tour, u"opt40uF"_s);
    refuseFile(tour, capacitance);
    closeEditor(tour);

    openEditor(tour, {9, 6, u"vekQH731-K7-2"_s}, true);
    tour.type(u"txtTan2"_s, u"12"_s);
    chooseOption(tour, u"opt_2s"_s);
    tour.expectText(u"txtTan2"_s, u"12"_s);
    closeEditor(tour);

    openEditor(tour, {10, 7, u"vekQLN729-K7-2"_s}, true);
    chooseOption(tour, u"optDCmode"_s);
    closeEditor(tour);
}
