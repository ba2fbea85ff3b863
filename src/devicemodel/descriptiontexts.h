#pragma once

#include <cstdint>
#include <string_view>

namespace vek {

/// What a channel measures or reports, by its description code. "-" for codes without a meaning.
std::string_view descriptionText(std::uint16_t code);

}  // namespace vek
