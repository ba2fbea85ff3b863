#pragma once

#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

#include "platform/color.h"
#include "platform/controls.h"
#include "platform/logstore.h"

namespace vek {

/// The captions of the labels as one text: "1.234|<|kOhm|Spannung".
inline std::string captions(std::initializer_list<const Label*> labels) {
    std::string text;
    for (const Label* label : labels) {
        text += label->caption.get() + '|';
    }
    return text.substr(0, text.size() - 1);
}

/// The colour of an indicator as a letter: Red, Yellow, Green, Magenta, Cyan, White; - for grey.
inline char colorLetter(const Color& color) {
    constexpr std::pair<Color, char> letters[] = {{colors::red, 'R'},     {colors::yellow, 'Y'},
                                                  {colors::green, 'G'},   {colors::cyan, 'C'},
                                                  {colors::magenta, 'M'}, {colors::white, 'W'}};
    for (const auto& [named, letter] : letters) {
        if (named == color) {
            return letter;
        }
    }
    return '-';
}

/// The lines of the terminal with their colours: "black 0303265C00014EB2".
inline std::vector<std::string> logLines(const LogStore& log) {
    std::vector<std::string> lines;
    for (std::uint64_t index = 0; index < log.lineCount(); ++index) {
        constexpr const char* names[] = {"black ", "red ", "blue "};
        lines.push_back(names[static_cast<int>(log.line(index).color)] + log.text(index));
    }
    return lines;
}

}  // namespace vek
