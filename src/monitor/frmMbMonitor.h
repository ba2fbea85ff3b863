#pragma once

#include <functional>

#include "kdl/kdlmonitor.h"
#include "monitor/devicecommands.h"
#include "monitor/monitorform.h"

namespace vek {

/// The live monitor: channel table, test indicators, identification, fault position, and the device commands.
class frmMbMonitor : public MonitorForm, private KdlMonitorView {
  public:
    static constexpr int slotCount = 16;

    explicit frmMbMonitor(Program& program);

    ControlArray<Label, slotCount> Label7{"Label7"};
    ControlArray<Label, slotCount> lblMesswert{"lblMesswert"};
    ControlArray<Label, slotCount> lblRange{"lblRange"};
    ControlArray<Label, slotCount> lblEinheit{"lblEinheit"};
    ControlArray<Label, slotCount> lblMessName{"lblMessName"};
    ControlArray<Shape, slotCount> LED{"LED"};

    Slider Slider1{"Slider1", -100, 100};
    Label lblFehlerVorzeichen{"lblFehlerVorzeichen"};
    Label lblRePos{"lblRePos"};
    Label lblReNeg{"lblReNeg"};

    Button cmdCal{"cmdCal", "CAL", 'A'};
    Button cmdTest{"cmdTest", "TEST", 'E'};
    Button cmdCLR{"cmdCLR", "CLEAR", 'R'};
    Button cmdFACT{"cmdFACT", "FACT", 'F'};
    Button cmdFACTall{"cmdFACTall", "FACT All", 'l'};

    Box layout() override;
    void load() override;

  private:
    Label& slotName(int slot) override { return Label7[static_cast<std::size_t>(slot)]; }
    ChannelRow channelRow(int slot) override;
    void statusShown(int /*slot*/, RangeState /*range*/) override {}
    void cycleDone() override;
    void showFaultPosition(const FaultPosition& position) override;

    void styleFields();
    void showSlotNames();
    void switchIndicators();
    void hideRowsFrom(std::size_t firstHidden);
    void useLine(const std::function<void()>& operation);
    void runMonitor();
    void enableCommands(bool enabled);

    Box faultFrame();
    Box commandFrame();

    ControlArray<Label, 3> lblSliderEnd_{"lblSliderEnd"};
    Label lblRePosText_{"lblRePosText", "Rf +"};
    Label lblReNegText_{"lblReNegText", "Rf -"};
    Label lblRePosUnit_{"lblRePosUnit", "kOhm"};
    Label lblReNegUnit_{"lblReNegUnit", "kOhm"};
    Frame fraFehlerort_{"fraFehlerort", "Fehlerort in %"};
    Frame fraBefehle_{"fraBefehle", "Geräte-Befehle"};
};

}  // namespace vek
