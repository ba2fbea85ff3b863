#pragma once

#include <cmath>

namespace vek {

/// A logical pixel is 1/96 inch, a twip 1/1440 inch.
inline constexpr int twipsPerPixel = 15;

inline int pixelsFromTwips(int twips) {
    return static_cast<int>(std::lround(static_cast<double>(twips) / twipsPerPixel));
}

inline int twipsFromPixels(int pixels) {
    return pixels * twipsPerPixel;
}

}  // namespace vek
