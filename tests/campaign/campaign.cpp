#include <charconv>
#include <cstdio>
#include <cstring>
#include <exception>
#include <memory>

#include "campaign/monitors.h"
#include "campaign/parameters.h"
#include "monitor/frmBatMonitor.h"
#include "monitor/frmMbMonitor.h"
#include "parameters/frmMbParameter.h"

namespace vek {

namespace {

/// One use of the program on a faulty line, from the first window to the last: a monitor with a device
/// command after it, or the parameter editor reading, writing and reading again. The seed decides everything.
class Episode {
  public:
    Episode(std::uint32_t seed, bool kdl, Figures& figures)
        : kdl_(kdl), line_(test_, optionsOf(seed, kdl), figures) {
        kdl ? test_.configureKdl() : test_.configure();
        test_.program.DeviceType = static_cast<std::uint8_t>(line_.device().type().number);
        test_.program.DeviceName = line_.device().name();
        test_.open<LastWindow>();
    }

    void run() {
        const bool watching = line_.draw(2) == 0;
        const bool ended = test_.endsProgram([&] { watching ? watch() : edit(); });
        line_.expect(!test_.serial.isOpen(), "the port stays open");
        line_.expect(!ended || std::ranges::count(test_.desktop.boxes, farewell) == 1,
                     "the program ended by itself");
    }

  private:
    static sim::LineOptions optionsOf(std::uint32_t seed, bool kdl) {
        sim::LineOptions options = deviceOf(static_cast<int>(seed % 10) + 1);
        options.device.seed = seed;
        options.device.kdl = kdl;
        options.device.speed = 20;
        options.device.battery.add("all");
        options.pace = seed % 3 == 0;
        return options;
    }

    void watch() {
        if (kdl_) {
            watch(std::make_unique<KdlMonitor>(test_, line_, test_.open<frmMbMonitor>()));
        } else if (test_.program.DeviceType == 9) {
            watch(std::make_unique<ModbusMonitor>(test_, line_, test_.open<frmBatMonitor>()));
        } else {
            watch(std::make_unique<ModbusMonitor>(test_, line_, test_.open<frmMbMonitor>()));
        }
    }

    void watch(const std::unique_ptr<Witness>& witness) {
        const std::size_t requests = 20 + line_.draw(300);
        if (!kdl_ && line_.draw(20) == 0) {
            test_.desktop.answers.assign(line_.draw(40), MessageAnswer::Ok);
            test_.desktop.answers.push_back(MessageAnswer::Cancel);
        }
        line_.beforeRequest = [&](const Bytes& frame) {
            if (witness->startsAnew(frame)) {
                witness->settle();
                pinSomeChannel();
            }
        };
        test_.desktop.onEvents = [&] {
            if (line_.requests() >= requests) {
                witness->press("cmdStop");
            }
        };
        witness->press("cmdRunMonitor");
        line_.beforeRequest = nullptr;
        test_.desktop.onEvents = nullptr;
        witness->settle();
        if (witness->has("cmdCLR")) {
            witness->press("cmdCLR");
            witness->settle();
        }
    }

    /// What no simulated device comes to by itself.
    void pinSomeChannel() {
        constexpr std::array<float, 8> values = {0, -0.4F, 1.5F, 42.25F, -99.6F, 1.2e-6F, 123456.7F, 5e6F};
        constexpr std::array<std::uint16_t, 5> texts = {0, 70, 84, 218, 219};
        if (line_.draw(10) == 0) {
            line_.device().pin(line_.draw(8),
                               {values.at(line_.draw(8)), static_cast<std::uint16_t>(line_.draw(0x10000)),
                                texts.at(line_.draw(5))});
        }
    }

    void edit() {
        auto& editor = test_.open<frmMbParameter>();
        EditorWitness witness(test_, line_, editor);
        witness.settle();
        witness.edit();
        witness.write();
        witness.press("cmdReadPara");
        witness.settle();
    }

    const bool kdl_;
    TestProgram test_;
    FaultyLine line_;
};

/// Prints what has been seen. A campaign whose faults change nothing has shown nothing.
bool isGood(const char* bus, const Figures& figures) {
    constexpr std::size_t shownMismatches = 10;
    std::printf("%s\n", bus);
    bool good = figures.mismatches.empty() && figures.counts.size() == 5;
    for (const auto& [what, number] : figures.counts) {
        std::printf("  %-30s%10zu\n", what.c_str(), number);
    }
    std::printf("  %-30s%10zu\n", "mismatches", figures.mismatches.size());
    for (const auto& [fault, strikes] : figures.strikes) {
        std::printf("  fault: %-23s%10zu, of which altered a reply:%10zu\n", fault.c_str(), strikes,
                    figures.altered.at(fault));
        good = good && figures.altered.at(fault) > 0;
    }
    for (std::size_t index = 0; index < std::min(shownMismatches, figures.mismatches.size()); ++index) {
        std::printf("  MISMATCH %s\n", figures.mismatches[index].c_str());
    }
    return good;
}

}  // namespace
}  // namespace vek

/// campaign SEED COUNT: at least COUNT requests on each bus, on a line where any fault may strike at any
/// request. A run with the same seed repeats. Fails when a window shows what the device has not sent, when
/// the next clean exchange fails, and when a kind of fault has altered no reply.
int main(int argc, char** argv) {
    std::uint32_t numbers[2] = {1, 20000};
    for (int index = 1; index < argc; ++index) {
        const auto [end, error] =
            std::from_chars(argv[index], argv[index] + std::strlen(argv[index]), numbers[index - 1]);
        if (index > 2 || error != std::errc() || *end != '\0') {
            std::fprintf(stderr, "usage: campaign [SEED [COUNT]]\n");
            return 2;
        }
    }
    bool good = true;
    for (const bool kdl : {false, true}) {
        vek::Figures figures;
        for (std::uint32_t seed = numbers[0]; figures.counts["requests"] < numbers[1]; ++seed) {
            vek::Episode(seed, kdl, figures).run();
        }
        good = vek::isGood(kdl ? "KDL bus" : "Modbus RTU", figures) && good;
    }
    return good ? 0 : 1;
}
