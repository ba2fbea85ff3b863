#include "parameters/kdlparametervalue.h"

#include <array>

#include "platform/trimmed.h"

namespace vek {

namespace {

constexpr std::array<std::string_view, 16> keys = {"Re/kO", "FndHz", "Ze/kO", "Rp/kO", "Uu/V", "Uo/V",
                                                   "Ce/uF", "off",   "nc",    "no",    "Adr=", "dig",
                                                   "Tvz/s", "T/h",   "STDBY", "on"};
constexpr std::size_t shortestValueReply = 4;

}  // namespace

std::string KdlParameterValueText(std::string_view reply) {
    for (const std::string_view key : keys) {
        const std::size_t found = reply.find(key);
        if (found == std::string_view::npos) {
            continue;
        }
        if (key == kdlOffText && reply.size() < shortestValueReply) {
            return std::string(reply.substr(found));
        }
        return std::string(trimmed(reply.substr(found + key.size())));
    }
    return {};
}

}  // namespace vek
