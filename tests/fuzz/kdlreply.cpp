// What a device may answer on the KDL bus, and what the monitor shows of it. Input: length of the reply's
// first part, milliseconds between the parts, the reply.
#include <algorithm>
#include <array>
#include <cmath>

#include "fuzz.h"
#include "kdl/KDL.h"
#include "kdl/kdlframe.h"
#include "kdl/kdlparametervalue.h"
#include "kdl/kdlrow.h"
#include "support/testprogram.h"

namespace vek {
namespace {

/// The payload by the letter: from the seventh character to the first "&", or all of it.
std::string payloadOf(std::string_view reply) {
    std::size_t at = 0;
    while (at < reply.size() && reply[at] != '&') {
        ++at;
    }
    return std::string(at == reply.size() || at < 6 ? reply : reply.substr(6, at - 6));
}

/// Whether some whole line that the device has sent carries this payload.
bool wasSent(std::string_view sent, std::string_view payload) {
    for (std::size_t end = sent.find("\r\n"); end != std::string_view::npos;
         end = sent.find("\r\n", end + 1)) {
        if (payloadOf(sent.substr(0, end)) == payload) {
            return true;
        }
    }
    return false;
}

void checkTransaction(std::string_view reply, std::size_t firstPart, Milliseconds pause) {
    TestProgram test;
    test.configure();
    test.program.FrameFormat = kdlFrameFormat;
    test.program.KdlAddressPrefix = ":;003";
    KdlOpenPort(test.program);
    test.serial.peer = [&](std::string_view request) {
        unsigned sum = 0;
        for (const char character : request.substr(0, request.size() - 2)) {
            sum += static_cast<unsigned char>(character);
        }
        require(sum % 256 == 0, "a request's characters add up to a multiple of 256");
        const std::string_view first = reply.substr(0, firstPart);
        test.serial.reply(first, Milliseconds(5));
        test.serial.reply(reply.substr(first.size()), Milliseconds(5) + pause);
    };
    const Bytes result = KdlTransact(test.program, ":BTR? 1");
    require(result == kdlTimeOutError || wasSent(reply, result), "a result is what the device has sent");
    const bool complete = reply.ends_with("\r\n") && (firstPart >= reply.size() || pause < Milliseconds(190));
    require(!complete || result != kdlTimeOutError || wasSent(reply, kdlTimeOutError),
            "a line that came in time is taken");
}

std::string digitsOf(std::string_view reply) {
    std::string digits(reply);
    std::erase_if(digits, [](char c) { return c < '0' || c > '9'; });
    return digits;
}

std::string withoutLeadingZeros(const std::string& digits) {
    return digits.substr(std::min(digits.find_first_not_of('0'), digits.size()));
}

void checkRow(std::string_view reply) {
    const NumberLocale german{",", "."};
    const KdlRowValue row = kdlRowValue(reply, german);
    require(row.range.empty() || row.range == "<" || row.range == ">", "a range is one of its symbols");
    constexpr std::size_t exactDigits = 15;  // of tenths
    const std::string sent = digitsOf(reply);
    if (row.value && *row.value != "-" &&
        (sent.size() <= exactDigits || row.value->find(',') == std::string::npos)) {
        require(withoutLeadingZeros(digitsOf(*row.value)) == withoutLeadingZeros(sent),
                "a value has the digits that the device has sent");
    }
    require(std::isfinite(kdlCount(reply)), "a count is finite");
    kdlRowUnit(reply);
    kdlRowName(reply);
    const std::string version = kdlSoftwareVersion(Bytes(reply));
    require(version.size() >= 4 && version[version.size() - 3] == '.', "a version has two decimals");
}

void checkParameter(std::string_view reply) {
    const std::string value = KdlParameterValueText(reply);
    require(!value.starts_with(' ') && !value.ends_with(' '), "a parameter's value has no blanks around it");
    while (reply.ends_with(' ')) {
        reply.remove_suffix(1);
    }
    require(reply.ends_with(value), "a parameter's value is the end of what the device has sent");
    if (value.empty() || value == reply) {
        return;
    }
    reply.remove_suffix(value.size());
    while (reply.ends_with(' ')) {
        reply.remove_suffix(1);
    }
    constexpr std::array<std::string_view, 13> marks = {"kO", "Hz",  "/V", "uF", "off",   "nc", "no",
                                                        "r=", "dig", "/s", "/h", "STDBY", "on"};
    require(
        std::any_of(marks.begin(), marks.end(), [&](std::string_view mark) { return reply.ends_with(mark); }),
        "a parameter's value stands behind its unit");
}

void run(Input input) {
    const std::size_t firstPart = input.byte();
    const Milliseconds pause(input.byte());
    const std::string reply = input.rest();
    checkTransaction(reply, firstPart, pause);
    checkRow(kdlPayload(reply));
    checkParameter(kdlPayload(reply));
}

}  // namespace
}  // namespace vek

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    vek::run(vek::Input(data, size));
    return 0;
}
