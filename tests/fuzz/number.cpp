// Texts as numbers. Input: the text.
#include <cmath>

#include "fuzz.h"
#include "parameters/ParamValueText.h"
#include "platform/leadingnumber.h"

namespace vek {

void fuzz(Input input) {
    std::string text = input.rest();
    const double value = leadingNumber(text);
    const double whole = static_cast<double>(wholeNumber(value, -100, 65535, 70000));
    const bool within = whole >= -100 && whole <= 65535;
    require(std::isfinite(value), "a leading number is finite");
    require(within ? std::fabs(whole - value) <= 0.5 : whole == 70000, "a whole number is the nearest one");

    const double parameter = ParamValueText(text);
    std::erase_if(text, [](char c) { return std::string_view(" \t\r\n").find(c) != std::string::npos; });
    require(std::isfinite(parameter), "a parameter's value is finite");
    require(ParamValueText(text) == parameter, "blanks do not count");
}

}  // namespace vek
