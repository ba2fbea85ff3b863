#pragma once

#include <algorithm>
#include <array>
#include <functional>
#include <map>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "monitor/frmBatMonitor.h"
#include "monitor/frmMbMonitor.h"
#include "parameters/frmMbParameter.h"
#include "support/bench.h"

namespace vek {

/// What a window shows at some moment, with the message boxes since the last one.
struct Moment {
    std::map<std::string, std::string> shown;
    Texts boxes;
};

/// One use of the program, from the first window to the last: a monitor, or the parameter editor reading,
/// writing and reading again. The seed decides everything.
class Use {
  public:
    /// `line` takes the place of the Bench's own.
    Use(std::uint32_t seed, bool kdl, SerialControl* line = nullptr)
        : bench(static_cast<int>(seed % 10) + 1, kdl, line), seed_(seed), kdl_(kdl) {
        bench.test.open<LastWindow>();
        bench.test.clock.advance(Milliseconds{10'000});
    }

    Bench bench;
    /// To be called before each request.
    std::function<void(std::string_view frame)> beforeRequest = [](std::string_view) {};
    std::function<void()> beforeStep = [] {};  ///< a cycle of the monitor, or an operation of the editor
    std::function<void()> beforeLastStep = [] {};
    std::vector<Moment> moments;
    bool ended = false;

    void run() {
        ended = bench.test.endsProgram([this] { seed_ % 2 == 0 ? watch() : edit(); });
    }

    /// The registers of the device.
    std::map<int, int> registers() const {
        std::map<int, int> all;
        for (std::uint16_t number = 3001; number <= 3030; ++number) {
            all[number] = bench.parameters.read(number).value_or(0);
        }
        return all;
    }

  private:
    /// A port that is missing for the moment has a box of its own.
    void note(Form& form) {
        Texts boxes = bench.test.desktop.takeBoxes();
        std::erase(boxes, "Fehler|-|ok+cancel|Schnittstelle nicht vorhanden");
        moments.push_back({bench.shown(form), boxes});
    }

    void watch() {
        const bool battery = bench.test.program.DeviceType == 9 && !kdl_;
        Form& monitor =
            battery ? static_cast<Form&>(bench.test.open<frmBatMonitor>()) : bench.test.open<frmMbMonitor>();
        beforeRequest = [&](std::string_view frame) {
            if (isFirstOfCycle(frame)) {
                note(monitor);
                pin(++cycle_);
                beforeStep();
            }
        };
        poll(7);
        beforeLastStep();
        beforeStep = [] {};
        poll(2);
    }

    void poll(int cycles) {
        pin(cycle_);
        bench.test.desktop.onEvents = [this, end = cycle_ + cycles] {
            if (cycle_ >= end) {
                bench.press("cmdStop");
            }
        };
        bench.press("cmdRunMonitor");
        bench.test.desktop.onEvents = nullptr;
    }

    /// The request that comes again is the first one of those that do.
    bool isFirstOfCycle(std::string_view frame) {
        if (first_.empty() && !seen_.emplace(frame).second) {
            first_ = frame;
        }
        return first_ == frame;
    }

    /// Anything that a channel can carry, and other numbers in each cycle, so that an old one is seen. Over
    /// KDL the alarms follow with a delay of the device's own.
    void pin(int cycle) {
        for (std::size_t slot = 0; slot < sim::channelCount; ++slot) {
            std::mt19937 random(seed_ + (kdl_ ? 0U : 1000U * static_cast<unsigned>(cycle)) +
                                static_cast<unsigned>(slot));
            constexpr std::array<float, 6> scales = {0.01F, 1, 100, 1e-6F, 1e4F, -1};
            const float value = static_cast<float>(random() % 1000) * scales.at(random() % scales.size());
            constexpr std::array<std::uint16_t, 5> alarms = {0x000, 0x100, 0x200, 0x400, 0x500};
            const auto status =
                static_cast<std::uint16_t>((random() & 0xF8FFU) | alarms.at(random() % alarms.size()));
            constexpr std::array<std::uint16_t, 6> texts = {0, 70, 76, 84, 218, 219};
            sim::ChannelPin pin{value, status, texts.at(random() % texts.size())};
            if (kdl_) {
                pin.status.reset();
                pin.description.reset();
            }
            bench.peer.line.device().pin(slot, pin);
        }
    }

    void edit() {
        std::mt19937 random(seed_);
        fill(random);
        beforeStep();
        auto& editor = bench.test.open<frmMbParameter>();
        note(editor);
        typeAnything(editor, random);
        beforeStep();
        bench.press("cmdWritePara");
        note(editor);
        beforeLastStep();
        bench.press("cmdReadPara");
        note(editor);
    }

    /// Any value that the device accepts, but none that takes it to another place on the bus.
    void fill(std::mt19937& random) {
        for (std::uint16_t number = 3001; number <= 3030; ++number) {
            for (int attempt = 0; attempt < 1000; ++attempt) {
                const auto value = static_cast<std::uint16_t>(random() % 1000);
                if ((number < 3015 || number > 3017) && bench.parameters.accepts(number, value)) {
                    bench.parameters.store(number, value);
                    break;
                }
            }
        }
    }

    void typeAnything(Form& editor, std::mt19937& random) {
        for (const auto& [name, state] : bench.shown(editor)) {
            const bool chosen = random() % 2 == 0 && state.find(' ') == std::string::npos;
            const bool bus =
                name == "txtAdresse" || name.starts_with("optBaud") || name == "optNo" || name == "optOdd";
            if (chosen && !bus && name.starts_with("txt")) {
                bench.set(name, std::to_string(random() % 600));
            } else if (chosen && !bus && (name.starts_with("opt") || name.starts_with("chk"))) {
                bench.set(name, name.starts_with("opt") || random() % 2 == 0 ? "on" : "off");
            }
        }
    }

    const std::uint32_t seed_;
    const bool kdl_;
    int cycle_ = 0;
    std::set<Bytes> seen_;
    Bytes first_;
};

}  // namespace vek
