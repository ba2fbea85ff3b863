#include "kdl/KDL.h"

#include "platform/leadingnumber.h"
#include "platform/numberlocale.h"

namespace vek {

Bytes KdlIdentify(Program& program) {
    KdlOpenPort(program);
    const Bytes model = KdlTransact(program, ":IDNM?");
    const Bytes variant = KdlTransact(program, ":IDNV?");
    KdlClosePort(program);
    return model + variant;
}

Bytes KdlReadDeviceData(Program& program) {
    return KdlTransact(program, ":IDND?");
}

std::string KdlReadSoftwareVersion(Program& program) {
    const Bytes reply = KdlTransact(program, ":IDNF?");
    return reply == kdlTimeOutError ? noValueText : kdlSoftwareVersion(reply);
}

std::string kdlSoftwareVersion(const Bytes& reply) {
    constexpr std::string_view mark = "Sw";
    const std::size_t found = reply.find(mark);
    const std::string_view number =
        found == Bytes::npos ? std::string_view() : std::string_view(reply).substr(found + mark.size());
    // The version is written with a point whatever the user's locale is.
    return NumberLocale{}.fixed(leadingNumber(number) / 100, 2);
}

}  // namespace vek
