#pragma once

#include <string>
#include <utility>
#include <vector>

/// Tables of cases as text files: one line a row, its cells between " | "; text behind " # " or in a line
/// that begins so is for the reader.
namespace vek {

using Texts = std::vector<std::string>;

struct TableRow {
    std::size_t line;  ///< from 1
    std::string text;  ///< the whole line, as it stands there
    Texts cells;       ///< without the blanks around them; as many as there are
};

/// Fails the test when there is none.
std::vector<TableRow> readTable(const std::string& file);

Texts split(const std::string& text, const char* separatorPattern);

/// What stands before and behind the first separator.
std::pair<std::string, std::string> halves(const std::string& text, const std::string& separator);

std::string join(const Texts& texts, const std::string& between);

/// With bytes written as \FC, and \r and \n.
std::string unescaped(const std::string& text);

}  // namespace vek
