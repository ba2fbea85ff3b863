#pragma once

#include <cstdint>
#include <string>

#include "platform/serialsettings.h"
#include "program/childform.h"

namespace vek {

/// The interface dialog: serial port, protocol with its baud rate, and frame format, for both protocols. No
/// link: the one to Modbus devices is ModBusLink1.
class ModBusLink : public ChildForm {
  public:
    static constexpr int portCount = 16;

    explicit ModBusLink(Program& program);

    Frame Port{"Port", "Serial Port"};
    ControlArray<OptionButton> optCom{"optCom", portCount, Port};
    Frame Baud{"Baud", "Protocol / Baudrate"};
    ControlArray<OptionButton> optBaud{"optBaud", baudRates.size() + 1, Baud};
    Frame FrameOptions{"Frame", "Frame"};
    OptionButton opt8n1{FrameOptions, "opt8n1", "8 Data, no, 1 Stop"};
    OptionButton opt8o1{FrameOptions, "opt8o1", "8 Data, odd, 1 Stop"};
    OptionButton opt8e1{FrameOptions, "opt8e1", "8 Data, even, 1 Stop"};
    Label Label1{"Label1", "ModBus RTU - Baudrate"};
    Label Label2{"Label2", "Interface settings"};
    Button btnOk{"btnOk", "OK", 'O'};

    Box layout() override;
    void load() override;
    Button* defaultButton() override { return &btnOk; }

  private:
    void offerPorts();
    void showSettings();
    void takeSettings();
    void takePort();
    void takeBaudRate();
    std::string chosenFrameFormat() const;
    void storeChoice();
};

}  // namespace vek
