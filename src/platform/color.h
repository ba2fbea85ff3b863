#pragma once

#include <cstdint>

namespace vek {

/// A colour as the screen mixes it, each part 0 to 255.
struct Color {
    std::uint8_t red = 0;
    std::uint8_t green = 0;
    std::uint8_t blue = 0;

    friend constexpr bool operator==(const Color&, const Color&) = default;
};

/// The colours of indicator lamps and status texts.
namespace colors {
inline constexpr Color green{0, 255, 0};
inline constexpr Color yellow{255, 255, 0};
inline constexpr Color magenta{255, 0, 255};
inline constexpr Color cyan{0, 255, 255};
inline constexpr Color red{255, 0, 0};
inline constexpr Color white{255, 255, 255};
inline constexpr Color grey{192, 192, 192};
}  // namespace colors

}  // namespace vek
