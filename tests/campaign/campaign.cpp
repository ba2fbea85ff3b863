#include <cstdio>

#include "campaign/faultyline.h"

namespace vek {

namespace {

void runUse(std::uint32_t seed, bool kdl, Figures& figures) {
    Use use(seed, kdl);
    FaultyLine line(use, seed, figures);
    const Witness witness(use, line.exchanges, [&](std::size_t request, const std::string& what) {
        line.expect(false, request, what);
    });
    Use second(seed, kdl);
    witness.compareWith(second);
    witness.judgeNumbers();
    witness.judgeRows();
}

/// Prints what has been seen. A campaign whose faults change nothing has shown nothing.
bool isGood(const char* bus, const Figures& figures) {
    constexpr std::size_t shownMismatches = 10;
    std::printf("%s\n", bus);
    bool good = figures.mismatches.empty() && figures.counts.size() == 4;
    for (const auto& [what, number] : figures.counts) {
        std::printf("  %-23s%10zu\n", what.c_str(), number);
    }
    std::printf("  %-23s%10zu\n", "mismatches", figures.mismatches.size());
    for (const auto& [fault, strikes] : figures.strikes) {
        const std::size_t altered = figures.altered.at(fault);
        std::printf("  fault: %-16s%10zu, of which altered a reply:%10zu\n", fault.c_str(), strikes, altered);
        good = good && altered > 0;
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
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    const auto firstSeed = static_cast<std::uint32_t>(std::stoul(arguments.at(0)));
    const std::size_t requests = std::stoul(arguments.at(1));
    bool good = true;
    for (const bool kdl : {false, true}) {
        vek::Figures figures;
        for (std::uint32_t seed = firstSeed; figures.counts["requests"] < requests; ++seed) {
            vek::runUse(seed, kdl, figures);
        }
        good = vek::isGood(kdl ? "KDL bus" : "Modbus RTU", figures) && good;
    }
    return good ? 0 : 1;
}
