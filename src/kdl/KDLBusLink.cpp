#include "kdl/KDLBusLink.h"

#include <algorithm>

#include "platform/leadingnumber.h"
#include "platform/textcodec.h"
#include "program/port.h"

namespace vek {

namespace {

constexpr int pauseBeforeRequest = 5;  // milliseconds
constexpr int replyTimeOut = 200;
constexpr Milliseconds longestDelay{200};               // of a reply that has missed its time
constexpr std::size_t maximumReply = 65536;             // what is beyond it, is noise
constexpr std::chrono::microseconds longestByte{1100};  // 10 bits at 9600 bit/s, and some
constexpr Milliseconds sendQueueLook{1};
constexpr Milliseconds sendLimit{2000};

void startTimer(Timer& timer, int milliseconds) {
    timer.enabled = false;
    timer.interval = milliseconds;
    timer.enabled = true;
}

/// A log line for each line of the text; an empty text leaves no line.
void logText(Program& program, LogColor color, std::string_view text) {
    while (!text.empty()) {
        const std::size_t end = text.find(kdlLineEnd);
        program.terminalLog.append(color, LogForm::Text, text.substr(0, end));
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 2);
    }
}

/// Ends also when the line stands still, as it does when the adapter has been pulled out.
void waitUntilSent(Program& program) {
    const TimePoint limit = program.desktop.now() + sendLimit;
    program.desktop.processEvents();
    while (program.RS485.sendQueueCount() > 0 && program.desktop.now() < limit) {
        program.desktop.waitForEvents(program.desktop.now() + sendQueueLook);
    }
}

/// Bytes that follow one another need not wake the windows one by one.
void awaitMore(Program& program, std::size_t missing, TimePoint limit) {
    const TimePoint arrival = program.desktop.now() + longestByte * missing;
    program.RS485.waitReceived(missing, std::min<TimePoint>(arrival, limit));
    program.desktop.processEvents();
}

Bytes collectReply(Program& program) {
    const TimePoint limit = program.desktop.now() + Milliseconds{replyTimeOut};
    Bytes reply;
    program.desktop.processEvents();
    while (true) {
        const Bytes input = program.RS485.readInput();
        reply += input.substr(0, maximumReply - reply.size());
        if (reply.ends_with(kdlLineEnd) || program.TimeOutElapsed) {
            return reply;
        }
        if (input.empty()) {
            program.desktop.waitForEvents();
        } else {
            awaitMore(program, kdlLeastMissing(reply), limit);
        }
    }
}

/// No reply says what it answers: one that comes late would pass for the answer to the next request, and each
/// reply behind it for that to the one after. Waits for it, as far as it can still come; after a wait in
/// which nothing came not again before a byte has come.
void discardLateReply(Program& program) {
    LateReply& awaited = program.lateReply;
    Bytes late = program.RS485.readInput();
    while (program.desktop.now() < awaited.limit && !late.ends_with(kdlLineEnd)) {
        program.desktop.waitForEvents(awaited.limit);
        late += program.RS485.readInput();
    }
    awaited.waited(!late.empty());
}

}  // namespace

void KdlOpenPort(Program& program) {
    if (program.RS485.isOpen() || !isPortNumber(program.ComPort)) {
        showPortMissing(program);
        return;
    }
    if (selectConfiguredPort(program)) {
        program.RS485.open();
    }
}

bool KdlPortOpened(Program& program) {
    const unsigned messages = program.messagesShown;
    KdlOpenPort(program);
    const bool isOpen = program.RS485.isOpen();
    if (!isOpen && program.messagesShown == messages) {
        showPortMissing(program);
    }
    return isOpen;
}

void KdlClosePort(Program& program) {
    program.RS485.close();
}

void KdlSetAddress(Program& program, std::string_view addressText) {
    const auto prefix = kdlPrefix(windows1252FromUtf8(addressText));
    if (!prefix) {
        program.KdlAddressPrefix = blankKdlPrefix;
        program.windows.closeAll();
        return;
    }
    program.KdlAddressPrefix = *prefix;
    program.DeviceAddress = static_cast<std::uint8_t>(wholeNumber(leadingNumber(addressText), 0, 255));
}

Bytes KdlTransact(Program& program, std::string_view command) {
    Bytes request = program.KdlAddressPrefix + Bytes(command);
    KdlAppendChecksum(request);
    discardLateReply(program);
    DelayMs(program, pauseBeforeRequest);
    // A late reply that comes in the pause must not pass for the answer to this request.
    program.RS485.readInput();
    logText(program, LogColor::Black, request);
    program.RS485.writeOutput(request);
    waitUntilSent(program);
    StartTimeOut(program, replyTimeOut);
    Bytes reply = collectReply(program);
    StopTimeOut(program);
    logText(program, LogColor::Blue, reply);
    const bool ended = reply.ends_with(kdlLineEnd);
    const std::string_view frame = std::string_view(reply).substr(0, reply.size() - (ended ? 2 : 0));
    const bool answered = ended && isSoundKdlReply(frame);
    program.unansweredRequests = answered ? 0 : program.unansweredRequests + 1;
    program.lateReply.replied(!reply.empty());
    if (!answered) {
        const bool connected = program.RS485.isConnected();
        program.lateReply.await(connected ? program.desktop.now() + longestDelay : TimePoint{});
        return kdlTimeOutError;
    }
    return kdlPayload(Bytes(frame));
}

void DelayMs(Program& program, int milliseconds) {
    program.DelayElapsed = false;
    startTimer(program.Timer1, milliseconds);
    while (!program.DelayElapsed) {
        program.desktop.waitForEvents();
    }
}

void StartTimeOut(Program& program, int milliseconds) {
    program.TimeOutElapsed = false;
    startTimer(program.TimeOut, milliseconds);
}

void StopTimeOut(Program& program) {
    program.TimeOut.enabled = false;
    program.TimeOutElapsed = false;
}

}  // namespace vek
