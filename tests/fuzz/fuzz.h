#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace vek {

/// Ends the run, which keeps the input, when something does not hold that always must.
inline void require(bool holds, const char* what) {
    if (!holds) {
        std::fprintf(stderr, "does not hold: %s\n", what);
        std::abort();
    }
}

/// The bytes of one input, taken from the front.
class Input {
  public:
    Input(const std::uint8_t* data, std::size_t size)
        : rest_(static_cast<const char*>(static_cast<const void*>(data)), size) {}

    /// 0 when there is none left.
    std::uint8_t byte() { return static_cast<std::uint8_t>((bytes(1) + '\0')[0]); }

    /// Fewer when there are not as many left.
    std::string bytes(std::size_t count) {
        std::string taken(rest_.substr(0, count));
        rest_.remove_prefix(taken.size());
        return taken;
    }

    std::string rest() { return bytes(rest_.size()); }

  private:
    std::string_view rest_;
};

/// What a target checks of one input; each has its own.
void fuzz(Input input);

}  // namespace vek
