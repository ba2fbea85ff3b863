#pragma once

#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace vek {

/// A table of the campaign: the words of each line. Lines that begin with # are comments.
using Table = std::vector<std::vector<std::string>>;

inline Table readTable(const std::string& name) {
    Table table;
    std::ifstream file(std::string(CAMPAIGN_FOLDER) + "/" + name);
    for (std::string line; std::getline(file, line);) {
        std::istringstream words(line.starts_with('#') ? "" : line);
        std::vector<std::string> row;
        for (std::string word; words >> word;) {
            row.push_back(word);
        }
        if (!row.empty()) {
            table.push_back(row);
        }
    }
    return table;
}

}  // namespace vek
