#pragma once

#include <cstdint>
#include <optional>

#include "devicemodel/measurementchannel.h"
#include "program/childform.h"

namespace vek {

/// The measurement-register tool: reads one channel at any start register and shows each of its fields as a
/// number and in words.
class frmMessReg : public ChildForm {
  public:
    explicit frmMessReg(Program& program);

    TextBox txtMessRegNr{"txtMessRegNr"};
    Button cmdMessRegRead{"cmdMessRegRead", "Register lesen", 'l'};

    Label lblMessVal{"lblMessVal"};
    Label lblMessTest{"lblMessTest"};
    Label lblTestTxt{"lblTestTxt"};
    Label lblMessAlarm{"lblMessAlarm"};
    Label lblAlarmTxt{"lblAlarmTxt"};
    Label lblMessRange{"lblMessRange"};
    Label lblRangeTxt{"lblRangeTxt"};
    Label lblMessEinheit{"lblMessEinheit"};
    Label lblEinheitTxt{"lblEinheitTxt"};
    Label lblMessBeschreibung{"lblMessBeschreibung"};
    Label lblBezTxt{"lblBezTxt"};

    Box layout() override;
    Button* defaultButton() override { return &cmdMessRegRead; }

  private:
    void read();
    void clearFields();
    void showValue(const std::optional<float>& value);
    void showStatus(const std::optional<ChannelStatus>& status);
    void showDescription(const std::optional<std::uint16_t>& code);

    Label lblMessRegNr_{"lblMessRegNr", "Messwert - Register"};
    ControlArray<Label> lblHeading_{"lblHeading", 6};
    Frame fraMesskanal_{"fraMesskanal", "Messkanal"};
};

}  // namespace vek
