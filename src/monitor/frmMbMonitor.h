#pragma once

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "kdl/kdlmonitor.h"
#include "monitor/devicecommands.h"
#include "monitor/modbuspoll.h"
#include "program/childform.h"

namespace vek {

/// The live monitor: channel table, test indicators, identification, fault position, and the device commands.
class frmMbMonitor : public ChildForm, private ModbusMonitorView, private KdlMonitorView {
  public:
    static constexpr int slotCount = 16;

    explicit frmMbMonitor(Program& program);

    ControlArray<Label, slotCount> Label7{"Label7"};
    ControlArray<Label, slotCount> lblMesswert{"lblMesswert"};
    ControlArray<Label, slotCount> lblRange{"lblRange"};
    ControlArray<Label, slotCount> lblEinheit{"lblEinheit"};
    ControlArray<Label, slotCount> lblMessName{"lblMessName"};
    ControlArray<Shape, slotCount> LED{"LED"};

    Frame Frame2{"Frame2", "Anzeige Test"};
    Shape LED_TEST_INTERN{"LED_TEST_INTERN"};
    Shape LED_TEST_EXTERN{"LED_TEST_EXTERN"};

    Label lblDevName{"lblDevName"};
    Label lblSwRegNr{"lblSwRegNr"};
    Label lblSwVer{"lblSwVer"};
    Label lblSwDate{"lblSwDate"};
    Label lblSwMb{"lblSwMb"};

    Slider Slider1{"Slider1", -100, 100};
    Label lblFehlerVorzeichen{"lblFehlerVorzeichen"};
    Label lblRePos{"lblRePos"};
    Label lblReNeg{"lblReNeg"};

    Button cmdRunMonitor{"cmdRunMonitor", "Start Monitor", 'S'};
    Button cmdStop{"cmdStop", "Stop", 't'};
    Button cmdClose{"cmdClose", "Schließen", 'c'};
    Button cmdCal{"cmdCal", "CAL", 'A'};
    Button cmdTest{"cmdTest", "TEST", 'E'};
    Button cmdCLR{"cmdCLR", "CLEAR", 'L'};
    Button cmdFACT{"cmdFACT", "FACT", 'F'};
    Button cmdFACTall{"cmdFACTall", "FACT All", 'l'};

    Box layout() override;
    void load() override;
    void unload() override;
    Button* defaultButton() override { return &cmdRunMonitor; }
    Button* cancelButton() override { return &cmdClose; }

  private:
    DeviceLabels deviceLabels() override { return {lblDevName, lblSwRegNr, lblSwVer, lblSwDate, lblSwMb}; }
    ChannelRow channelRow(int slot) override;
    Shape& internalTest() override { return LED_TEST_INTERN; }
    Shape& externalTest() override { return LED_TEST_EXTERN; }
    std::string valueText(int slot, float value) override;
    void valueMissing(int slot) override { shownNumber(slot).reset(); }
    void cycleDone() override;
    void showFaultPosition(const FaultPosition& position) override;
    bool isShown() const override { return isOpen(); }

    void styleFields();
    void showSlotNames();
    void switchIndicators();
    void hideRowsFrom(std::size_t firstHidden);
    void runMonitor();
    void enableCommands(bool enabled);
    std::optional<double>& shownNumber(int slot) { return shownNumbers_.at(static_cast<std::size_t>(slot)); }

    Box channelTable();
    Box deviceFrame();
    Box faultFrame();
    Box legendFrame();
    Box commandFrame();

    std::array<std::optional<double>, slotCount> shownNumbers_;  ///< the values as numbers; nothing for "---"

    ControlArray<Label, 5> lblHeading_{"lblHeading"};
    ControlArray<Label, 5> lblDeviceText_{"lblDeviceText"};
    ControlArray<Label, 3> lblSliderEnd_{"lblSliderEnd"};
    ControlArray<Label, 5> lblLegend_{"lblLegend"};
    ControlArray<Shape, 5> shpLegend_{"shpLegend"};
    Label lblTestIntern_{"lblTestIntern", "interner Test läuft"};
    Label lblTestExtern_{"lblTestExtern", "externer Test läuft"};
    Label lblRePosText_{"lblRePosText", "Rf +"};
    Label lblReNegText_{"lblReNegText", "Rf -"};
    Label lblRePosUnit_{"lblRePosUnit", "kOhm"};
    Label lblReNegUnit_{"lblReNegUnit", "kOhm"};
    Frame fraGeraet_{"fraGeraet", "Gerät"};
    Frame fraMesswerte_{"fraMesswerte", "Messwerte"};
    Frame fraFehlerort_{"fraFehlerort", "Fehlerort in %"};
    Frame fraLegende_{"fraLegende", "Legende"};
    Frame fraBefehle_{"fraBefehle", "Geräte-Befehle"};
};

}  // namespace vek
