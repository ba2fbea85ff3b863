#pragma once

#include "monitor/monitorform.h"
#include "monitor/stringsupervision.h"

namespace vek {

/// The live monitor of a battery string: channel table, identification, and the supervision of the string
/// with the battery data that the user enters. The battery data live in the profile between two uses.
class frmBatMonitor : public MonitorForm {
  public:
    explicit frmBatMonitor(Program& program);

    TextBox txtBatVoltage{"txtBatVoltage"};
    TextBox txtAnzBatModul{"txtAnzBatModul"};
    TextBox txtModBer{"txtModBer"};
    CheckBox chkRoffset{"chkRoffset", "Offset-Widerstand", 'O'};
    TextBox txtRoffVal{"txtRoffVal"};

    Label Label27{"Label27", "Spannungsüberwachung"};
    Label Label28{"Label28"};
    Label Label3{"Label3", "Zellenspannung"};
    Label Label33{"Label33"};
    Label Label38{"Label38", "V"};
    Label Label4{"Label4", "Modul-Nummer"};
    Label Label35{"Label35"};
    Label Label25{"Label25", "Von L  Anz. Module bis Rf"};
    Label Label34{"Label34"};

    Box layout() override;
    void load() override;
    void unload() override;
    void keepInput() override { writeBatteryData(); }
    void statusShown(std::size_t slot, RangeState range) override;
    void cycleDone() override;

  private:
    void readBatteryData();
    void writeBatteryData();
    void showSlotNames();
    void runMonitor();
    BatteryData batteryData() const;
    StringValues stringValues() const;
    void showString(const StringState& state);

    Box batteryFrame();
    Box resultFrame();

    Label lblBatVoltage_{"lblBatVoltage", "Batterie Modulspannung"};
    Label lblBatVoltageUnit_{"lblBatVoltageUnit", "V"};
    Label lblAnzBatModul_{"lblAnzBatModul", "Anzahl Batterie-Module"};
    Label lblModBer_{"lblModBer", "Modulberechnung bis Rf"};
    Label lblModBerUnit_{"lblModBerUnit", "kOhm"};
    Label lblRoffUnit_{"lblRoffUnit", "kOhm"};
    Frame fraBatterie_{"fraBatterie", "Eingabe Batterie-Parameter"};
    Frame fraErgebnis_{"fraErgebnis", "Batterie - Messwerte"};
};

}  // namespace vek
