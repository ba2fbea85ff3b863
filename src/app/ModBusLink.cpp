#include "app/ModBusLink.h"

#include <algorithm>
#include <array>

#include "app/portstatus.h"
#include "platform/serialsettings.h"
#include "program/port.h"
#include "program/settings.h"

namespace vek {

namespace {

/// Behind an option for each baud rate stands the one for the other protocol.
constexpr std::size_t kdlRow = baudRates.size();

std::size_t rowOf(std::int32_t baudRate) {
    return static_cast<std::size_t>(std::find(baudRates.begin(), baudRates.end(), baudRate) -
                                    baudRates.begin());
}

struct FrameRow {
    OptionButton ModBusLink::*option;
    const char* frameFormat;
};

constexpr std::array<FrameRow, 3> frameRows = {{
    {&ModBusLink::opt8e1, evenParityFrame},
    {&ModBusLink::opt8n1, noParityFrame},
    {&ModBusLink::opt8o1, oddParityFrame},
}};

/// Why a port is not offered, in the words of its tool tip; "" for one that is.
std::string reasonText(PortError error, const PortInfo& port) {
    switch (error) {
        case PortError::None:
            return "";
        case PortError::NotThere:
            return "nicht vorhanden";
        case PortError::InUse:
            return "von einem anderen Programm belegt";
        case PortError::NotPermitted:
            return "keine Berechtigung" + (port.permitted.empty() ? "" : " (" + port.permitted + ")");
        case PortError::SettingsRefused:
            return "nimmt die Einstellungen nicht an";
        case PortError::Failed:
            return "lässt sich nicht öffnen";
    }
    return "";
}

std::string portToolTip(PortError error, const PortInfo& port) {
    const std::string reason = reasonText(error, port);
    return reason.empty() ? port.device : port.device + ": " + reason;
}

/// A number as it stands in the settings file: with a blank in place of a sign.
std::string signedText(std::int32_t value) {
    return (value < 0 ? "" : " ") + std::to_string(value);
}

}  // namespace

ModBusLink::ModBusLink(Program& program) : ChildForm(program, "ModBusLink") {
    caption = "Protocol - Inteface Settings";
    Port.toolTip =
        "Auswahl der seriellen Schnittstelle.Es werden nur die Verfügbaren Schnittstellen angezeigt.";
    Baud.toolTip = "Protokoll / Baudrate des Gerätes auswählen";
    FrameOptions.toolTip = "Parität auswählen";
    btnOk.toolTip = "Schnittstelle-Parameter übernehmen";
    Label2.style = TextStyle::Bold;
    for (std::size_t index = 0; index < portCount; ++index) {
        optCom[index].caption = "COM" + std::to_string(index + 1);
    }
    for (std::size_t index = 0; index < baudRates.size(); ++index) {
        optBaud[index].caption = std::to_string(baudRates.at(index)) + (index == 0 ? " Baud " : " Baud");
    }
    optBaud[kdlRow].caption = "KDL-Protokoll";
    btnOk.click = [this] { takeSettings(); };
}

void ModBusLink::load() {
    ChildForm::load();
    offerPorts();
    showSettings();
}

void ModBusLink::offerPorts() {
    for (int n = 1; n <= portCount; ++n) {
        OptionButton& option = optCom[static_cast<std::size_t>(n - 1)];
        PortError error{};
        option.enabled = PortExists(program_, n, error);
        option.toolTip = portToolTip(error, program_.RS485.portInfo(n));
    }
}

void ModBusLink::showSettings() {
    if (program_.ComPort >= 1 && program_.ComPort <= portCount) {
        optCom[static_cast<std::size_t>(program_.ComPort - 1)].value = true;
    }
    const std::size_t row = rowOf(program_.BaudRate);
    optBaud[row < baudRates.size() ? row : rowOf(defaultBaudRate)].value = true;
    opt8e1.value = true;
    for (const FrameRow& frame : frameRows) {
        if (program_.FrameFormat == frame.frameFormat) {
            (this->*frame.option).value = true;
        }
    }
    if (program_.kdlActive()) {
        optBaud[kdlRow].value = true;
    }
}

void ModBusLink::takeSettings() {
    takePort();
    takeBaudRate();
    program_.FrameFormat = chosenFrameFormat();
    program_.shell.portPanel = portStatusText(program_);
    storeChoice();
    close();
}

void ModBusLink::takePort() {
    program_.ComPort = 0;
    for (std::size_t index = 0; index < portCount; ++index) {
        if (optCom[index].value) {
            program_.ComPort = static_cast<std::int16_t>(index + 1);
            return;
        }
    }
    showError(program_, "Ausgewählte Schnittstelle ist nicht vorhanden");
}

void ModBusLink::takeBaudRate() {
    program_.BaudRate = defaultBaudRate;
    for (std::size_t index = 0; index < baudRates.size(); ++index) {
        if (optBaud[index].value) {
            program_.BaudRate = baudRates.at(index);
            return;
        }
    }
    if (!optBaud[kdlRow].value) {
        showError(program_, "Baudrate nicht einstellbar. Default = 9600");
    }
}

std::string ModBusLink::chosenFrameFormat() const {
    if (optBaud[kdlRow].value) {
        return kdlFrameFormat;
    }
    for (const FrameRow& frame : frameRows) {
        if ((this->*frame.option).value) {
            return frame.frameFormat;
        }
    }
    return evenParityFrame;
}

void ModBusLink::storeChoice() {
    storeSettings(program_,
                  {comSetting.with(signedText(program_.ComPort)),
                   baudSetting.with(signedText(program_.BaudRate)), frameSetting.with(program_.FrameFormat)});
}

Box ModBusLink::layout() {
    std::vector<Box> firstPorts;
    std::vector<Box> otherPorts;
    for (std::size_t index = 0; index < portCount; ++index) {
        (index < portCount / 2 ? firstPorts : otherPorts).emplace_back(optCom[index]);
    }
    std::vector<Box> rates = {Label1};
    for (std::size_t index = 0; index < kdlRow; ++index) {
        rates.emplace_back(optBaud[index]);
    }
    rates.push_back(gap());
    rates.emplace_back(optBaud[kdlRow]);
    rates.push_back(stretch());
    return column({Label2,
                   row({framed(Port, row({column(std::move(firstPorts)), column(std::move(otherPorts))})),
                        framed(Baud, column(std::move(rates))),
                        framed(FrameOptions, column({opt8n1, opt8o1, opt8e1, stretch()}))}),
                   row({stretch(), btnOk})});
}

}  // namespace vek
