#pragma once

#include <string>
#include <utility>
#include <vector>

#include "kdl/kdldevice.h"
#include "parameterrig.h"

namespace vek {

using Commands = std::vector<std::string>;

/// The commands in one text, those of a parameter by its number: "1 2=50 :MEM? ".
inline std::string shortened(const Commands& commands) {
    std::string text;
    for (const std::string& command : commands) {
        if (command.starts_with(":CAN ")) {
            text += command.substr(5) + "=";
        } else {
            const std::size_t head = command.starts_with(":TRSH? ")  ? 7
                                     : command.starts_with(":TRSH ") ? 6
                                                                     : 0;
            text += command.substr(head) + " ";
        }
    }
    return text;
}

/// The parameter editor on the KDL bus, with a device of the type that answers from a table.
class KdlRig {
  public:
    explicit KdlRig(int deviceType) {
        test.configureKdl();
        test.program.DeviceType = static_cast<std::uint8_t>(deviceType);
        test.program.DeviceName = "vekQX731";
        test.program.ProfilePath = "/daten/vekXX731_Monitor.ini";
        device.answers = {{":TRSH? 1", "Re/kO 100"}, {":TRSH? 2", "Re/kO 50"}, {":TRSH? 4", "Uu/V 80"},
                          {":TRSH? 5", "Uo/V 90"},   {":TRSH? 6", "T/h 24"},   {":TRSH? 7", "dig 1"},
                          {":TRSH? 8", "dig 0"},     {":TRSH? 9", "Tvz/s 1"},  {":TRSH? 10", "Tvz/s 2"},
                          {":TRSH? 11", "Tvz/s 3"},  {":TRSH? 13", "dig 0"},   {":TRSH? 14", "Adr= 3"},
                          {":TRSH? 15", "dig 0"},    {":MEM?", "on 1"},        {":REL? 0", "nc 1"},
                          {":REL? 1", "no 0"}};
        if (deviceType <= 2) {
            measureImpedance("FndHz 500");
        } else if (deviceType == 8) {
            device.answers[":TRSH? 3"] = "Ce/uF 20";
        } else if (deviceType == 9) {
            device.answers[":TRSH? 3"] = "Uo/V 250";
            device.answers[":TRSH? 12"] = "T/h 24";
        }
        device.onCommand = [this](const std::string& command) { acknowledge(command); };
    }

    TestProgram test;
    KdlDevice device{test.serial};
    LastWindow& mainWindow = test.open<LastWindow>();
    Commands refused;  ///< orders that the device does not obey
    Commands silent;   ///< requests that it does not answer

    void measureImpedance(const std::string& reply) {
        device.answers[":TRSH? 8"] = reply;
        device.answers[":TRSH? 3"] = "Ze/kO 30";
        device.answers[":TRSH? 12"] = "Ze/kO 40";
    }

    /// Opened, which reads the device, at the first use.
    frmMbParameter& editor() {
        if (editor_ == nullptr) {
            editor_ = &test.open<frmMbParameter>();
        }
        return *editor_;
    }

    /// The boxes of "Parameter setzen"; `commands` then holds what it sent.
    Boxes write() {
        editor();
        device.takeCommands();
        test.desktop.takeBoxes();
        editor().cmdWritePara.click();
        commands = device.takeCommands();
        return test.desktop.takeBoxes();
    }

    /// The value that was written under the number, "-" for none.
    std::string written(int number) const {
        const auto found = std::find(commands.begin(), commands.end(), ":CAN " + std::to_string(number));
        return found == commands.end() || found + 1 == commands.end() ? "-" : (found + 1)->substr(6);
    }

    Commands commands;

  private:
    void acknowledge(const std::string& command) {
        if (command.find('?') == std::string::npos) {
            const bool obeys = std::find(refused.begin(), refused.end(), command) == refused.end();
            device.answers[command] = obeys ? "" : "error 3";
        }
        if (std::find(silent.begin(), silent.end(), command) != silent.end()) {
            device.answers.erase(command);
        }
    }

    frmMbParameter* editor_ = nullptr;
};

}  // namespace vek
