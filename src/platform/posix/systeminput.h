#pragma once

namespace vek {

struct SystemInput {
    int descriptor;  ///< readable when bytes have come
};

}  // namespace vek
