#pragma once

#include <optional>
#include <string>
#include <vector>

#include "devicemodel/measurementchannel.h"
#include "program/childform.h"

namespace vek {

/// What the monitor windows have in common: identification, test indicators, legend, the buttons of the poll,
/// and the channel table with a number of rows for each window. The polls fill it.
class MonitorForm : public ChildForm {
  public:
    Frame Frame2{"Frame2", "Anzeige Test"};
    Shape LED_TEST_INTERN{"LED_TEST_INTERN"};
    Shape LED_TEST_EXTERN{"LED_TEST_EXTERN"};

    ControlArray<Label> Label7;
    ControlArray<Label> lblMesswert;
    ControlArray<Label> lblRange;
    ControlArray<Label> lblEinheit;
    ControlArray<Label> lblMessName;
    ControlArray<Shape> LED;

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

    using ChildForm::isOpen;

    /// Shows the value as the slot does on this device; "---" for nothing.
    void showValue(std::size_t slot, std::optional<float> value);

    /// The slot's status has been shown: what this window makes of it beyond that.
    virtual void statusShown(std::size_t /*slot*/, RangeState /*range*/) {}

    /// A Modbus poll has read all channels once more.
    virtual void cycleDone() = 0;

  protected:
    MonitorForm(Program& program, std::string formName, std::size_t slotCount, std::string stopCaption);

    /// The slot's value as the number that it shows; nothing for "---".
    std::optional<double> shownNumber(std::size_t slot) const { return shownNumbers_.at(slot); }

    Box channelTable();
    Box deviceFrame();
    Box legendFrame();
    Box testFrame();

  private:
    void styleTables();

    std::vector<std::optional<double>> shownNumbers_;

    ControlArray<Label> lblHeading_{"lblHeading", 5};
    ControlArray<Label> lblDeviceText_{"lblDeviceText", 5};
    ControlArray<Label> lblLegend_{"lblLegend", 5};
    ControlArray<Shape> shpLegend_{"shpLegend", 5};
    Label lblTestIntern_{"lblTestIntern", "interner Test läuft"};
    Label lblTestExtern_{"lblTestExtern", "externer Test läuft"};
    Frame fraGeraet_{"fraGeraet", "Gerät"};
    Frame fraMesswerte_{"fraMesswerte", "Messwerte"};
    Frame fraLegende_{"fraLegende", "Legende"};
};

/// Draws the label as a field for a value.
void asField(Label& label, int minimumCharacters, Align align);

}  // namespace vek
