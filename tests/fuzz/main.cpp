#include "fuzz.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    vek::fuzz(vek::Input(data, size));
    return 0;
}
