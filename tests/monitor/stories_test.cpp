#include "support/stories.h"

#include <gtest/gtest.h>

#include <array>
#include <regex>
#include <sstream>

#include "kdl/KDLBusLink.h"
#include "monitor/frmBatMonitor.h"
#include "monitor/frmMbMonitor.h"
#include "monitor/frmMessReg.h"
#include "monitor/frmParaReg.h"
#include "monitor/kdlmonitor.h"

namespace vek {
namespace {

using Operand = const std::string&;

constexpr const char* batteryFile = "/daten/vekXX731_Monitor.ini";

/// What the controls show, one after the other.
std::string shown(Bench& bench, const Texts& controls) {
    std::string all;
    for (const std::string& control : controls) {
        all += "/" + bench.stateOf(control);
    }
    return all.substr(1);
}

Stories::State showing(const Texts& controls) {
    return [controls](Bench& bench) { return shown(bench, controls); };
}

/// How labels are drawn: where their text stands, whether they are fields, in which style.
Stories::State looking(const Texts& labels) {
    return [labels](Bench& bench) {
        std::string all;
        for (const std::string& name : labels) {
            const auto& label = dynamic_cast<const Label&>(bench.control(name));
            all += std::string(1, "LCR"[static_cast<int>(label.align)]) + (label.sunken ? "f" : "") +
                   "nbtx"[static_cast<int>(label.style)] + " ";
        }
        return all.substr(0, all.size() - 1);
    };
}

/// For each control whether it has the property.
Stories::State having(const std::string& property, const Texts& controls) {
    return [property, controls](Bench& bench) {
        std::string all;
        for (const std::string& control : controls) {
            all += bench.stateOf(control + property) == "on" ? 'x' : '-';
        }
        return all;
    };
}

void open(Bench& bench, Operand form) {
    bench.test.open<LastWindow>();
    if (form == "frmMbMonitor") {
        bench.test.open<frmMbMonitor>();
    } else if (form == "frmBatMonitor") {
        bench.test.open<frmBatMonitor>();
    } else if (form == "frmMessReg") {
        bench.test.open<frmMessReg>();
    } else {
        bench.test.open<frmParaReg>();
    }
}

/// Has the device measure this; a status in hexadecimal.
void pin(Bench& bench, std::size_t slot, float value, unsigned status, unsigned description) {
    bench.peer.line.device().pin(
        slot, {value, static_cast<std::uint16_t>(status), static_cast<std::uint16_t>(description)});
}

void pinAsTold(Bench& bench, Operand operand) {
    std::istringstream words(operand);
    std::size_t slot = 0;
    std::string value;
    unsigned status = 0;
    unsigned description = 0;
    words >> slot >> value >> std::hex >> status >> std::dec >> description;
    pin(bench, slot, std::stof(value), status, description);
}

/// The string's resistance in kOhm, its voltage, those of L+ and L-, "-" for none; the indicators of the
/// string and of L+.
void pinString(Bench& bench, Operand operand) {
    std::istringstream words(operand);
    std::array<std::string, 4> values;
    std::array<char, 4> lamps{'G', 'G', 'G', 'G'};
    words >> values[0] >> values[1] >> values[2] >> values[3] >> lamps[1] >> lamps[2];
    for (const std::size_t place : {0U, 1U, 2U, 3U}) {
        const bool none = values.at(place) == "-";
        const float value = none ? 0 : std::stof(values.at(place)) * (place == 0 ? 1000.0F : 1.0F);
        const auto alarm = static_cast<unsigned>(std::string("GYM-CR").find(lamps.at(place)));
        pin(bench, std::array{0U, 2U, 4U, 5U}.at(place), value, (alarm << 8U) + (none ? 0xC0 : 0), 0);
    }
}

/// While events are processed, or a box is open, has the user do this once as soon as so many requests went
/// over the line since then.
void schedule(const Stories& stories, Bench& bench, Operand operand) {
    std::size_t requests = 0;
    std::string word;
    std::string rest;
    std::istringstream words(operand);
    words >> requests >> word >> std::ws;
    std::getline(words, rest);
    FakeDesktop& desktop = bench.test.desktop;
    const auto before = desktop.onEvents;
    desktop.onEvents = [&, before, requests, act = stories.operations.at(word), rest,
                        done = false]() mutable {
        if (before) {
            before();
        }
        if (!done && bench.requests.size() >= requests) {
            done = true;
            act(bench, rest);
        }
    };
    desktop.onMessageBox = [&desktop] { desktop.onEvents(); };
}

/// Has the user press Stop, who needs 400 ms after a box for it.
void stopSlowly(Bench& bench, Operand /*operand*/) {
    FakeDesktop& desktop = bench.test.desktop;
    desktop.onMessageBox = [&, boxes = 0]() mutable {
        desktop.onEvents = [&bench, box = bench.test.clock.now()] {
            if (bench.test.clock.now() - box >= Milliseconds{400}) {
                bench.press("cmdStop");
            }
        };
        if (++boxes == 99) {
            bench.press("cmdStop");
        }
    };
}

/// The row of the KDL monitor as the reply to an operating value makes it; it showed 9 < V Impedanz.
void readRow(Bench& bench, Operand row) {
    auto& monitor = dynamic_cast<frmMbMonitor&>(*bench.test.program.windows.find("frmMbMonitor"));
    const auto index = static_cast<std::size_t>(std::stoi(row));
    monitor.lblMesswert[index].caption = "9";
    monitor.lblRange[index].caption = "<";
    monitor.lblEinheit[index].caption = "V";
    monitor.lblMessName[index].caption = "Impedanz";
    KdlOpenPort(bench.test.program);
    const RowEnd end = KdlReadMonitorRow(bench.test.program, monitor, index);
    KdlClosePort(bench.test.program);
    monitor.lblDevName.caption = std::array{"row", "none", "end"}.at(static_cast<std::size_t>(end));
}

TEST(Monitors, DoAsTheStoriesTell) {
    Stories stories;
    auto& operations = stories.operations;
    operations["open"] = open;
    operations["pin"] = pinAsTold;
    operations["string"] = pinString;
    operations["slowly"] = stopSlowly;
    operations["row"] = readRow;
    operations["at"] = [&](Bench& bench, Operand operand) { schedule(stories, bench, operand); };
    operations["cycle"] = [&](Bench& bench, Operand requests) {
        schedule(stories, bench, (requests.empty() ? "33" : requests) + " press cmdStop");
        bench.press("cmdRunMonitor");
    };
    operations["expect"] = [&](Bench& bench, Operand state) {
        const std::size_t blank = state.find(' ');
        EXPECT_EQ(stories.states.at(state.substr(0, blank))(bench), state.substr(blank + 1));
    };
    operations["end"] = [](Bench& bench, Operand) {
        bench.test.serial.close();  // as the system does
        bench.test.program.windows.find("lastWindow")->closeBoxPressed();
    };
    operations["address"] = [](Bench& bench, Operand address) {
        bench.test.program.DeviceAddress = static_cast<std::uint8_t>(std::stoi(address));
        bench.test.program.KdlAddressPrefix = blankKdlPrefix;
    };
    operations["known"] = [](Bench& bench, Operand type) {
        bench.test.program.DeviceType = static_cast<std::uint8_t>(std::stoi(type));
    };
    auto& states = stories.states;
    for (const TableRow& row : readTable(VEK_TEST_FOLDER "states.txt")) {
        const Texts controls = split(row.cells.at(2), " ");
        const std::string& what = row.cells[1];
        states[row.cells[0]] = what == "shown"  ? showing(controls)
                               : what == "look" ? looking(controls)
                                                : having("." + what, controls);
    }
    states["stringLamp"] = [](Bench& bench) {
        const auto color = dynamic_cast<Label&>(bench.control("Label28")).backColor.get();
        return std::string(1, colorLetter(color.value_or(colors::white)));
    };
    states["battery"] = [](Bench& bench) {
        return std::regex_replace(bench.test.profileFiles.files[batteryFile], std::regex("\r\n"), "\\n");
    };
    states["running"] = [](Bench& bench) {
        const Program& program = bench.test.program;
        return program.MonitorRunning || program.lineInUse ? "on" : "off";
    };
    states["seconds"] = [](Bench& bench) {  // since the device came
        return std::to_string((bench.test.clock.now() - FakeClock().now()) / std::chrono::seconds{1});
    };
    states["openings"] = [](Bench& bench) { return std::to_string(bench.test.serial.openings.size()); };
    stories.tell(VEK_TEST_FOLDER "stories.txt");
}

}  // namespace
}  // namespace vek
