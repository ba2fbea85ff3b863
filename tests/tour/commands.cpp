#include <QAbstractButton>
#include <QLocale>
#include <limits>

#include "chapters.h"
#include "steps.h"
#include "tour.h"

namespace {

using namespace Qt::StringLiterals;

/// The device of this chapter, which changes its bus in it: type 1, at address 3 of the KDL bus at first.
const QString deviceName = u"vekQB731-K7W-2"_s;
constexpr int devicePort = 8;

/// What is set here, which no factory sets.
constexpr int ownAddress = 7;

bool isChecked(const QString& name) {
    return qobject_cast<QAbstractButton*>(Tour::find(name))->isChecked();
}

void openEditor(Tour& tour) {
    tour.menu({u"Start"_s, u"Geräte"_s, u"Parameter"_s});
    tour.expectText(u"frmMbParameter"_s, u"Parameter"_s);
}

void closeWindow(Tour& tour, const QString& name) {
    tour.press(u"cmdClose"_s);
    tour.waitFor(u"%1 closes"_s.arg(name), [&] { return Tour::find(name) == nullptr; });
}

void press(Tour& tour, const QString& command, const QString& answered) {
    tour.press(command);
    tour.answer(u"Hinweis"_s, answered, QMessageBox::Ok);
}

/// Sets values, writes them and reads them from the device.
void changeParameters(Tour& tour, const QString& addressPanel, const QString& picture) {
    tour.step(u"the editor: fault memory on, release delay 9 s, pre-alarm at 120 kOhm, address %1"_s.arg(
        ownAddress));
    openEditor(tour);
    tour.expectText(u"txtRWarnung"_s, u"100"_s);
    tour.picture(u"frmMbParameter"_s, picture);
    tour.press(u"chkMemory"_s);
    tour.type(u"txtTab"_s, u"9"_s);
    tour.type(u"txtRWarnung"_s, u"120"_s);
    tour.type(u"txtAdresse"_s, QString::number(ownAddress));
    setParameters(tour);
    tour.expectText(u"sbStatusBar_2"_s, addressPanel);
    tour.type(u"txtRWarnung"_s, {});
    readParameters(tour);
    tour.expectText(u"txtRWarnung"_s, u"120"_s);
    tour.expectText(u"txtTab"_s, u"9"_s);
    tour.expectText(u"txtAdresse"_s, QString::number(ownAddress));
    tour.waitFor(u"the fault memory is on"_s, [] { return isChecked(u"chkMemory"_s); });
}

void runMonitor(Tour& tour) {
    tour.press(u"cmdRunMonitor"_s);
    tour.waitFor(u"the poll runs"_s, [] { return Tour::find(u"cmdStop"_s)->isEnabled(); });
}

/// What row 0 shows; not a number when it shows none.
double insulation() {
    bool shown = false;
    const QString value = Tour::find(u"lblMesswert_0"_s)->property("text").toString();
    const double kiloOhm = QLocale(QLocale::German).toDouble(value, &shown);
    return shown ? kiloOhm : std::numeric_limits<double>::quiet_NaN();
}

/// Alarms that the fault memory keeps, although the installation is healthy again, go with CLEAR. The next
/// fault is not far: CLEAR is pressed when the last one has just gone, not when it has been gone for unknown
/// time.
void clearAlarms(Tour& tour, const QString& answered) {
    constexpr double wellBelowAlarm = 40;  // kOhm
    constexpr double wellAboveAlarm = 300;
    tour.step(u"CLEAR takes away what the fault memory keeps"_s);
    tour.menu({u"Start"_s, u"Geräte"_s, u"Monitor"_s});
    runMonitor(tour);
    tour.waitFor(
        u"an insulation fault"_s, [] { return insulation() < wellBelowAlarm; }, 60);
    expectIndicator(tour, u"LED_0"_s, red, u"red (alarm)"_s, 10);
    tour.waitFor(
        u"the insulation is good again"_s, [] { return insulation() > wellAboveAlarm; }, 60);
    expectIndicator(tour, u"LED_0"_s, red, u"red (kept alarm)"_s, 5);
    stopPoll(tour);
    press(tour, u"cmdCLR"_s, answered);
    runMonitor(tour);
    expectIndicator(tour, u"LED_0"_s, green, u"green after CLEAR"_s, 10);
    stopPoll(tour);
}

void testDevice(Tour& tour, const QString& picture) {
    tour.step(u"TEST lights the indicator of the internal test"_s);
    press(tour, u"cmdTest"_s, u"Der Selbsttest wurde gestartet."_s);
    runMonitor(tour);
    expectIndicator(tour, u"LED_TEST_INTERN"_s, red, u"red (self test)"_s, 10);
    tour.picture(u"frmMbMonitor"_s, picture);
    stopPoll(tour);
}

void resetKeepingInterface(Tour& tour) {
    tour.step(u"FACT: factory values, but the address stays"_s);
    press(tour, u"cmdFACT"_s,
          u"Das Geräte wurde auf die Werkseinstellungen (ohne Schnittstellen Parameter) zurückgesetzt."_s);
    closeWindow(tour, u"frmMbMonitor"_s);
    openEditor(tour);
    tour.expectText(u"txtRWarnung"_s, u"100"_s);
    tour.expectText(u"txtAdresse"_s, QString::number(ownAddress));
    tour.waitFor(u"the fault memory is off"_s, [] { return !isChecked(u"chkMemory"_s); });
    tour.saw(u"pre-alarm %1 kOhm, address %2"_s.arg(tour.text(u"txtRWarnung"_s), tour.text(u"txtAdresse"_s)));
}

void resetAll(Tour& tour) {
    tour.step(u"FACT All: the address of the factory, too, and its baud rate"_s);
    tour.menu({u"Start"_s, u"Geräte"_s, u"Monitor"_s});
    press(tour, u"cmdFACTall"_s,
          u"Das Geräte wurde auf die Werkseinstellungen (alle Parameter) zurückgesetzt."_s);
    closeWindow(tour, u"frmMbMonitor"_s);
}

void switchToModbus(Tour& tour) {
    tour.step(u"Modbus at 19200 Baud: the device changes its bus, the program ends"_s);
    tour.press(u"optBaud19200"_s);
    tour.press(u"cmdWritePara"_s);
    tour.complete();
    tour.answer(
        u"Hinweis"_s,
        u"Es wurde auf das ModBus-Protokoll mit 19200Baud (Parität = E,8,1)umgeschaltet, anschließend "
        "wird die Parameter-Eingabe beendet. Es muss sichergestellt sein, dass die Parität am "
        "ZEPHYRON dementsprechend eingestellt ist!"_s,
        QMessageBox::Ok, u"message-switched-to-modbus.png"_s);
}

}  // namespace

