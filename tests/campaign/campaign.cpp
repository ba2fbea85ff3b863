#include <charconv>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <exception>
#include <optional>

#include "campaign/episodes.h"

namespace {

using vek::Figures;

constexpr std::size_t shownMismatches = 10;

struct Bus {
    const char* name;
    void (*runEpisode)(std::uint32_t seed, Figures& figures);
};

constexpr Bus buses[] = {{"Modbus RTU", vek::runModbusEpisode}, {"KDL bus", vek::runKdlEpisode}};

std::optional<std::uint32_t> numberOf(const char* text) {
    std::uint32_t number = 0;
    const auto [end, error] = std::from_chars(text, text + std::strlen(text), number);
    return error == std::errc() && *end == '\0' ? std::optional(number) : std::nullopt;
}

void print(const Bus& bus, const Figures& figures) {
    std::printf("%s\n  %-48s%12zu\n", bus.name, "requests", std::size_t{figures.exchanges});
    const std::pair<const char*, std::uint64_t> rows[] = {
        {"on a clean line", figures.clean},
        {"fields that showed what the device sent", figures.values},
        {"fields that showed that there is no value", figures.missing},
        {"choices that a failed read set to code 0", figures.zeros},
        {"replies to an earlier request taken for the answer", figures.strays},
        {"spoiled replies with a right checksum", figures.accidents},
        {"programs ended in the time-out dialog", figures.ends},
        {"mismatches", figures.mismatches.size()},
    };
    for (const auto& [name, number] : rows) {
        std::printf("  %-52s%8zu\n", name, std::size_t{number});
    }
    for (const auto& [kind, strikes] : figures.faults) {
        std::printf("    fault: %-43s%10zu\n", kind.c_str(), std::size_t{strikes});
    }
    for (std::size_t index = 0; index < std::min(shownMismatches, figures.mismatches.size()); ++index) {
        std::printf("  MISMATCH %s\n", figures.mismatches[index].c_str());
    }
}

bool runCampaign(const Bus& bus, std::uint32_t seed, std::uint32_t count) {
    Figures figures;
    for (std::uint32_t episode = 0; figures.exchanges < count; ++episode) {
        bus.runEpisode(seed + episode, figures);
    }
    print(bus, figures);
    return figures.mismatches.empty();
}

}  // namespace

/// campaign SEED COUNT: at least COUNT requests on each bus, on a line where any fault may strike at any
/// request. A run with the same seed repeats. Fails when a window shows what the device has not sent, or the
/// next clean exchange fails.
int main(int argc, char** argv) {
    const auto seed = argc == 3 ? numberOf(argv[1]) : std::nullopt;
    const auto count = argc == 3 ? numberOf(argv[2]) : std::nullopt;
    if (!seed || !count) {
        std::fprintf(stderr, "usage: campaign SEED COUNT\n");
        return 2;
    }
    try {
        bool good = true;
        for (const Bus& bus : buses) {
            good = runCampaign(bus, *seed, *count) && good;
        }
        return good ? 0 : 1;
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "campaign: %s\n", failure.what());
        return 1;
    }
}
