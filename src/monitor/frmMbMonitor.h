#pragma once

#include <functional>

#include "devicemodel/faultposition.h"
#include "monitor/monitorform.h"

namespace vek {

/// The live monitor: channel table, test indicators, identification, fault position, and the device commands.
class frmMbMonitor : public MonitorForm {
  public:
    static constexpr std::size_t slotCount = 16;

    explicit frmMbMonitor(Program& program);

    Slider Slider1{"Slider1", -100, 100};
    Label lblFehlerVorzeichen{"lblFehlerVorzeichen"};
    Label lblRePos{"lblRePos"};
    Label lblReNeg{"lblReNeg"};

    Button cmdCal{"cmdCal", "CAL", 'A'};
    Button cmdTest{"cmdTest", "TEST", 'E'};
    Button cmdCLR{"cmdCLR", "CLEAR", 'R'};
    Button cmdFACT{"cmdFACT", "FACT"};
    Button cmdFACTall{"cmdFACTall", "FACT All"};

    Box layout() override;
    void load() override;
    void cycleDone() override;
    void showFaultPosition(const FaultPosition& position);

  private:
    void styleFields();
    void explainCommands();
    void showSlotNames();
    void switchIndicators();
    void hideRowsFrom(std::size_t firstHidden);
    void useLine(const std::function<void()>& operation);
    void runMonitor();
    void enableCommands(bool enabled);

    Box faultFrame();
    Box commandFrame();

    ControlArray<Label> lblSliderEnd_{"lblSliderEnd", 3};
    Label lblRePosText_{"lblRePosText", "Rf +"};
    Label lblReNegText_{"lblReNegText", "Rf -"};
    Label lblRePosUnit_{"lblRePosUnit", "kOhm"};
    Label lblReNegUnit_{"lblReNegUnit", "kOhm"};
    Frame fraFehlerort_{"fraFehlerort", "Fehlerort in %"};
    Frame fraBefehle_{"fraBefehle", "Geräte-Befehle"};
};

}  // namespace vek
