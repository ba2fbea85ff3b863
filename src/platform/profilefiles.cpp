#include "platform/profilefiles.h"

#include "platform/profiletext.h"

namespace vek {

std::string ProfileFiles::read(const std::string& path, std::string_view section, std::string_view key,
                               std::size_t maxBytes) {
    return readProfileText(text(path), section, key, maxBytes);
}

}  // namespace vek
