#include "modbus/ModBusLink1.h"

#include <algorithm>

#include "platform/leadingnumber.h"
#include "program/port.h"

namespace vek {

namespace {

constexpr Milliseconds replyTimeOut{1000};

struct Request {
    std::uint8_t slave;
    std::uint8_t function;
    Bytes frame;
    std::size_t replyLength;
};

void discardInput(SerialControl& port) {
    while (port.receivedCount() > 0) {
        port.readInput();
    }
}

/// Waits for the whole reply, or for an exception reply, which is shorter than any other: without the early
/// look at it, a register that the device lacks would cost the whole time-out.
Bytes collectReply(Program& program, const Request& request) {
    SerialControl& port = program.RS485;
    const TimePoint deadline = program.desktop.now() + replyTimeOut;
    if (!port.waitReceived(std::min(exceptionReplyLength, request.replyLength), deadline)) {
        return port.readInput();
    }
    Bytes reply = port.readInput();
    if (reply.size() < request.replyLength &&
        !isCompleteExceptionReply(reply, request.slave, request.function)) {
        port.waitReceived(request.replyLength - reply.size(), deadline);
        reply += port.readInput();
    }
    return reply;
}

Bytes transact(Program& program, const Request& request) {
    program.terminalLog.append(LogColor::Black, LogForm::Hex, request.frame);
    discardInput(program.RS485);
    program.RS485.writeOutput(request.frame);
    program.RS485.waitSent();
    const Bytes reply = collectReply(program, request);
    program.terminalLog.append(LogColor::Red, LogForm::Hex, reply);
    if (!CheckCrc(reply)) {
        return crcTimeout;
    }
    if (IsExceptionReply(reply, request.function)) {
        return ExceptionToken(reply);
    }
    // What somebody else has said, or was said to another request, must not be shown as this device's value.
    return isAnswerTo(request.frame, reply) ? reply : crcTimeout;
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

PortError probePort(Program& program, int n) {
    SerialControl& port = program.RS485;
    if (port.isOpen()) {
        return PortError::InUse;
    }
    if (!port.setPortNumber(n)) {
        return PortError::NotThere;
    }
    const PortError error = port.open();
    port.close();
    return error;
}

Bytes SendReadRequest(Program& program, std::uint8_t slave, std::uint16_t startRegister,
                      std::uint16_t count) {
    return transact(program, {slave, functionReadHoldingRegisters, readRequest(slave, startRegister, count),
                              readReplyLength(count)});
}

Bytes SendWriteRequest(Program& program, std::uint8_t slave, std::uint16_t startRegister, std::uint8_t count,
                       std::uint8_t byteCount, std::string_view data) {
    return transact(program, {slave, functionWriteMultipleRegisters,
                              writeRequest(slave, startRegister, count, byteCount, data), writeReplyLength});
}

void SetDeviceAddress(Program& program, std::string_view text) {
    program.DeviceAddress = static_cast<std::uint8_t>(wholeNumber(leadingNumber(text), 0, 255));
}

}  // namespace vek
