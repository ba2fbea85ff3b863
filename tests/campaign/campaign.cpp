#include <charconv>
#include <cstdio>
#include <cstring>
#include <memory>

#include "campaign/faultyline.h"
#include "campaign/use.h"

namespace vek {

namespace {

class Campaign {
  public:
    explicit Campaign(bool kdl) : kdl_(kdl) {}

    /// Uses the program on a faulty line, and once more on one with plain faults only: where a reply was
    /// good, it is answered, elsewhere there is silence, or the exception that has come. Both must look the
    /// same.
    void use(std::uint32_t seed) {
        seed_ = seed;
        Use use(seed, kdl_);
        FaultyLine line(use.bench, seed, figures_);
        use.bench.test.serial.onWrite = [&](std::string_view frame) {
            use.beforeRequest(frame);
            line.begin();
        };
        use.beforeStep = [&] { line.faultsInTwelve = std::array{0U, 2U, 4U, 8U}.at(line.draw(4)); };
        use.beforeLastStep = [&] { line.calmDown(); };
        use.run();
        const Texts outcomes = line.outcomes();
        expect(!use.ended && !use.bench.test.serial.isOpen(), "the program ended, or left the port open");
        if (!line.undetectable()) {
            compare(use, replayed(outcomes));
        }
    }

    /// Prints what has been seen. A campaign whose faults change nothing has shown nothing.
    bool isGood() const {
        constexpr std::size_t shownMismatches = 10;
        std::printf("%s\n", kdl_ ? "KDL bus" : "Modbus RTU");
        bool good = figures_.mismatches.empty() && figures_.counts.size() == 3;
        for (const auto& [what, number] : figures_.counts) {
            std::printf("  %-30s%10zu\n", what.c_str(), number);
        }
        std::printf("  %-30s%10zu\n", "mismatches", figures_.mismatches.size());
        for (const auto& [fault, strikes] : figures_.strikes) {
            std::printf("  fault: %-23s%10zu, of which altered a reply:%10zu\n", fault.c_str(), strikes,
                        figures_.altered.at(fault));
            good = good && figures_.altered.at(fault) > 0;
        }
        for (std::size_t index = 0; index < std::min(shownMismatches, figures_.mismatches.size()); ++index) {
            std::printf("  MISMATCH %s\n", figures_.mismatches[index].c_str());
        }
        return good;
    }

    std::size_t requests() const {
        return figures_.counts.contains("requests") ? figures_.counts.at("requests") : 0;
    }

  private:
    void expect(bool good, const std::string& what) {
        if (!good) {
            figures_.mismatches.push_back("seed " + std::to_string(seed_) + ": " + what);
        }
    }

    Use& replayed(const Texts& outcomes) {
        twin_ = std::make_unique<Use>(seed_, kdl_);
        twin_->bench.test.serial.onWrite = [this, outcomes,
                                            next = std::size_t{0}](std::string_view frame) mutable {
            twin_->beforeRequest(frame);
            auto& faults = twin_->bench.peer.line.faults();
            faults.clear();
            const std::string outcome = next < outcomes.size() ? outcomes[next++] : "";
            if (!outcome.empty()) {
                faults.add(std::get<sim::LineFault>(sim::parseFault(outcome)));
            }
        };
        twin_->run();
        return *twin_;
    }

    void compare(const Use& use, const Use& twin) {
        expect(use.moments.size() == twin.moments.size(), "another number of steps");
        for (std::size_t step = 0; step < std::min(use.moments.size(), twin.moments.size()); ++step) {
            const Moment& is = use.moments[step];
            const Moment& due = twin.moments[step];
            const std::string place = "step " + std::to_string(step);
            expect(is.boxes == due.boxes, place + " has other boxes");
            for (const auto& [name, state] : is.shown) {
                ++figures_.counts[state == "---" || state.empty() ? "fields without a value"
                                                                  : "fields with a value"];
                expect(state == due.shown.at(name),
                       std::string(place).append(": ").append(name).append(" shows ").append(state));
            }
        }
    }

    const bool kdl_;
    std::uint32_t seed_ = 0;
    Figures figures_;
    std::unique_ptr<Use> twin_;
};

}  // namespace
}  // namespace vek

/// campaign SEED COUNT: at least COUNT requests on each bus, on a line where any fault may strike at any
/// request. A run with the same seed repeats. Fails when a window shows what the device has not sent, when
/// the next exchange on a quiet line fails, and when a kind of fault has altered no reply.
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
        vek::Campaign campaign(kdl);
        for (std::uint32_t seed = numbers[0]; campaign.requests() < numbers[1]; ++seed) {
            campaign.use(seed);
        }
        good = campaign.isGood() && good;
    }
    return good ? 0 : 1;
}
