#pragma once

#include <algorithm>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "devicemodel/devicetypes.h"
#include "monitor/frmBatMonitor.h"
#include "monitor/frmMbMonitor.h"
#include "parameters/frmMbParameter.h"
#include "support/bench.h"
#include "support/conversation.h"

namespace vek {

/// What the window in use shows before a request, with that request and the message boxes since the last one.
using Moment = std::map<std::string, std::string>;

/// One use of the program, from the first window to the last: a monitor with a device command after it, or
/// the parameter editor reading, writing and reading again. The seed decides everything: a user with the same
/// seed who is shown the same does the same.
class Use {
  public:
    /// `line` takes the place of the Bench's own.
    Use(std::uint32_t seed, bool kdl, SerialControl* line = nullptr)
        : bench(static_cast<int>(seed % highestDeviceType) + 1, kdl, line),
          watching_(seed / highestDeviceType % 2 == 0),
          battery_(bench.test.program.DeviceType == batteryDeviceType && !kdl),
          random_(seed) {
        bench.test.open<LastWindow>();
        requests = 20 + draw(300);
    }

    Bench bench;
    std::vector<Moment> moments;  ///< before each request, and in the end
    std::size_t edited = 0;       ///< of them: before the user changed the parameters
    std::size_t requests = 0;     ///< after which the user stops watching

    void run() {
        if (draw(20) == 0) {
            bench.test.desktop.answers.assign(draw(40), MessageAnswer::Ok);
            bench.test.desktop.answers.push_back(MessageAnswer::Cancel);
        }
        bench.test.endsProgram([this] { watching_ ? watch() : edit(); });
        look("");
    }

    /// To be called before each request.
    void look(std::string_view request) {
        Moment& moment = moments.emplace_back(bench.shown(*window_));
        moment["the request"] = spacedHex(request);
        moment["the boxes"] = join(bench.test.desktop.takeBoxes(), "\n");
    }

  private:
    unsigned draw(unsigned end) { return static_cast<unsigned>(random_() % end); }

    template <class Window>
    void open() {
        auto window = std::make_unique<Window>(bench.test.program);
        window_ = window.get();
        bench.test.program.windows.open(std::move(window));
    }

    void watch() {
        battery_ ? open<frmBatMonitor>() : open<frmMbMonitor>();
        bench.test.desktop.onEvents = [this] {
            if (moments.size() >= requests) {
                bench.press("cmdStop");
            }
        };
        bench.press("cmdRunMonitor");
        bench.test.desktop.onEvents = nullptr;
        battery_ ? void() : bench.press("cmdCLR");
    }

    void edit() {
        open<frmMbParameter>();
        edited = moments.size();
        for (const auto& [name, state] : bench.shown(*window_)) {
            const bool chosen = draw(3) == 0 && state.find(' ') == std::string::npos;
            if (chosen && name.starts_with("txt")) {
                bench.set(name, std::to_string(draw(draw(2) == 0 ? 100 : 1000)));
            } else if (chosen && (name.starts_with("opt") || name.starts_with("chk"))) {
                bench.set(name, name.starts_with("opt") || draw(2) == 0 ? "on" : "off");
            }
        }
        // It leaves the device where it is.
        bench.set("txtAdresse", "3");
        bench.set("optBaud9600", "on");
        bench.set("optEven", "on");
        bench.press("cmdWritePara");
        bench.press("cmdReadPara");
    }

    const bool watching_;
    const bool battery_;
    std::mt19937 random_;
    Form* window_ = nullptr;
};

}  // namespace vek
