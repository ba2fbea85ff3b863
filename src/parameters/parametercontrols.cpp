#include "parameters/parametercontrols.h"

#include <array>

namespace vek {

namespace {

struct ToolTipRow {
    Frame ParameterControls::*frame;
    const char* text;
};

constexpr std::array<ToolTipRow, 20> toolTips = {{
    {&ParameterControls::Frame1, "Arbeitsweise von Relais K1 einstellen"},
    {&ParameterControls::Frame2, "Arbeitsweise von Relais K2 einstellen"},
    {&ParameterControls::Frame3, "Aktivieren und festlegen der Ansprechwerte für Isolationsmessung "},
    {&ParameterControls::Frame4, "Festlegen der Ansprechwerte für Impedanz - Messung"},
    {&ParameterControls::Frame5, "Aktivieren und festlegen der Ansprechwerte für Über-bzw. Unterspannung"},
    {&ParameterControls::Frame6, "Fehlerspeicher aktivieren"},
    {&ParameterControls::Frame7, "Busadresse des Gerätes einstellen"},
    {&ParameterControls::Frame8,
     "Baudrate des Gerätes einstellen. Für KDL-Bus ist eine Baudrate von 9600 festgelegt."},
    {&ParameterControls::Frame9, "Parität für MODBUS RTU einstellen"},
    {&ParameterControls::Frame10, "Zeiten für Einschalt-, Ansprech- und Abfallverzögerung eingeben"},
    {&ParameterControls::Frame11, "Impedanz-Messung aktivieren"},
    {&ParameterControls::Frame12, "Netzfrequenz für Impedanz - Messung auswählen"},
    {&ParameterControls::Frame13, "Netzanschlussüberwachung aktivieren"},
    {&ParameterControls::Frame14, "Gerätestart mit Netzanpassung und Selbsttest aktivieren"},
    {&ParameterControls::Frame15, "Gerät über BUS-Befehl anhalten"},
    {&ParameterControls::Frame16, "Alarmzuordnung von Relais K1 festlegen"},
    {&ParameterControls::Frame17, "Alarmzuordnung von Relais K2 festlegen"},
    {&ParameterControls::Frame18, "Einstellung Selbsttest Intervall"},
    {&ParameterControls::Frame19, "Grenzwerte für die Batteriespannung eingeben"},
    {&ParameterControls::Frame20, "Grenzwerte für die CrossFault-Erkennung eingeben"},
}};

}  // namespace

ParameterControls::ParameterControls() {
    for (const ToolTipRow& row : toolTips) {
        (this->*row.frame).toolTip = row.text;
    }
    chkZe.click = [this] { followImpedanceMeasurement(); };
}

void ParameterControls::check(CheckBox& box, bool checked) {
    box.decide(checked);
    if (box.click) {
        box.click();
    }
}

void ParameterControls::followImpedanceMeasurement() {
    const bool on = chkZe.value;
    Frame12.enabled = on;
    Frame4.enabled = on;
    chkRWarnung.visible = on;
    chkRAlarm.visible = on;
}

}  // namespace vek
