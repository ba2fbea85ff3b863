#include "modbus/ModBusLink1.h"

#include <algorithm>

#include "platform/leadingnumber.h"
#include "program/port.h"

namespace vek {

namespace {

constexpr Milliseconds replyTimeOut{1000};
constexpr Milliseconds longestDelay{500};  // of a reply that has missed its time
constexpr Milliseconds longestGap{50};     // between the bytes of one reply

/// What an adapter returns that hears its own sending stands in front of the reply.
Bytes withoutEcho(const Bytes& request, const Bytes& reply) {
    return reply.starts_with(request) ? reply.substr(request.size()) : reply;
}

/// How many bytes are missing at least; 0 when nothing more can come that belongs to the reply.
std::size_t leastMissing(const Bytes& request, const Bytes& reply) {
    const Bytes answer = withoutEcho(request, reply);
    const ReplyKind kind = parseReply(request, answer, true);
    if (kind == ReplyKind::NotYet) {
        const bool isShort = answer.size() < exceptionReplyLength;
        return (isShort ? exceptionReplyLength : replyLength(request)) - answer.size();
    }
    const bool echoing = kind == ReplyKind::NotForUs && request.starts_with(reply);
    return echoing ? request.size() - reply.size() + exceptionReplyLength : 0;
}

Bytes collectReply(Program& program, const Bytes& request) {
    SerialControl& port = program.RS485;
    const TimePoint deadline = program.desktop.now() + replyTimeOut;
    Bytes reply;
    std::size_t missing = exceptionReplyLength;
    while (missing > 0 && port.waitReceived(missing, deadline)) {
        reply += port.readInput();
        missing = leastMissing(request, reply);
    }
    return missing > 0 ? reply + port.readInput() : reply;
}

/// A reply that comes late must not answer the next request. Waits for it and for its end, as far as it can
/// still come; after a wait in which nothing came not again before a byte has come.
void discardLateReply(Program& program) {
    SerialControl& port = program.RS485;
    LateReply& awaited = program.lateReply;
    if (program.desktop.now() < awaited.limit) {
        const TimePoint limit = awaited.limit;
        bool more = port.waitReceived(1, limit);
        awaited.waited(more);
        while (more) {
            port.readInput();
            more = port.waitReceived(1, std::min(program.desktop.now() + longestGap, limit));
        }
    }
    awaited.limit = {};
    while (port.receivedCount() > 0) {
        port.readInput();
    }
}

Bytes transact(Program& program, const Bytes& request) {
    discardLateReply(program);
    program.terminalLog.append(LogColor::Black, LogForm::Hex, request);
    program.RS485.writeOutput(request);
    program.RS485.waitSent();
    const Bytes received = collectReply(program, request);
    program.terminalLog.append(LogColor::Red, LogForm::Hex, received);
    program.lateReply.replied(!received.empty());
    Bytes reply = withoutEcho(request, received);
    switch (parseReply(request, reply, false)) {
        case ReplyKind::Data:
            return reply;
        case ReplyKind::Exception:
            return ExceptionToken(reply);
        default:
            if (program.RS485.isConnected()) {
                program.lateReply.await(program.desktop.now() + longestDelay);
            }
            return crcTimeout;
    }
}

Bytes counted(Program& program, Bytes result) {
    program.unansweredRequests = result == crcTimeout ? program.unansweredRequests + 1 : 0;
    return result;
}

}  // namespace

void OpenPort(Program& program) {
    const bool opened =
        !program.RS485.isOpen() && selectConfiguredPort(program) && program.RS485.open() == PortError::None;
    if (!opened) {
        showPortMissing(program);
    }
}

void ClosePort(Program& program) {
    program.RS485.close();
}

Bytes SendReadRequest(Program& program, std::uint8_t slave, std::uint16_t startRegister,
                      std::uint16_t count) {
    return counted(program, transact(program, readRequest(slave, startRegister, count)));
}

Bytes SendWriteRequest(Program& program, std::uint8_t slave, std::uint16_t startRegister, std::uint8_t count,
                       std::uint8_t byteCount, std::string_view data) {
    return counted(program, transact(program, writeRequest(slave, startRegister, count, byteCount, data)));
}

void SetDeviceAddress(Program& program, std::string_view text) {
    program.DeviceAddress = static_cast<std::uint8_t>(wholeNumber(leadingNumber(text), 0, 255));
}

}  // namespace vek
