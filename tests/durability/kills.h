#pragma once

namespace vek {

/// How often the program is killed, and where the random moments start.
struct Kills {
    unsigned count = 250;  ///< of each kind of file
    unsigned seed = 1;
};
extern Kills kills;

}  // namespace vek
