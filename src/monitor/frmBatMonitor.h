#pragma once

#include "monitor/monitorform.h"
#include "monitor/stringsupervision.h"

namespace vek {

/// The live monitor of a battery string: channel table, identification, and the supervision of the string
/// with the battery data that the user enters. The battery data live in the profile between two uses.
class frmBatMonitor : public MonitorForm {
  public:
    explicit frmBatMonitor(Program& program);

    ControlArray<Label, polledChannels> Label7{"Label7"};
    ControlArray<Label, polledChannels> lblMesswert{"lblMesswert"};
    ControlArray<Label, polledChannels> lblRange{"lblRange"};
    ControlArray<Label, polledChannels> lblEinheit{"lblEinheit"};
    ControlArray<Label, polledChannels> lblMessName{"lblMessName"};
    ControlArray<Shape, polledChannels> LED{"LED"};

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

  private:
    Label& slotName(int slot) override { return Label7[static_cast<std::size_t>(slot)]; }
    ChannelRow channelRow(int slot) override;
    void statusShown(int slot, RangeState range) override;
    void cycleDone() override;

    void readBatteryData();
    void writeBatteryData();
    void showSlotNames();
    void runMonitor();
    BatteryData batteryData() const;
    StringValues stringValues();
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
