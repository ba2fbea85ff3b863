#pragma once

#include <array>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>

#include "simulator/line.h"

namespace vek::sim {

// By the code that register 3017 holds.
inline constexpr std::array<std::string_view, 3> parityNames{"none", "odd", "even"};

struct ProgramOptions {
    LineOptions line;
    std::string link;              // path of the symbolic link to the pseudo-terminal; empty for none
    std::optional<Time> duration;  // ends by itself after this time
    bool verbose = false;
    bool help = false;
};

// Reads the command line without the program's name. Returns what is wrong with it as a text.
std::variant<ProgramOptions, std::string> parseOptions(std::span<const std::string_view> arguments);

std::string helpText();

}  // namespace vek::sim
