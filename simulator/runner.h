#pragma once

#include <iosfwd>

#include "simulator/options.h"

namespace vek::sim {

// Runs the simulated device on a pseudo-terminal until SIGINT, SIGTERM or the end of its duration.
// Says on `out` how to reach it, and on `log` every frame if asked to. Returns the exit status of the
// program: 0, or 1 with a message on `log` when there is no pseudo-terminal or no link.
int runSimulator(const ProgramOptions& options, std::ostream& out, std::ostream& log);

}  // namespace vek::sim
