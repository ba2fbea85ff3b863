// Measurement channels as the register tool and the monitors show them. Input: slot, device type, which read
// is spoiled and how, the channel's four registers.
#include <cmath>
#include <cstring>

#include "devicemodel/descriptiontexts.h"
#include "devicemodel/faultposition.h"
#include "devicemodel/monitorrendering.h"
#include "fuzz.h"
#include "modbus/modbusframe.h"
#include "monitor/frmMessReg.h"
#include "support/testprogram.h"

namespace vek {
namespace {

struct Registers {
    std::string bytes;  ///< the four of the channel

    unsigned word(std::size_t index) const {
        return static_cast<unsigned char>(bytes[2 * index]) * 256U +
               static_cast<unsigned char>(bytes[2 * index + 1]);
    }

    /// Put together by arithmetic from sign, exponent and mantissa.
    double value() const {
        const int exponent = static_cast<int>(word(0) >> 7U & 0xFFU);
        const double mantissa = (word(0) & 0x7FU) * 65536.0 + word(1);
        const double sign = (word(0) & 0x8000U) != 0 ? -1 : 1;
        if (exponent == 255) {
            return mantissa == 0 ? sign * HUGE_VAL : std::nan("");
        }
        return sign * (exponent == 0 ? std::ldexp(mantissa, -149)
                                     : std::ldexp(mantissa + 8388608.0, exponent - 150));
    }
};

double numberIn(std::string text) {
    std::erase(text, '.');
    const std::size_t comma = text.find(',');
    if (comma != std::string::npos) {
        text[comma] = '.';
    }
    return std::strtod(text.c_str(), nullptr);
}

bool isNear(double shown, double value, double resolution) {
    return std::fabs(shown - value) <= resolution + std::fabs(value) * 1e-6;
}

void checkMonitor(const Registers& registers, int slot, std::uint8_t deviceType) {
    const NumberLocale german{",", "."};
    const float value = BytesToSingle(registers.bytes);
    const std::string text = channelValueText(slot, deviceType, value, german);
    const auto number = channelNumber(slot, deviceType, value);
    require(number.has_value() == (text != noValueText), "a number is shown, or none");
    if (number) {
        require(std::isfinite(*number) && std::isfinite(value), "only numbers are shown");
        require(isNear(numberIn(text), *number, 1e-40), "the text shows the number");
    }
    const FaultPosition position = faultPosition(number, 1000, deviceType);
    require(position.slider >= -100 && position.slider <= 100, "a fault lies on the line");
    require(!descriptionText(static_cast<std::uint16_t>(registers.word(3))).empty(), "a channel has a name");
}

/// The register tool on a device that answers with the registers; the answer to one of its three reads may
/// be spoiled.
class Tool {
  public:
    Tool(const Registers& registers, unsigned spoiled, std::uint8_t flip)
        : registers_(registers), spoiled_(spoiled), flip_(flip) {
        test_.configure();
        test_.serial.peer = [this](std::string_view request) { answer(request); };
        test_.open<LastWindow>();
        window.txtMessRegNr.text = "1000";
        window.cmdMessRegRead.click();
    }

  private:
    void answer(std::string_view request) {
        const std::size_t first = BytesToWord(request.substr(2)) - std::size_t{1000};
        const std::string data =
            registers_.bytes.substr(2 * first, std::size_t{2} * BytesToWord(request.substr(4)));
        std::string reply = std::string("\x03\x03") + static_cast<char>(data.size()) + data;
        reply += ComputeCrc(reply);
        if (reads_++ == spoiled_) {
            char& byte = reply[flip_ % reply.size()];
            byte = static_cast<char>(byte ^ (1 << (flip_ / 32U)));
        }
        test_.serial.reply(reply);
    }

    TestProgram test_;
    const Registers& registers_;
    unsigned reads_ = 0;
    unsigned spoiled_;
    std::uint8_t flip_;

  public:
    frmMessReg& window = test_.open<frmMessReg>();
};

void checkTool(const Registers& registers, unsigned spoiled, std::uint8_t flip) {
    const Tool tool(registers, spoiled, flip);
    const frmMessReg& window = tool.window;
    const auto shows = [](const Label& label, unsigned expected) {
        return label.caption.get() == std::to_string(expected);
    };
    const std::string value = window.lblMessVal.caption;
    if (spoiled == 0 || !std::isfinite(registers.value())) {
        require(value == noValueText, "no value is shown but a number that came unharmed");
    } else {
        require(isNear(std::strtod(value.c_str(), nullptr), registers.value(), 1e-45),
                "the value is the one sent");
    }
    const unsigned status = registers.word(2);
    require(spoiled == 1 ? window.lblMessAlarm.caption.get() == noValueText
                         : shows(window.lblMessTest, status & 0xC000U) &&
                               shows(window.lblMessAlarm, status & 0x0700U) &&
                               shows(window.lblMessRange, status & 0x00C0U) &&
                               shows(window.lblMessEinheit, status & 0x001FU),
            "the states are those sent, or none");
    require(spoiled == 2 ? window.lblMessBeschreibung.caption.get() == noValueText
                         : shows(window.lblMessBeschreibung, registers.word(3)),
            "the code is the one sent, or none");
}

void run(Input input) {
    const int slot = input.byte() % 16;
    const std::uint8_t deviceType = input.byte() % 12;
    const unsigned spoiled = input.byte() % 4U;  // 3 = none
    const std::uint8_t flip = input.byte();
    Registers registers{input.bytes(8)};
    registers.bytes.resize(8);
    checkMonitor(registers, slot, deviceType);
    checkTool(registers, spoiled, flip);
}

}  // namespace
}  // namespace vek

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    vek::run(vek::Input(data, size));
    return 0;
}
