#pragma once

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "campaign/faultyline.h"
#include "support/shown.h"

namespace vek {

inline unsigned wordAt(const Bytes& bytes, std::size_t index) {
    const auto byte = [&](std::size_t at) {
        return static_cast<unsigned>(static_cast<unsigned char>(bytes.at(at)));
    };
    return byte(index) << 8U | byte(index + 1);
}

/// The number that a text begins with; 0 without one.
inline double numberOf(const std::string& text) {
    return std::strtod(text.substr(0, text.find_first_not_of("0123456789.+- \t")).c_str(), nullptr);
}

/// Halves away from zero; no sign at zero.
inline std::string fixed(double value, int decimals) {
    if (!std::isfinite(value)) {
        return "---";
    }
    const double unit = std::pow(10, decimals);
    std::string text = std::to_string(std::round(value * unit) / unit + 0.0);  // six decimals
    text.resize(text.find('.') + static_cast<std::size_t>(decimals > 0 ? decimals + 1 : 0));
    return text;
}

/// What the reply to a request says, judged by its bytes alone.
struct Answer {
    std::optional<Bytes> data;  ///< the registers read, the payload; empty for what was acknowledged
    std::string token;          ///< what counts in place of data
    std::string box;            ///< begin of the message box about it; none: ""
};

/// A frame with a right checksum is the answer when it names this device and this function, and for a write
/// these registers, and is not the program's own request.
inline Answer modbusAnswer(const Exchange& exchange) {
    const Bytes& request = exchange.request;
    const Bytes& reply = exchange.received;
    const bool write = request[1] == 16;
    const bool whole = reply.size() >= 3 && sim::hasValidCrc(sim::Bytes(reply.begin(), reply.end()));
    if (whole && (reply.size() < 5 || wordAt(reply, 0) % 256 == wordAt(request, 0) % 256 + 128)) {
        const std::string token = "EXCEP_" + std::to_string(wordAt(reply, 1) % 256);
        return {{}, token, token == "EXCEP_2" && !write ? "" : "MODBUS-Fehler|stop"};
    }
    const std::size_t head = write ? 6 : 2;
    const bool cut = !whole || (!write && reply.size() < wordAt(reply, 2) / 256 + 5);
    if (cut || reply == request || reply.substr(0, head) != request.substr(0, head)) {
        return {{}, "CRC_TIMEOUT", "MODBUS-Fehler|-"};
    }
    const std::size_t length = write ? 0 : 2 * std::size_t{wordAt(request, 4)};
    const bool fits = write || wordAt(reply, 2) / 256 == length;
    return {fits ? std::optional(reply.substr(3, length)) : std::nullopt, "", ""};
}

inline std::string kdlCommand(const Bytes& request) {
    return request.substr(5, request.find('&') - 5);
}

/// Between the header and the "&" of what ended in time.
inline Answer kdlAnswer(const Exchange& exchange) {
    const std::size_t end = exchange.received.find('&');
    if (!exchange.received.ends_with("\r\n")) {
        return {{}, "#TIMEOUT_ERROR#", ""};
    }
    return {end == Bytes::npos || end < 6 ? exchange.received.substr(0, exchange.received.size() - 2)
                                          : exchange.received.substr(6, end - 6),
            "", ""};
}

/// Holds a window against what the line has carried. From the bytes that the program was given to read, and
/// from nothing that the program makes of them, it works out what each control has to show and which message
/// boxes are due.
class Witness {
  public:
    Witness(TestProgram& test, FaultyLine& line, Form& form) : test_(test), line_(line) {
        collect(form.layout());
    }
    Witness(const Witness&) = delete;
    Witness& operator=(const Witness&) = delete;
    virtual ~Witness() = default;

    /// Takes in what has passed since the last call, and looks at the window.
    void settle() {
        follow(line_.take());
        for (const auto& [name, text] : due_) {
            line_.expect(shown(name) == text, name + " shows \"" + shown(name) + "\", not \"" + text + "\"");
        }
        for (const std::string& box : test_.desktop.takeBoxes()) {
            --boxes_[box.substr(0, box.find('|', box.find('|') + 1))];
        }
        for (const auto& [begin, missing] : boxes_) {
            line_.expect(begin.empty() || begin == portMissing || missing == 0,
                         std::to_string(missing) + " boxes are missing: " + begin);
        }
        boxes_.clear();
    }

    /// Whether a request begins something before which the window has to be up to date.
    virtual bool startsAnew(const Bytes& /*frame*/) const { return false; }

    bool has(const std::string& name) const { return controls_.contains(name); }
    void press(const std::string& button) { control<Button>(button).click(); }

  protected:
    virtual void follow(const std::vector<Exchange>& exchanges) = 0;

    template <class Kind>
    Kind& control(const std::string& name) const {
        return dynamic_cast<Kind&>(*controls_.at(name));
    }

    std::string shown(const std::string& name) const {
        const Control* control = controls_.at(name);
        const auto* label = dynamic_cast<const Label*>(control);
        const auto* text = dynamic_cast<const TextBox*>(control);
        const auto* check = dynamic_cast<const CheckBox*>(control);
        const auto* option = dynamic_cast<const OptionButton*>(control);
        const auto* slider = dynamic_cast<const Slider*>(control);
        return label    ? label->caption.get()
               : text   ? text->text.get()
               : check  ? std::to_string(check->value)
               : option ? std::to_string(option->value)
               : slider ? std::to_string(slider->value)
                        : std::string(1, colorLetter(dynamic_cast<const Shape&>(*control).fillColor));
    }

    /// From now on the control has to show this.
    void show(const std::string& name, const std::string& text) { due_[name] = text; }
    void forget(const std::string& name) { due_.erase(name); }
    void judge(bool value) { line_.count(value ? "fields with a value" : "fields without one"); }
    void expectBox(const std::string& begin) { ++boxes_[begin]; }

    TestProgram& test_;
    FaultyLine& line_;
    std::map<std::string, std::string> due_;

  private:
    /// An adapter that is out when the port is opened.
    static constexpr const char* portMissing = "Fehler|-";

    void collect(const Box& box) {
        if (box.control != nullptr) {
            controls_[box.control->name] = box.control;
        }
        for (const Box& part : box.parts) {
            collect(part);
        }
    }

    std::map<std::string, Control*> controls_;
    std::map<std::string, int> boxes_;  // still due, by their begin
};

}  // namespace vek
