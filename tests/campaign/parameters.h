#pragma once

#include <deque>
#include <set>

#include "campaign/witness.h"

namespace vek {

/// A row of parameters.txt, as the bus in use sees it.
struct Parameter {
    struct Option {
        std::string control;
        std::string code;  ///< on the bus
        std::string registerCode;
    };

    Parameter(const std::vector<std::string>& words, bool kdl)
        : reg(words.at(1)), query(kdl ? ":" + words.at(2) : reg), marks(words.at(3)) {
        std::ranges::replace(query, '_', ' ');
        for (std::size_t index = 4; index < words.size(); ++index) {
            std::istringstream word(words[index]);
            Option& option = options.emplace_back();
            std::getline(word, option.control, '=');
            std::getline(word, option.registerCode, '/');
            std::getline(word, option.code);
            option.code = kdl && !option.code.empty() ? option.code : option.registerCode;
        }
    }

    const std::string& control() const { return options.at(0).control; }
    bool isText() const { return control().starts_with("txt"); }
    bool isFlag() const { return control().starts_with("chk") && !isMask(); }
    bool isMask() const { return control().ends_with('_'); }
    bool is(char mark) const { return marks.find(mark) != std::string::npos; }

    std::string reg, query, marks;
    std::vector<Option> options;
};

/// The parameter editor over either bus.
class EditorWitness final : public Witness {
  public:
    EditorWitness(TestProgram& test, FaultyLine& line, Form& form) : Witness(test, line, form) {
        const char type = "0123456789X"[test.program.DeviceType];
        for (const auto& words : readTable("parameters.txt")) {
            const bool named = words[0].find(type) != std::string::npos;
            if (named != words[0].starts_with('!') && (!isKdl() || words[2] != "-")) {
                parameters_.emplace_back(words, isKdl());
            }
        }
    }

    /// The user changes some values, leaves no text that is no number, and the device where it is.
    void edit() {
        for (const Parameter& parameter : parameters_) {
            const std::string& name = parameter.control();
            const std::string number = std::to_string(line_.draw(line_.draw(2) == 0 ? 100 : 1000));
            const bool chosen = line_.draw(3) == 0 && !parameter.is('b');
            if (parameter.isText() && (chosen || isGarbled(shown(name)))) {
                control<TextBox>(name).text = number;
            } else if (chosen && (parameter.isMask() || (parameter.isFlag() && !switchedByBox(parameter)))) {
                auto& box = control<CheckBox>(parameter.isMask() ? name + "05" : name);
                box.value = line_.draw(2) == 0;
                box.click ? box.click() : void();
            } else if (chosen && name.starts_with("opt")) {
                const auto options = static_cast<unsigned>(parameter.options.size());
                control<OptionButton>(parameter.options[line_.draw(options)].control).value = true;
            }
        }
        control<TextBox>("txtAdresse").text = std::to_string(test_.program.DeviceAddress);
        control<OptionButton>("optBaud9600").value = true;
        control<OptionButton>("optEven").value = true;
        due_.clear();
    }

    /// The user has it all written.
    void write() {
        for (const Parameter& parameter : parameters_) {
            before_.push_back(codeShown(parameter));
        }
        measuring_ = shown("chkZe") == "1";
        press("cmdWritePara");
        settle();
        before_.clear();
    }

  private:
    bool isKdl() const { return test_.program.kdlActive(); }

    Answer answerOf(const Exchange& exchange) const {
        return isKdl() ? kdlAnswer(exchange) : modbusAnswer(exchange);
    }

    static bool isNoValue(const std::string& text) {
        return text.empty() || text == "off" || text == "---" || text == "CRC_TIMEOUT" ||
               text.starts_with("EXCEP_");
    }
    static bool isGarbled(const std::string& text) {
        return !isNoValue(text) && text.find_first_not_of("0123456789") != std::string::npos;
    }

    /// Over KDL the box of a threshold decides whether it is on.
    bool switchedByBox(const Parameter& parameter) const {
        return isKdl() && parameter.isFlag() && (parameter.is('n') || parameter.is('s'));
    }

    void follow(const std::vector<Exchange>& exchanges) override {
        std::string request;
        for (const Exchange& exchange : exchanges) {
            const std::string before = request;
            request = isKdl() ? kdlCommand(exchange.request) : std::to_string(wordAt(exchange.request, 2));
            if (!isKdl() && exchange.request[1] == 16) {
                request += "=" + std::to_string(wordAt(exchange.request, 7));
            } else if (request.starts_with(":TRSH ")) {
                request = before + request;  // it is for the parameter selected before
            }
            passed_[request].push_back(answerOf(exchange));
            expectBox(answerOf(exchange).box);
        }
        for (std::size_t index = 0; index < parameters_.size(); ++index) {
            before_.empty() ? judgeRead(parameters_[index]) : judgeWrite(parameters_[index], before_[index]);
        }
        for (const auto& [unordered, answers] : passed_) {
            line_.expect(answers.empty(), "nobody has ordered " + unordered);
        }
        passed_.clear();
    }

