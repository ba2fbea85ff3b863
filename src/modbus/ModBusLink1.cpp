#include "modbus/ModBusLink1.h"

#include "platform/leadingnumber.h"
#include "program/port.h"

namespace vek {

namespace {

constexpr Milliseconds replyTimeOut{1000};

void discardInput(SerialControl& port) {
    while (port.receivedCount() > 0) {
        port.readInput();
    }
}

Bytes collectReply(Program& program, const Bytes& request) {
    SerialControl& port = program.RS485;
    const TimePoint deadline = program.desktop.now() + replyTimeOut;
    Bytes reply;
    std::size_t missing = exceptionReplyLength;
    while (port.waitReceived(missing, deadline)) {
        reply += port.readInput();
        if (parseReply(request, reply, true) != ReplyKind::NotYet) {
            return reply;
        }
        missing = replyLength(request) - reply.size();
    }
    return reply + port.readInput();
}

Bytes transact(Program& program, const Bytes& request) {
    program.terminalLog.append(LogColor::Black, LogForm::Hex, request);
    discardInput(program.RS485);
    program.RS485.writeOutput(request);
    program.RS485.waitSent();
    const Bytes reply = collectReply(program, request);
    program.terminalLog.append(LogColor::Red, LogForm::Hex, reply);
    switch (parseReply(request, reply, false)) {
        case ReplyKind::Data:
            return reply;
        case ReplyKind::Exception:
            return ExceptionToken(reply);
        default:
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

bool PortExists(Program& program, int n, PortError& error) {
    SerialControl& port = program.RS485;
    error = port.isOpen() ? PortError::InUse : PortError::NotThere;
    if (port.setPortNumber(n)) {
        error = port.open();
        port.close();
    }
    return error == PortError::None;
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
