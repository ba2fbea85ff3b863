// What a device may answer on the KDL bus, and what the monitor and the editor make of it. Input: length of
// the reply's first part, milliseconds between the parts, the reply.
#include <cmath>

#include "fuzz.h"
#include "kdl/KDL.h"
#include "monitor/kdlrow.h"
#include "parameters/ParamValueText.h"
#include "parameters/kdlparametervalue.h"
#include "platform/leadingnumber.h"
#include "support/testprogram.h"

namespace vek {

void fuzz(Input input) {
    const std::size_t firstPart = input.byte();
    const Milliseconds pause(input.byte());
    const std::string reply = input.rest();
    TestProgram test;
    test.configureKdl();
    KdlOpenPort(test.program);
    test.serial.peer = [&](std::string_view) {
        const std::string first = reply.substr(0, firstPart);
        test.serial.reply(first, Milliseconds(5));
        test.serial.reply(reply.substr(first.size()), Milliseconds(5) + pause);
    };
    const TimePoint begin = test.clock.now();
    const Bytes result = KdlTransact(test.program, ":BTR? 1");
    require(test.clock.now() - begin <= Milliseconds(5 + 200), "no reply is waited for longer than 200 ms");
    require(result == kdlTimeOutError || reply.find(result + '&') != std::string::npos ||
                reply.find(result + "\r\n") != std::string::npos,
            "a result is what the device has sent");

    const std::string range = kdlRowValue(result, {",", "."}).range;
    require(range.empty() || range == "<" || range == ">", "a range is one of its symbols");
    kdlRowUnit(result);
    kdlRowName(result);
    const std::string version = kdlSoftwareVersion(result);
    require(version.size() >= 4 && version[version.size() - 3] == '.', "a version has two decimals");
    const std::string value = KdlParameterValueText(result);
    require(!value.starts_with(' ') && !value.ends_with(' '), "a parameter's value has no blanks around it");
    require(std::isfinite(leadingNumber(result)) && std::isfinite(ParamValueText(result)),
            "a number is finite");
}

}  // namespace vek
