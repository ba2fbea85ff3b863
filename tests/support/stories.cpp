#include "support/stories.h"

#include <gtest/gtest.h>

#include <regex>

#include "simulator/kdlframe.h"
#include "support/table.h"

namespace vek {

namespace {

/// Whether the text is as a cell says, in which "..." stands for any text.
testing::AssertionResult isLike(const std::string& text, const std::string& cell) {
    const std::string quoted = std::regex_replace(cell, std::regex(R"([.?*+^$()[\]{}|\\])"), R"(\$&)");
    const std::string pattern = std::regex_replace(quoted, std::regex(R"(\\\.\\\.\\\.)"), "[^]*");
    return std::regex_match(text, std::regex(pattern))
               ? testing::AssertionSuccess()
               : testing::AssertionFailure() << "is     " << text << "\nnot as " << cell;
}

std::string spelledOut(std::string boxes) {
    const std::pair<const char*, std::string> shorthands[] = {
        {"E:", "Fehler|stop|ok|"},
        {"W:", "Write Error|stop|ok|"},
        {"R:", "MODBUS-Fehler|stop|ok|Unzulässige Datenwert // Write Error|stop|ok|"},
        {"I:", "Hinweis|info|ok|"},
        {"CRC", crcDialog},
        {"BYE", farewell}};
    for (const auto& [word, meaning] : shorthands) {
        boxes = std::regex_replace(boxes, std::regex(std::string("(^|// )").append(word)),
                                   std::string("$1").append(meaning));
    }
    return boxes;
}

/// The reply to a request: of a register, of the registers of a text, or an exception; a KDL payload as it
/// is.
Bytes replyTo(const std::string& request, const std::string& value, bool kdl) {
    const bool quoted = value.starts_with('"');
    const Bytes text = unescaped(quoted ? value.substr(1, value.size() - 2) : value);
    if (kdl) {
        const Bytes frame = ":;003=" + text + "&";
        return frame + sim::kdlTrailer(frame) + "\r\n";
    }
    const auto [address, rest] = halves(request, " ");
    const bool write = (rest.empty() ? address : rest).front() == 'w';
    Bytes reply(1, static_cast<char>(rest.empty() ? 3 : std::stoi(address)));
    if (value.starts_with('!')) {
        reply += {write ? '\x90' : '\x83', static_cast<char>(std::stoi(value.substr(1)))};
    } else {
        const Bytes data = quoted ? text : WordToBytes(static_cast<std::uint16_t>(std::stoi(text)));
        reply += '\3' + Bytes(1, static_cast<char>(data.size())) + data;
    }
    return reply + ComputeCrc(reply);
}

PortError portError(const std::string& text) {
    return text == "in use"          ? PortError::InUse
           : text == "not permitted" ? PortError::NotPermitted
                                     : PortError::NotThere;
}

std::uint16_t numberIn(const std::string& text) {
    return static_cast<std::uint16_t>(std::stoi(text));
}

/// Stores registers written as "3013=1".
void store(Bench& bench, const Texts& pairs) {
    for (const std::string& pair : pairs) {
        const auto [number, value] = halves(pair, "=");
        bench.parameters.store(numberIn(number), numberIn(value));
    }
}

std::unique_ptr<Bench> newBench(const std::string& operand) {
    return std::make_unique<Bench>(std::stoi(operand), operand.find("kdl") != std::string::npos);
}

/// Replaces a line of a file.
void edit(Bench& bench, const std::string& operand) {
    const auto [name, change] = halves(operand, " ");
    const auto [before, after] = halves(change, " => ");
    std::string& file = bench.test.profileFiles.files.at(name);
    file.replace(file.find("\n" + before + "\r") + 1, before.size(), after);
}

void endFaults(Bench& bench, const std::string& /*operand*/) {
    bench.peer.line.faults().clear();
    bench.replies.clear();
    bench.test.serial.openErrors.clear();
}

std::map<std::string, Stories::Operation> commonOperations() {
    using Operand = const std::string&;
    return {
        {"device",
         [](Bench& bench, Operand operand) {
             const Texts words = split(operand, " ");
             store(bench, {words.begin() + 2, words.end()});
         }},
        {"set",
         [](Bench& bench, Operand operand) {
             const auto [name, value] = halves(operand, " ");
             bench.set(name, value);
         }},
        {"press", [](Bench& bench, Operand name) { bench.press(name); }},
        {"close",
         [](Bench& bench, Operand name) { bench.test.program.windows.find(name)->closeBoxPressed(); }},
        {"file", [](Bench& bench, Operand name) { bench.test.desktop.files = {name}; }},
        {"content",
         [](Bench& bench, Operand operand) {
             const auto [name, text] = halves(operand, " = ");
             bench.test.profileFiles.files[name] = std::regex_replace(text, std::regex(R"(\\n)"), "\r\n");
         }},
        {"edit", edit},
        {"cancel", [](Bench& bench, Operand) { bench.test.desktop.answers = {MessageAnswer::Cancel}; }},
        {"fault",
         [](Bench& bench, Operand text) {
             bench.peer.line.faults().add(std::get<sim::LineFault>(sim::parseFault(text)));
         }},
        {"well", endFaults},
        {"store", [](Bench& bench, Operand pairs) { store(bench, split(pairs, " ")); }},
        {"reply",
         [](Bench& bench, Operand operand) {
             const auto [request, value] = halves(operand, " = ");
             bench.replies[request] = replyTo(request, value, bench.test.program.kdlActive());
         }},
        {"pull", [](Bench& bench, Operand request) { bench.pulledAt = request; }},
        {"port",
         [](Bench& bench, Operand operand) {
             const auto [number, error] = halves(operand, " ");
             bench.test.serial.openErrors[std::stoi(number)] = portError(error);
         }},
    };
}

std::string dialogText(const Bench& bench) {
    const FileDialog& dialog = bench.test.desktop.dialogs.back();
    return dialog.title + ":" + dialog.fileName + ":" + dialog.filePattern;
}

std::map<std::string, Stories::State> commonStates() {
    return {
        {"bus",
         [](Bench& bench) {
             const Program& program = bench.test.program;
             return std::to_string(program.DeviceAddress) + " COM" + std::to_string(program.ComPort) + ":" +
                    std::to_string(program.BaudRate) + program.FrameFormat;
         }},
        {"prefix", [](Bench& bench) { return bench.test.program.KdlAddressPrefix; }},
        {"type",
         [](Bench& bench) {
             return std::to_string(bench.test.program.DeviceType) + " " + bench.test.program.DeviceName;
         }},
        {"title", [](Bench& bench) { return bench.test.host.open.back()->caption.get(); }},
        {"caption", [](Bench& bench) { return bench.test.program.shell.caption.get(); }},
        {"portPanel", [](Bench& bench) { return bench.test.program.shell.portPanel.get(); }},
        {"addressPanel", [](Bench& bench) { return bench.test.program.shell.addressPanel.get(); }},
        {"commands", [](Bench& bench) { return bench.test.program.shell.commandsAvailable ? "on" : "off"; }},
        {"opening", [](Bench& bench) { return bench.test.serial.openings.back().settings; }},
        {"keyboard", [](Bench& bench) { return bench.test.host.keyboard; }},
        {"path", [](Bench& bench) { return bench.test.program.ProfilePath; }},
        {"dialog", dialogText},
        {"files", [](Bench& bench) { return std::to_string(bench.test.profileFiles.files.size()); }},
        {"windows",
         [](Bench& bench) {
             Texts names;
             for (const Form* form : bench.test.host.open) {
                 names.push_back(form->name);
             }
             return join(names, " ");
         }},
    };
}

}  // namespace

Stories::Stories() : operations(commonOperations()), states(commonStates()) {}

void Stories::tell(const std::string& file) {
    for (const TableRow& row : readTable(file)) {
        SCOPED_TRACE(file + ":" + std::to_string(row.line) + ": " + row.text);
        try {
            tellLine(row.cells);
        } catch (const std::exception& error) {
            FAIL() << error.what();
        }
    }
}

void Stories::tellLine(Texts cells) {
    cells.resize(4);
    const auto [operation, operand] = halves(cells[0], " ");
    const auto& act = operations.at(operation);
    if (operation == "device") {
        bench_ = newBench(operand);
    }
    const bool ended = bench_->test.endsProgram([&, wanted = operand] { act(*bench_, wanted); });
    const std::string boxes = join(bench_->test.desktop.takeBoxes(), " // ");
    EXPECT_TRUE(isLike(boxes + (ended ? boxes.empty() ? "END" : " END" : ""), spelledOut(cells[2])));
    const std::string requests = join(std::exchange(bench_->requests, {}), " ");
    EXPECT_TRUE(isLike(requests.empty() ? "-" : requests, cells[1].empty() ? "..." : cells[1]));
    for (const std::string& state : split(cells[3], "; ")) {
        const auto [names, expected] = halves(state, "=");
        for (const std::string& name : split(names, ",")) {
            EXPECT_TRUE(isLike(stateOf(name), expected)) << name;
        }
    }
    EXPECT_FALSE(bench_->test.serial.isOpen());
}

std::string Stories::stateOf(const std::string& name) {
    if (const auto found = states.find(name); found != states.end()) {
        return found->second(*bench_);
    }
    if (std::isdigit(name.front()) != 0) {
        const auto value = bench_->parameters.read(numberIn(name));
        return value ? std::to_string(*value) : "none";
    }
    return bench_->stateOf(name);
}

}  // namespace vek
