#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace vek {

/// What a campaign has seen.
struct Figures {
    std::uint64_t exchanges = 0;                  ///< requests of the program
    std::uint64_t clean = 0;                      ///< of these: nothing was wrong with the line
    std::map<std::string, std::uint64_t> faults;  ///< strikes by kind
    std::uint64_t values = 0;                     ///< fields that showed what the device sent
    std::uint64_t missing = 0;                    ///< fields that showed that there is no value
    std::uint64_t zeros = 0;                      ///< choices of the editor that a failed read set to code 0
    std::uint64_t strays = 0;                     ///< replies to an earlier request taken for the answer
    std::uint64_t accidents = 0;                  ///< spoiled replies whose checksum was right nevertheless
    std::uint64_t ends = 0;                       ///< programs ended by the user in the time-out dialog
    std::vector<std::string> mismatches;

    void expect(bool good, const std::string& what) {
        if (!good) {
            mismatches.push_back(what);
        }
    }
};

}  // namespace vek