    /// The answer to the next of these requests.
    std::optional<Answer> take(const std::string& request) {
        std::deque<Answer>& answers = passed_[request];
        const auto first = answers.empty() ? std::nullopt : std::optional(answers.front());
        answers.erase(answers.begin(), answers.begin() + (first ? 1 : 0));
        return first;
    }

    void judgeRead(const Parameter& parameter) {
        if ((parameter.is('z') || (isKdl() && parameter.is('w'))) && shown("chkZe") != "1") {
            parameter.is('z') ? show(parameter.control(), isKdl() ? "off" : "---") : void();
            return;
        }
        const auto answer = take(parameter.query);
        if (!answer) {
            line_.expect(false, parameter.control() + " was not read");
            return;
        }
        const bool byNumber = !isKdl() && answer->data;
        const std::string text = byNumber  ? std::to_string(wordAt(*answer->data, 0))
                                 : isKdl() ? kdlValue(answer->data.value_or(""))
                                           : answer->token;
        const bool read = byNumber || (isKdl() && !text.empty());
        judge(read);
        unread_.erase(parameter.control());
        if (!read) {
            unread_.insert(parameter.control());
        }
        if (text != "EXCEP_2" || !parameter.is('o')) {
            // What could not be read counts as 0.
            showValue(parameter, text, read ? numberOf(text) : 0);
        }
    }

    /// What stands behind the first of these keys.
    static std::string kdlValue(const std::string& reply) {
        for (const std::string key : {"Re/kO", "FndHz", "Ze/kO", "Rp/kO", "Uu/V", "Uo/V", "Ce/uF", "off",
                                      "nc", "no", "Adr=", "dig", "Tvz/s", "T/h", "STDBY", "on"}) {
            if (const std::size_t at = reply.find(key); at != std::string::npos) {
                std::string value = key == "off" && reply.size() < 4 ? reply : reply.substr(at + key.size());
                value.erase(value.find_last_not_of(' ') + 1);
                return value.substr(std::min(value.find_first_not_of(' '), value.size()));
            }
        }
        return "";
    }

    void showValue(const Parameter& parameter, const std::string& text, double number) {
        const std::string& name = parameter.control();
        const bool on = parameter.is('s') ? text != "off" : number != 0;
        if (parameter.isText()) {
            show(name, text);
            if (isKdl() && parameter.options.size() > 1 && !text.empty()) {
                showSwitch(parameter.options[1].control, on && text != "off");
            }
        } else if (parameter.isMask()) {
            for (unsigned bit = 1; bit <= 11; ++bit) {
                show(bitName(name, bit), std::to_string(static_cast<unsigned>(number) >> bit & 1U));
            }
        } else if (isKdl() && name == "chkZe" && (text == "500" || text == "600")) {
            show(name, "1");
            show("opt50Hz_1uF", text == "500" ? "1" : "0");
            show("opt60Hz_10uF", text == "600" ? "1" : "0");
        } else if (parameter.isFlag() &&
                   (isKdl() && name == "chkZe" ? text == "off"
                                               : switchedByBox(parameter) || number == 0 || number == 1)) {
            show(name, (switchedByBox(parameter) ? on : number == 1) ? "1" : "0");
        } else if (const auto chosen = optionOf(parameter, number)) {
            for (const Parameter::Option& option : parameter.options) {
                show(option.control, option.control == *chosen ? "1" : "0");
            }
        } else {
            unread_.insert(name);
            expectBox("Fehler|stop");
        }
    }

    /// A check box that is hidden follows nothing.
    void showSwitch(const std::string& name, bool on) {
        control<CheckBox>(name).visible ? show(name, on ? "1" : "0") : void();
    }

    static std::optional<std::string> optionOf(const Parameter& parameter, double number) {
        const auto found = std::ranges::find_if(parameter.options, [&](const auto& option) {
            return !option.code.empty() && numberOf(option.code) == number;
        });
        return found == parameter.options.end() ? std::nullopt : std::optional(found->control);
    }

    static std::string bitName(const std::string& mask, unsigned bit) {
        return mask + (bit < 10 ? "0" : "") + std::to_string(bit);
    }

