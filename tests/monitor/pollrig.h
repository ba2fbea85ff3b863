#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "support/shown.h"
#include "support/simulatedpeer.h"
#include "support/testprogram.h"

namespace vek {

constexpr std::size_t identificationReads = 6;
constexpr std::size_t readsPerChannel = 3;
constexpr std::size_t readsPerCycle = 9 * readsPerChannel;

/// A monitor window on a simulated device, both at address 3.
template <class Monitor>
class PollRig {
  public:
    explicit PollRig(const sim::LineOptions& options) : peer(test.serial, test.clock, options) {
        test.configure();
        test.program.DeviceType = static_cast<std::uint8_t>(options.device.type);
        test.program.DeviceName = peer.line.device().name();
    }

    TestProgram test{NumberLocale{.decimalPoint = ",", .groupSeparator = "."}};
    SimulatedPeer peer;
    LastWindow& mainWindow = test.open<LastWindow>();

    /// Opened at the first use, so that a test can set up the program before.
    Monitor& monitor() {
        if (monitor_ == nullptr) {
            monitor_ = &test.open<Monitor>();
        }
        return *monitor_;
    }

    /// Has `event` happen in the next run, while the events after the n-th channel (from 1) are processed.
    void onChannel(int n, std::function<void()> event) { events_.emplace_back(n, std::move(event)); }
    void stopAfter(int channels) {
        onChannel(channels, [this] { monitor().cmdStop.click(); });
    }

    void run() {
        test.desktop.eventRounds = 0;
        test.desktop.onEvents = [this] {
            for (const auto& [n, event] : events_) {
                if (n == test.desktop.eventRounds) {
                    event();
                }
            }
        };
        monitor().cmdRunMonitor.click();
        events_.clear();
    }
    void runOneCycle() {
        stopAfter(9);
        run();
    }

    std::string visibleLamps() {
        std::string visible;
        for (std::size_t slot = 0; slot < 9; ++slot) {
            visible += monitor().LED[slot].visible ? 'x' : '-';
        }
        return visible;
    }

    std::size_t requests() const { return test.serial.written.size(); }
    bool boxless() const { return test.desktop.boxes.empty(); }

    /// Neither the line nor the main window is held any more.
    bool released() const {
        return !test.serial.isOpen() && !test.program.MonitorRunning && !test.program.lineInUse;
    }

  private:
    Monitor* monitor_ = nullptr;
    std::vector<std::pair<int, std::function<void()>>> events_;
};

}  // namespace vek
