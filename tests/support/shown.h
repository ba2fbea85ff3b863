#pragma once

#include <initializer_list>
#include <string>
#include <utility>

#include "platform/color.h"
#include "platform/controls.h"

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

}  // namespace vek
