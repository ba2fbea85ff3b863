#pragma once

#include <string>
#include <vector>

#include "modbus/modbusframe.h"
#include "parameters/frmMbParameter.h"
#include "support/simulatedpeer.h"
#include "support/testprogram.h"

namespace vek {

using Texts = std::vector<std::string>;
using Boxes = Texts;

/// The parameter editor on a simulated device of the type, both at address 3.
class ParameterRig {
  public:
    explicit ParameterRig(int deviceType, std::vector<sim::LineFault> faults = {})
        : peer(test.serial, test.clock, deviceOf(deviceType, std::move(faults))) {
        test.configure();
        test.program.DeviceType = static_cast<std::uint8_t>(deviceType);
        test.program.DeviceName = peer.line.device().name();
        test.program.ProfilePath = "/daten/vekXX731_Monitor.ini";
    }

    TestProgram test;
    SimulatedPeer peer;
    LastWindow& mainWindow = test.open<LastWindow>();

    /// Opened, which reads the device, at the first use.
    frmMbParameter& editor() {
        if (editor_ == nullptr) {
            editor_ = &test.open<frmMbParameter>();
            opened_ = test.serial.written.size();
        }
        return *editor_;
    }

    void store(const std::vector<std::pair<int, int>>& registers) {
        for (const auto& [number, value] : registers) {
            peer.line.device().parameters().store(static_cast<std::uint16_t>(number),
                                                  static_cast<std::uint16_t>(value));
        }
    }

    /// Has reads of the register answered with a value that no device would hold.
    void pretend(unsigned number, std::uint16_t value) {
        test.serial.peer = [this, number, value, device = test.serial.peer](std::string_view frame) {
            if (word(Bytes(frame), 2) != number) {
                device(frame);
                return;
            }
            const Bytes reply = Bytes("\x03\x03\x02") + WordToBytes(value);
            test.serial.reply(reply + ComputeCrc(reply));
        };
    }

    unsigned stored(std::uint16_t number) {
        return peer.line.device().parameters().read(number).value_or(0xFFFF);
    }

    /// The registers used since the editor was opened, or since the first request before that: "r3005",
    /// and "w3005=100" for a write.
    Texts uses() const {
        Texts all;
        for (std::size_t index = opened_; index < test.serial.written.size(); ++index) {
            const Bytes& frame = test.serial.written[index];
            const std::string number = std::to_string(word(frame, 2));
            all.push_back(frame[1] == functionWriteMultipleRegisters
                              ? "w" + number + "=" + std::to_string(word(frame, 7))
                              : "r" + number);
        }
        return all;
    }

    Boxes write() {
        editor().cmdWritePara.click();
        return test.desktop.takeBoxes();
    }

    Boxes read() {
        editor().cmdReadPara.click();
        return test.desktop.takeBoxes();
    }

  private:
    static unsigned word(const Bytes& frame, std::size_t offset) {
        return static_cast<unsigned char>(frame[offset]) * 256U +
               static_cast<unsigned char>(frame[offset + 1]);
    }

    frmMbParameter* editor_ = nullptr;
    std::size_t opened_ = 0;
};

/// The number in each use, "3005" for "w3005=100".
inline Texts numbersOf(Texts uses) {
    for (std::string& use : uses) {
        use = use.substr(1, 4);
    }
    return uses;
}

inline Texts textsOf(std::initializer_list<const TextBox*> boxes) {
    Texts texts;
    for (const TextBox* box : boxes) {
        texts.push_back(box->text.get());
    }
    return texts;
}

inline std::string error(const std::string& text) {
    return "Fehler|stop|ok|" + text;
}

inline std::string writeError(const std::string& text) {
    return "Write Error|stop|ok|" + text;
}

}  // namespace vek
