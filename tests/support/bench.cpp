#include "support/bench.h"

#include <stdexcept>

namespace vek {

namespace {

sim::LineOptions lineOf(int type, bool kdl) {
    sim::LineOptions line;
    line.device.type = type;
    line.device.kdl = kdl;
    return line;
}

template <class Do>
void eachControl(const Box& box, const Do& act) {
    std::visit([&](auto* control) { control != nullptr ? act(*control) : void(); }, box.control);
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

/// Whether the control is of the kind; `text` is then what `get` says of it.
template <class Kind, class Get>
bool tell(const Control& control, std::string& text, Get get) {
    const auto* kind = dynamic_cast<const Kind*>(&control);
    text = kind != nullptr ? std::string(get(*kind)) : text;
    return kind != nullptr;
}

std::string captionOf(const Control& control) {
    std::string text;
    const auto caption = [&](const auto& kind) { return kind.caption.get(); };
    tell<Label>(control, text, caption) || tell<Button>(control, text, caption) ||
        tell<CheckBox>(control, text, caption) || tell<OptionButton>(control, text, caption) ||
        tell<Frame>(control, text, caption);
    return text;
}

std::string valueOf(const Control& control) {
    std::string text = captionOf(control);
    const auto written = [](const auto& box) { return box.text.get(); };
    const auto set = [](const auto& button) { return word(button.value); };
    tell<TextBox>(control, text, written) || tell<ComboBox>(control, text, written) ||
        tell<CheckBox>(control, text,
                       [](const CheckBox& box) { return box.unknown ? "?" : word(box.value); }) ||
        tell<OptionButton>(control, text, set) ||
        tell<MenuItem>(control, text, [](const MenuItem& item) { return word(item.checked); }) ||
        tell<ToolButton>(control, text, [](const ToolButton& button) { return word(button.pressed); }) ||
        tell<Slider>(control, text, [](const Slider& slider) { return std::to_string(slider.value); }) ||
        tell<Shape>(control, text,
                    [](const Shape& shape) { return std::string{colorLetter(shape.fillColor)}; }) ||
        tell<ProgressBar>(control, text,
                          [](const ProgressBar& bar) { return bar.text.get() + (bar.failed ? " red" : ""); });
    return text;
}

}  // namespace

char colorLetter(const Color& color) {
    constexpr std::pair<Color, char> letters[] = {{colors::red, 'R'},     {colors::yellow, 'Y'},
                                                  {colors::green, 'G'},   {colors::cyan, 'C'},
                                                  {colors::magenta, 'M'}, {colors::white, 'W'}};
    for (const auto& [named, letter] : letters) {
        if (named == color) {
            return letter;
        }
    }
    return '-';
}

Bench::Bench(int type, bool kdl, SerialControl* line)
    : test({.decimalPoint = ",", .groupSeparator = "."}, line),
      peer(test.serial, test.clock, lineOf(type, kdl)) {
    kdl ? test.configureKdl() : test.configure();
    test.program.DeviceType = static_cast<std::uint8_t>(type);
    test.program.DeviceName = peer.line.device().name();
    test.program.ProfilePath = test.program.settingsPath = "/daten/vekXX731_Monitor.ini";
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
        const std::string number = std::to_string(BytesToWord(frame.substr(2, 2)));
        if (frame[1] == functionWriteMultipleRegisters) {
            return address + "w" + number + "=" + std::to_string(BytesToWord(frame.substr(7, 2)));
        }
        const unsigned count = BytesToWord(frame.substr(4, 2));
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
    } else if (auto* combo = dynamic_cast<ComboBox*>(&chosen)) {
        (name.ends_with(".marked") ? combo->selectedText : combo->text) = value;
    } else if (auto* check = dynamic_cast<CheckBox*>(&chosen)) {
        check->value = value == "on";
        if (check->click) {
            check->click();
        }
    } else {
        dynamic_cast<OptionButton&>(chosen).value = value == "on";
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
    if (const auto* box = dynamic_cast<const TextBox*>(&named); box != nullptr && part == ".refused") {
        return word(box->refused);
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