    /// What the controls stand for on the bus; nothing when no option is set.
    Parameter::Option codeShown(const Parameter& parameter) const {
        const std::string& name = parameter.control();
        unsigned mask = 0;
        for (unsigned bit = 1; parameter.isMask() && bit <= 11; ++bit) {
            mask |= (shown(bitName(name, bit)) == "1" ? 1U : 0U) << bit;
        }
        const auto set = std::ranges::find_if(parameter.options, [&](const auto& option) {
            return name.starts_with("opt") && shown(option.control) == "1";
        });
        if (name.starts_with("opt")) {
            return set == parameter.options.end() ? Parameter::Option() : *set;
        }
        const std::string code = parameter.isMask() ? std::to_string(mask) : shown(name);
        return {name, code, code};
    }

    /// A number is written when the device takes it, and no 0 that stands for what was not read.
    void judgeWrite(const Parameter& parameter, Parameter::Option code) {
        const std::string& name = parameter.control();
        if (const auto fetched = code.code == "---" ? take(parameter.query) : std::nullopt) {
            code.code = fetched->data ? std::to_string(wordAt(*fetched->data, 0)) : fetched->token;
            code.registerCode = code.code;
        }
        const auto number = static_cast<std::uint16_t>(numberOf(parameter.reg));
        const auto value = static_cast<std::uint16_t>(numberOf(code.registerCode));
        const bool off = switchesOff(parameter, code.code);
        const bool accepted =
            isKdl() && parameter.is('u')
                ? !code.code.empty()
                : !isNoValue(code.code) && line_.device().parameters().accepts(number, value);
        if (isKdl() && name == "txtAdresse") {
            judgeAddress(code.code);
        } else if (parameter.is('b') || switchedByBox(parameter) ||
                   (parameter.marks.find_first_of("zw") != std::string::npos && !measuring_)) {
            return;
        } else if (code.control.empty()) {
            expectBox(parameter.is('E') ? "Write Error|stop" : parameter.is('F') ? "Fehler|stop" : "");
        } else if (!parameter.isText() && unread_.contains(name) && value == 0) {
            expectBox("Write Error|stop");
        } else if (parameter.isText() && !off && !accepted) {
            expectBox("Fehler|stop");
        } else {
            const bool written = writes(name, requestsFor(parameter, off ? "0" : code.code));
            const bool stored = off || name == "chkZe" || line_.device().parameters().read(number) == value;
            judge(written);
            line_.expect(!written || stored, name + " counts as written, but the device has another value");
        }
    }

    bool switchesOff(const Parameter& parameter, const std::string& code) const {
        const bool zero = code != "off" && !code.empty() && numberOf(code) == 0;
        const bool follows = parameter.is('n') || (parameter.is('s') && measuring_);
        return isKdl() && parameter.isText() && parameter.options.size() > 1 &&
               (code == "off" || (zero && follows));
    }

    std::vector<std::string> requestsFor(const Parameter& parameter, const std::string& code) const {
        const std::string target = parameter.query.substr(parameter.query.find('?') + 1);
        if (!isKdl()) {
            return {parameter.query + "=" + std::to_string(static_cast<int>(numberOf(code)))};
        }
        if (parameter.query == ":MEM?") {
            return {":MEMRY " + code};
        }
        if (parameter.query.starts_with(":REL?")) {
            return {(code == "0" ? ":RELNO" : ":RELNC") + target};
        }
        const bool frequency = parameter.control() == "chkZe" && code == "1";
        return {":CAN" + target, ":CAN" + target + ":TRSH " +
                                     (!frequency                     ? code
                                      : shown("opt60Hz_10uF") == "1" ? "600"
                                                                     : "500")};
    }

    /// Whether the device has acknowledged each of the requests; none follows one that it has not.
    bool writes(const std::string& name, const std::vector<std::string>& requests) {
        for (const std::string& request : requests) {
            const auto answer = take(request);
            line_.expect(answer.has_value(), name + " was not written with " + request);
            if (!answer || answer->data != "") {
                expectBox("Write Error|stop");
                return false;
            }
        }
        return true;
    }

    /// A device that has not answered may have moved: it is asked where it is.
    void judgeAddress(const std::string& code) {
        const auto selected = take(":CAN 14");
        const auto moved = take(":CAN 14:TRSH " + code);
        const auto found = take(":TRSH? 14");
        const bool good =
            selected && selected->data == "" && moved && (moved->data == "" || (found && found->data));
        expectBox(good ? "" : "Write Error|stop");
    }

    std::vector<Parameter> parameters_;
    std::vector<Parameter::Option> before_;  // as codeShown(), of all parameters while they are written
    std::map<std::string, std::deque<Answer>> passed_;  // by request; without those already judged
    std::set<std::string> unread_;                      // controls whose last read brought no value
    bool measuring_ = false;
};

}  // namespace vek