void kdlDeviceWork(Tour& tour) {
    tour.chapter(u"Parameters and commands over the KDL bus"_s);
    chooseInterface(tour, {devicePort, 8});
    findDevice(tour, 3, deviceName);
    changeParameters(tour, u"KDL-Geräteadresse = 7"_s, u"kdl-parameters.png"_s);

    tour.step(u"a threshold beyond its range, one that is off"_s);
    tour.type(u"txtRAlarm"_s, u"981"_s);
    tour.press(u"chkUnterspg"_s);
    tour.expectText(u"txtUnterSpg"_s, u"off"_s);
    tour.press(u"cmdWritePara"_s);
    tour.answer(u"Fehler"_s, u"Ungültiger Ansprechwert => Ran"_s, QMessageBox::Ok);
    readParameters(tour);
    tour.expectText(u"txtRAlarm"_s, u"50"_s);
    tour.waitFor(u"undervoltage is off"_s, [] { return !isChecked(u"chkUnterspg"_s); });
    closeWindow(tour, u"frmMbParameter"_s);

    clearAlarms(tour, u"Der Fehlerspeicher(Alarme) wurde zurückgesetzt"_s);
    testDevice(tour, u"kdl-self-test.png"_s);
    resetKeepingInterface(tour);
    switchToModbus(tour);
}

void modbusDeviceWork(Tour& tour) {
    tour.chapter(u"Commands over Modbus RTU, at the device that has changed its bus"_s);
    chooseInterface(tour, {devicePort, 4});
    findDevice(tour, ownAddress, deviceName);
    changeParameters(tour, u"ModBus-Geräteadresse =  7"_s, u"modbus-parameters.png"_s);
    closeWindow(tour, u"frmMbParameter"_s);
    clearAlarms(tour, u"Der Fehlerspeicher(Alarme) wurde zurückgesetzt."_s);
    testDevice(tour, u"modbus-self-test.png"_s);
    resetKeepingInterface(tour);
    closeWindow(tour, u"frmMbParameter"_s);
    resetAll(tour);
    chooseInterface(tour, {devicePort, 3});
    findDevice(tour, 3, deviceName);
}
