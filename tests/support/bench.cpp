#include "support/bench.h"

#include <stdexcept>

#include "support/shown.h"

namespace vek {

namespace {

sim::LineOptions lineOf(int type, bool kdl) {
    sim::LineOptions line = deviceOf(type);
    line.device.kdl = kdl;
    return line;
}

unsigned word(const Bytes& frame, std::size_t offset) {
    return static_cast<unsigned char>(frame[offset]) * 256U + static_cast<unsigned char>(frame[offset + 1]);
}

template <class Do>
void eachControl(const Box& box, const Do& act) {
    if (box.control != nullptr) {
        act(*box.control);
    }
    for (const Box& part : box.parts) {
        eachControl(part, act);
    }
}

Control* findIn(const Box& box, const std::string& name) {
    Control* found = nullptr;
    eachControl(box, [&](Control& control) { found = control.name == name ? &control : found; });
    return found;
}

template <class Controls>
Control* findIn(const Controls& controls, const std::string& name) {
    for (auto* control : controls) {
        if (control->name == name) {
            return control;
        }
    }
    return nullptr;
}

Control* findItem(const std::vector<MenuItem*>& items, const std::string& name) {
    for (MenuItem* item : items) {
        Control* found = item->name == name ? item : findItem(item->items, name);
        if (found != nullptr) {
            return found;
        }
    }
    return nullptr;
}

Control* findIn(Form& form, const std::string& name) {
    Control* found = findIn(form.layout(), name);
    found = found != nullptr ? found : findItem(form.menu(), name);
    if (found == nullptr && form.toolBar() != nullptr) {
        found = form.toolBar()->name == name ? form.toolBar() : findIn(form.toolBar()->buttons, name);
    }
    return found == nullptr && form.statusBar() != nullptr ? findIn(form.statusBar()->panels, name) : found;
}

const char* word(bool set) {
    return set ? "on" : "off";
}

std::string captionOf(const Control& control) {
    const auto of = [](const auto* kind) { return kind->caption.get(); };
    if (const auto* label = dynamic_cast<const Label*>(&control))
        return of(label);
    if (const auto* button = dynamic_cast<const Button*>(&control))
        return of(button);
    if (const auto* check = dynamic_cast<const CheckBox*>(&control))
        return of(check);
    if (const auto* option = dynamic_cast<const OptionButton*>(&control))
        return of(option);
    return of(&dynamic_cast<const Frame&>(control));
}

std::string valueOf(const Control& control) {
    if (const auto* box = dynamic_cast<const TextBox*>(&control))
        return box->text;
    if (const auto* box = dynamic_cast<const ComboBox*>(&control))
        return box->text;
    if (const auto* check = dynamic_cast<const CheckBox*>(&control))
        return word(check->value);
    if (const auto* option = dynamic_cast<const OptionButton*>(&control))
        return word(option->value);
    if (const auto* item = dynamic_cast<const MenuItem*>(&control))
        return word(item->checked);
    if (const auto* button = dynamic_cast<const ToolButton*>(&control))
        return word(button->pressed);
    if (const auto* slider = dynamic_cast<const Slider*>(&control))
        return std::to_string(slider->value);
    if (const auto* shape = dynamic_cast<const Shape*>(&control))
        return {colorLetter(shape->fillColor)};
    if (const auto* bar = dynamic_cast<const ProgressBar*>(&control))
        return std::to_string(bar->done) + "/" + std::to_string(bar->total);
    return captionOf(control);
}

}  // namespace

Bench::Bench(int type, bool kdl, SerialControl* line)
    : test({.decimalPoint = ",", .groupSeparator = "."}, line),
      peer(test.serial, test.clock, lineOf(type, kdl)) {
    kdl ? test.configureKdl() : test.configure();
    test.program.DeviceType = static_cast<std::uint8_t>(type);
    test.program.DeviceName = peer.line.device().name();
    test.program.ProfilePath = "/daten/vekXX731_Monitor.ini";
    test.serial.peer = [this, answer = test.serial.peer](std::string_view frame) {
        requests.push_back(requestIn(Bytes(frame)));
        const auto prepared = replies.find(requests.back());
        if (requests.back() == pulledAt) {
            test.serial.hangUp();
        } else if (prepared != replies.end()) {
            test.serial.reply(prepared->second);
        } else {
            answer(frame);
        }
    };
}

std::string Bench::requestIn(const Bytes& frame) {
    const auto at = [](const std::string& address, const char* usual) {
        return address == usual ? "" : address + " ";
    };
    if (frame.front() != ':') {
        const std::string address = at(std::to_string(static_cast<unsigned char>(frame[0])), "3");
        const std::string number = std::to_string(word(frame, 2));
        if (frame[1] == functionWriteMultipleRegisters) {
            return address + "w" + number + "=" + std::to_string(word(frame, 7));
        }
        const unsigned count = word(frame, 4);
        return address + "r" + number + (count == 1 ? "" : "x" + std::to_string(count));
    }
    const std::string address = at(frame.substr(2, 3), "003");
    const std::string command = frame.substr(5, frame.find('&') - 5);
    const std::string selecting = address + ":CAN ";
    if (command.starts_with(":TRSH ") && !requests.empty() && requests.back().starts_with(selecting)) {
        const std::string number = requests.back().substr(selecting.size());
        requests.pop_back();
        return address + "w" + number + "=" + command.substr(6);
    }
    return address + (command.starts_with(":TRSH? ") ? "r" + command.substr(7) : command);
}

Control& Bench::control(const std::string& name) {
    if (std::exchange(windowEvents_, test.host.log.size()) != test.host.log.size()) {
        found_.clear();
    }
    Control*& found = found_[name];
    for (auto form = test.host.open.rbegin(); found == nullptr && form != test.host.open.rend(); ++form) {
        found = findIn(**form, name);
    }
    return found != nullptr ? *found : throw std::out_of_range("no control " + name);
}

void Bench::set(const std::string& name, const std::string& value) {
    Control& chosen = control(name.substr(0, name.find('.')));
    if (auto* box = dynamic_cast<TextBox*>(&chosen)) {
        box->text = value;
        if (box->change) {
            box->change();
        }
    } else if (auto* combo = dynamic_cast<ComboBox*>(&chosen)) {
        (name.ends_with(".marked") ? combo->selectedText : combo->text) = value;
    } else if (auto* check = dynamic_cast<CheckBox*>(&chosen)) {
        check->value = value == "on";
        if (check->click) {
            check->click();
        }
    } else {
        auto& option = dynamic_cast<OptionButton&>(chosen);
        option.value = value == "on";
        if (option.click) {
            option.click();
        }
    }
}

void Bench::press(const std::string& name) {
    Control& pressed = control(name);
    if (auto* button = dynamic_cast<Button*>(&pressed)) {
        button->click();
    } else if (auto* item = dynamic_cast<MenuItem*>(&pressed)) {
        item->click();
    } else {
        dynamic_cast<ToolBar&>(control("Toolbar1")).buttonClick(name);
    }
}

std::string Bench::stateOf(const std::string& name) {
    const std::size_t dot = std::min(name.rfind('.'), name.size());
    const Control& named = control(name.substr(0, dot));
    const std::string part = name.substr(dot);
    if (part == ".enabled" || part == ".visible") {
        return word(part == ".enabled" ? named.enabled : named.visible);
    }
    if (const auto* combo = dynamic_cast<const ComboBox*>(&named); combo != nullptr && part == ".items") {
        std::string items;
        for (const std::string& item : combo->items.get()) {
            items += item + " ";
        }
        return items;
    }
    if (const auto* frame = dynamic_cast<const Frame*>(&named); frame != nullptr && part == ".chosen") {
        for (const OptionButton* option : frame->options) {
            if (option->value) {
                return option->caption;
            }
        }
        return "";
    }
    return part == ".caption" ? captionOf(named) : part == ".toolTip" ? named.toolTip.get() : valueOf(named);
}

std::map<std::string, std::string> Bench::shown(Form& form) const {
    std::map<std::string, std::string> all;
    eachControl(form.layout(), [&all](const Control& control) {
        if (dynamic_cast<const Button*>(&control) == nullptr) {
            all[control.name] =
                valueOf(control) + (control.enabled ? "" : " disabled") + (control.visible ? "" : " hidden");
        }
    });
    return all;
}

}  // namespace vek
