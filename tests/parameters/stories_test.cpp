#include <gtest/gtest.h>

#include <fstream>
#include <functional>
#include <regex>
#include <sstream>

#include "editorbench.h"

namespace vek {
namespace {

Texts split(const std::string& text, const char* separator) {
    const std::regex pattern(separator);
    return text.empty() ? Texts{}
                        : Texts{std::sregex_token_iterator(text.begin(), text.end(), pattern, -1),
                                std::sregex_token_iterator()};
}

std::string join(const Texts& texts, const std::string& between) {
    std::string all;
    for (const std::string& text : texts) {
        all += (all.empty() ? "" : between) + text;
    }
    return all;
}

/// Whether the text is as a cell says, in which "..." stands for any text.
::testing::AssertionResult isLike(const std::string& text, const std::string& cell) {
    const std::string quoted = std::regex_replace(cell, std::regex(R"([.?*+^$()[\]{}|\\])"), R"(\$&)");
    const std::string pattern = std::regex_replace(quoted, std::regex(R"(\\\.\\\.\\\.)"), "[^]*");
    return std::regex_match(text, std::regex(pattern))
               ? ::testing::AssertionSuccess()
               : ::testing::AssertionFailure() << "is     " << text << "\nnot as " << cell;
}

/// Does what the lines of stories.txt say; how to read them stands there.
class Stories {
  public:
    void tell(const std::string& text) {
        Texts cells = split(text, " *\\|(?= |$) *");
        cells.resize(4);
        const std::size_t space = std::min(cells[0].find(' '), cells[0].size());
        std::istringstream operand(cells[0].substr(std::min(space + 1, cells[0].size())));
        const std::string operation = cells[0].substr(0, space);
        const bool ended = operation == "device"
                               ? (start(operand), false)
                               : bench_->test.endsProgram([&] { operations_.at(operation)(operand); });
        const std::string boxes = join(bench_->test.desktop.takeBoxes(), " // ") + (ended ? " END" : "");
        EXPECT_TRUE(isLike(boxes, spelledOut(cells[2])));
        const std::string requests = join(std::exchange(bench_->requests, {}), " ");
        EXPECT_TRUE(cells[1].empty() || isLike(requests.empty() ? "-" : requests, cells[1]));
        for (const std::string& state : split(cells[3], "; ")) {
            const std::size_t equals = state.find('=');
            for (const std::string& name : split(state.substr(0, equals), ",")) {
                EXPECT_TRUE(isLike(stateOf(name), state.substr(equals + 1))) << name;
            }
        }
        EXPECT_FALSE(bench_->test.serial.isOpen());
    }

  private:
    void start(std::istringstream& operand) {
        int type = 0;
        std::string bus;
        operand >> type >> bus;
        bench_ = std::make_unique<EditorBench>(type, bus == "kdl");
        for (std::string stored; operand >> stored;) {
            const std::size_t equals = stored.find('=');
            bench_->parameters.store(static_cast<std::uint16_t>(std::stoi(stored)),
                                     static_cast<std::uint16_t>(std::stoi(stored.substr(equals + 1))));
        }
    }

    static std::string rest(std::istringstream& operand) {
        std::string text;
        std::getline(operand >> std::ws, text);
        return text;
    }

    static std::string spelledOut(std::string boxes) {
        const std::pair<const char*, std::string> shorthands[] = {
            {"E:", "Fehler|stop|ok|"},
            {"W:", "Write Error|stop|ok|"},
            {"R:", "MODBUS-Fehler|stop|ok|Unzulässige Datenwert // Write Error|stop|ok|"},
            {"I:", "Hinweis|info|ok|"},
            {"CRC", crcDialog},
            {"BYE", farewell}};
        for (const auto& [word, meaning] : shorthands) {
            boxes = std::regex_replace(boxes, std::regex("(^|// )" + std::string(word)), "$1" + meaning);
        }
        return boxes;
    }

    Bytes frame(const std::string& request, const std::string& value) const {
        if (request.front() == 'r' && !bench_->test.program.kdlActive()) {
            const Bytes reply =
                Bytes("\x03\x03\x02") + WordToBytes(static_cast<std::uint16_t>(std::stoi(value)));
            return reply + ComputeCrc(reply);
        }
        return ":;003=" + value + "&dZB\r\n";
    }

    void choose(const std::string& file, Button& button) {
        bench_->test.desktop.files = {file.empty() ? std::nullopt : std::optional(file)};
        button.click();
    }

