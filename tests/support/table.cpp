#include "support/table.h"

#include <gtest/gtest.h>

#include <fstream>
#include <regex>

#include "support/hexbytes.h"

namespace vek {

std::vector<TableRow> readTable(const std::string& file) {
    std::ifstream input(file);
    std::vector<TableRow> rows;
    std::string text;
    for (std::size_t line = 1; std::getline(input, text); ++line) {
        const std::string row = std::regex_replace(text, std::regex("( +# .*| +|^#.*)$"), "");
        if (!row.empty()) {
            rows.push_back({line, text, split(row, " *\\|(?= |$) *")});
        }
    }
    EXPECT_FALSE(rows.empty()) << file;
    return rows;
}

Texts split(const std::string& text, const char* separatorPattern) {
    const std::regex pattern(separatorPattern);
    return text.empty() ? Texts{}
                        : Texts{std::sregex_token_iterator(text.begin(), text.end(), pattern, -1),
                                std::sregex_token_iterator()};
}

std::pair<std::string, std::string> halves(const std::string& text, const std::string& separator) {
    const std::size_t at = std::min(text.find(separator), text.size());
    return {text.substr(0, at), text.substr(std::min(at + separator.size(), text.size()))};
}

std::string join(const Texts& texts, const std::string& between) {
    std::string all;
    for (const std::string& text : texts) {
        all += (all.empty() ? "" : between) + text;
    }
    return all;
}

std::string unescaped(const std::string& text) {
    std::string bytes;
    for (std::size_t at = 0; at < text.size(); ++at) {
        const bool escaped = text[at] == '\\' && at + 1 < text.size();
        const bool letter = escaped && (text[at + 1] == 'r' || text[at + 1] == 'n');
        bytes += letter    ? (text[at + 1] == 'r' ? "\r" : "\n")
                 : escaped ? fromHex(text.substr(at + 1, 2))
                           : text.substr(at, 1);
        at += letter ? 1 : escaped ? 2 : 0;
    }
    return bytes;
}

}  // namespace vek
