#pragma once

#include <optional>
#include <string>
#include <vector>

#include "monitor/modbuspoll.h"
#include "program/childform.h"

namespace vek {

/// What the monitor windows have in common: identification, test indicators, legend, the buttons of the poll,
/// and the channel table, whose rows each window owns in its own number.
class MonitorForm : public ChildForm, protected ModbusMonitorView {
  public:
    Frame Frame2{"Frame2", "Anzeige Test"};
    Shape LED_TEST_INTERN{"LED_TEST_INTERN"};
    Shape LED_TEST_EXTERN{"LED_TEST_EXTERN"};

    Label lblDevName{"lblDevName"};
    Label lblSwRegNr{"lblSwRegNr"};
    Label lblSwVer{"lblSwVer"};
    Label lblSwDate{"lblSwDate"};
    Label lblSwMb{"lblSwMb"};

    Button cmdRunMonitor{"cmdRunMonitor", "Start Monitor", 'S'};
    Button cmdStop;
    Button cmdClose{"cmdClose", "Schließen", 'c'};

    void unload() override;
    Button* defaultButton() override { return &cmdRunMonitor; }
    Button* cancelButton() override { return &cmdClose; }

  protected:
    /// Keeps the numbers of `slotCount` channels.
    MonitorForm(Program& program, std::string formName, std::size_t slotCount, std::string stopCaption);

    virtual Label& slotName(int slot) = 0;

    DeviceLabels deviceLabels() override { return {lblDevName, lblSwRegNr, lblSwVer, lblSwDate, lblSwMb}; }
    Shape& internalTest() override { return LED_TEST_INTERN; }
    Shape& externalTest() override { return LED_TEST_EXTERN; }
    std::string valueText(int slot, float value) override;
    void valueMissing(int slot) override { shownNumber(slot).reset(); }
    bool isShown() const override { return isOpen(); }

    /// The slot's value as the number that it shows; nothing for "---".
    std::optional<double>& shownNumber(int slot) { return shownNumbers_.at(static_cast<std::size_t>(slot)); }

    /// Draws the fields of all rows; to be called once the rows are there.
    void styleRows();

    Box channelTable();
    Box deviceFrame();
    Box legendFrame();
    Box testFrame();

  private:
    int slotCount() const { return static_cast<int>(shownNumbers_.size()); }

    std::vector<std::optional<double>> shownNumbers_;

    ControlArray<Label, 5> lblHeading_{"lblHeading"};
    ControlArray<Label, 5> lblDeviceText_{"lblDeviceText"};
    ControlArray<Label, 5> lblLegend_{"lblLegend"};
    ControlArray<Shape, 5> shpLegend_{"shpLegend"};
    Label lblTestIntern_{"lblTestIntern", "interner Test läuft"};
    Label lblTestExtern_{"lblTestExtern", "externer Test läuft"};
    Frame fraGeraet_{"fraGeraet", "Gerät"};
    Frame fraMesswerte_{"fraMesswerte", "Messwerte"};
    Frame fraLegende_{"fraLegende", "Legende"};
};

/// Draws the label as a field for a value.
void asField(Label& label, int minimumCharacters, Align align);

}  // namespace vek