    /// The state of a control, a part of it, or what the operation has left elsewhere.
    std::string stateOf(const std::string& name) {
        const Program& program = bench_->test.program;
        const std::map<std::string, std::function<std::string()>> elsewhere = {
            {"bus",
             [&] {
                 return std::to_string(program.DeviceAddress) + " " + std::to_string(program.BaudRate) +
                        program.FrameFormat;
             }},
            {"prefix", [&] { return program.KdlAddressPrefix; }},
            {"portPanel", [&] { return program.shell.portPanel.get(); }},
            {"addressPanel", [&] { return program.shell.addressPanel.get(); }},
            {"progress",
             [&] {
                 return std::to_string(bench_->editor().prgFortschritt.done) + "/" +
                        std::to_string(bench_->editor().prgFortschritt.total);
             }},
            {"opening", [&] { return bench_->test.serial.openings.back().settings; }},
            {"windows", [&] { return std::to_string(bench_->test.host.open.size()); }},
            {"commands", [&] { return program.shell.commandsAvailable ? "yes" : "no"; }},
            {"dialog",
             [&] {
                 const FileDialog& dialog = bench_->test.desktop.dialogs.back();
                 return dialog.title + ":" + dialog.fileName + ":" + dialog.filePattern;
             }},
            {"path", [&] { return program.ProfilePath; }},
            {"files", [&] { return std::to_string(bench_->test.profileFiles.files.size()); }},
        };
        if (const auto found = elsewhere.find(name); found != elsewhere.end()) {
            return found->second();
        }
        if (std::isdigit(name.front()) != 0) {
            const auto value = bench_->parameters.read(static_cast<std::uint16_t>(std::stoi(name)));
            return value ? std::to_string(*value) : "none";
        }
        const std::size_t dot = std::min(name.find('.'), name.size());
        return stateOf(bench_->control(name.substr(0, dot)), name.substr(dot));
    }

    static std::string stateOf(const Control& control, const std::string& part) {
        const auto word = [](bool set) { return set ? "on" : "off"; };
        if (part == ".enabled" || part == ".visible") {
            return word(part == ".enabled" ? control.enabled : control.visible);
        }
        if (const auto* box = dynamic_cast<const TextBox*>(&control)) {
            return box->text;
        }
        if (const auto* check = dynamic_cast<const CheckBox*>(&control)) {
            return part == ".caption" ? check->caption.get() : word(check->value);
        }
        if (const auto* label = dynamic_cast<const Label*>(&control)) {
            return label->caption;
        }
        if (const auto* option = dynamic_cast<const OptionButton*>(&control)) {
            return part == ".caption" ? option->caption.get() : word(option->value);
        }
        return dynamic_cast<const Frame&>(control).caption;
    }

    std::unique_ptr<EditorBench> bench_;
    using Operand = std::istringstream&;
    const std::map<std::string, std::function<void(Operand)>> operations_ = {
        {"open", [this](Operand) { bench_->editor(); }},
        {"close", [this](Operand) { bench_->editor().closeBoxPressed(); }},
        {"read", [this](Operand) { bench_->editor().cmdReadPara.click(); }},
        {"write", [this](Operand) { bench_->editor().cmdWritePara.click(); }},
        {"load", [this](Operand file) { choose(rest(file), bench_->editor().cmd_Para_File_open); }},
        {"save", [this](Operand file) { choose(rest(file), bench_->editor().cmd_Para_File_Save); }},
        {"cancel", [this](Operand) { bench_->test.desktop.answers = {MessageAnswer::Cancel}; }},
        {"pull", [this](Operand request) { bench_->pulledAt = rest(request); }},
        {"absent", [this](Operand) { bench_->test.serial.openErrors[3] = PortError::NotThere; }},
        {"well",
         [this](Operand) {
             bench_->peer.line.faults().clear();
             bench_->replies.clear();
         }},
        {"fault",
         [this](Operand text) {
             bench_->peer.line.faults().add(std::get<sim::LineFault>(sim::parseFault(rest(text))));
         }},
        {"store",
         [this](Operand pair) {
             std::uint16_t number = 0, value = 0;
             pair >> number >> value;
             bench_->parameters.store(number, value);
         }},
        {"reply",
         [this](Operand pair) {
             Texts parts = split(rest(pair), " = ?");
             parts.resize(2);
             bench_->replies[parts[0]] = frame(parts[0], parts[1]);
         }},
        {"set",
         [this](Operand pair) {
             std::string name;
             pair >> name;
             bench_->set(name, rest(pair));
         }},
        {"edit",
         [this](Operand change) {
             const Texts parts = split(rest(change), " => ");
             std::string& file = bench_->test.profileFiles.files.at(bench_->test.program.ProfilePath);
             file.replace(file.find("\n" + parts.at(0) + "\r") + 1, parts.at(0).size(), parts.at(1));
         }},
        {"type",
         [this](Operand number) {
             int type = 0;
             number >> type;
             bench_->test.program.DeviceType = static_cast<std::uint8_t>(type);
         }},
    };
};

TEST(ParameterEditor, DoesAsTheStoriesTell) {
    std::ifstream input(VEK_TEST_FOLDER "stories.txt");
    Stories stories;
    std::size_t line = 0;
    for (std::string text; std::getline(input, text);) {
        SCOPED_TRACE("stories.txt:" + std::to_string(++line) + ": " + text);
        text = std::regex_replace(text, std::regex("( +# .*| +|^#.*)$"), "");
        if (!text.empty()) {
            stories.tell(text);
        }
    }
    EXPECT_GT(line, 0U);
}

}  // namespace
}  // namespace vek
