#pragma once

#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "modbus/modbusframe.h"
#include "parameters/frmMbParameter.h"
#include "support/simulatedpeer.h"
#include "support/testprogram.h"

namespace vek {

using Texts = std::vector<std::string>;

/// The parameter editor on one of the buses, with a simulated device of the type, both at address 3.
class EditorBench {
  public:
    EditorBench(int type, bool kdl) : peer(test.serial, test.clock, options(type, kdl)) {
        kdl ? test.configureKdl() : test.configure();
        test.program.DeviceType = static_cast<std::uint8_t>(type);
        test.program.DeviceName = device.name();
        test.program.ProfilePath = "/daten/vekXX731_Monitor.ini";
        test.serial.peer = [this, answer = test.serial.peer](std::string_view frame) {
            requests.push_back(requestIn(Bytes(frame)));
            const auto pretended = replies.find(requests.back());
            if (requests.back() == pulledAt) {
                test.serial.hangUp();
            } else if (pretended != replies.end()) {
                test.serial.reply(pretended->second);
            } else {
                answer(frame);
            }
        };
    }

    TestProgram test;
    SimulatedPeer peer;
    sim::Device& device = peer.line.device();
    sim::ParameterSet& parameters = device.parameters();
    LastWindow& mainWindow = test.open<LastWindow>();

    /// What went over the line: "r3005", "w3005=100"; on the KDL bus "r1", ":CAN 1", "w1=100" and what does
    /// not go by a number as it is.
    Texts requests;
    std::map<std::string, Bytes> replies;  ///< frames that come instead of the device's own
    std::string pulledAt;                  ///< the request at which the adapter is pulled out

    /// Opened, which reads the device, at the first use.
    frmMbParameter& editor() {
        if (editor_ == nullptr) {
            editor_ = &test.open<frmMbParameter>();
            collect(editor_->layout());
        }
        return *editor_;
    }

    /// By name, what stands in the editor's layout.
    Control& control(const std::string& name) {
        editor();
        return *controls_.at(name);
    }

    /// Types or clicks as the user does.
    void set(const std::string& name, const std::string& value) {
        Control& chosen = control(name);
        if (auto* box = dynamic_cast<TextBox*>(&chosen)) {
            box->text = value;
        } else if (auto* check = dynamic_cast<CheckBox*>(&chosen)) {
            editor().check(*check, value == "on");
        } else {
            dynamic_cast<OptionButton&>(chosen).value = value == "on";
        }
    }

    Texts press(Button& button) {
        button.click();
        return test.desktop.takeBoxes();
    }
    Texts read() { return press(editor().cmdReadPara); }
    Texts write() { return press(editor().cmdWritePara); }

    static unsigned word(const Bytes& frame, std::size_t offset) {
        return static_cast<unsigned char>(frame[offset]) * 256U +
               static_cast<unsigned char>(frame[offset + 1]);
    }

  private:
    static sim::LineOptions options(int type, bool kdl) {
        sim::LineOptions line = deviceOf(type);
        line.device.kdl = kdl;
        return line;
    }

    std::string requestIn(const Bytes& frame) {
        if (frame.front() != ':') {
            const std::string number = std::to_string(word(frame, 2));
            return frame[1] == functionWriteMultipleRegisters
                       ? "w" + number + "=" + std::to_string(word(frame, 7))
                       : "r" + number;
        }
        const std::string command = frame.substr(5, frame.find('&') - 5);
        if (command.starts_with(":TRSH ")) {
            const std::string number = requests.back().substr(5);
            requests.pop_back();
            return "w" + number + "=" + command.substr(6);
        }
        return command.starts_with(":TRSH? ") ? "r" + command.substr(7) : command;
    }

    void collect(const Box& box) {
        if (box.control != nullptr) {
            controls_[box.control->name] = box.control;
        }
        for (const Box& part : box.parts) {
            collect(part);
        }
    }

    frmMbParameter* editor_ = nullptr;
    std::map<std::string, Control*> controls_;
};

}  // namespace vek
