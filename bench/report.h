#pragma once

#include <functional>
#include <string>

/// The table of the measurements.
namespace vek::bench {

/// One line of the table: a figure of ours beside that of a peer, or beside what no tool can stay below.
struct Row {
    std::string what;
    double ours = 0;
    double peer = 0;       ///< in the same unit, above 0
    std::string unit;      ///< of both figures
    std::string peerName;  ///< whose figure it is
    double bound = 1;      ///< what ours / peer is to be at most
};

/// Prints the row on the standard output.
void print(const Row& row);

/// The whole of a measuring program: the status for main() to return. 0 when the measurement could be made,
/// whatever it found; 1 when it threw an exception, which goes to the standard error output.
int run(const std::function<void()>& measurement);

}  // namespace vek::bench
