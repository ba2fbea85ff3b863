#include "monitor/modbuspoll.h"

#include <charconv>
#include <optional>

#include "devicemodel/descriptiontexts.h"
#include "devicemodel/monitorrendering.h"
#include "modbus/ModBus.h"
#include "monitor/measurementreading.h"
#include "monitor/monitorform.h"
#include "platform/textcodec.h"

namespace vek {

namespace {

constexpr std::uint8_t lowestAddress = 3;
constexpr std::uint8_t highestAddress = 90;

void showStatus(MonitorForm& monitor, std::size_t slot, const ChannelStatus& status) {
    const TestColors tests = testColors(status.test);
    monitor.LED_TEST_INTERN.fillColor = tests.internal;
    monitor.LED_TEST_EXTERN.fillColor = tests.external;
    if (const auto color = alarmColor(status.alarm)) {
        monitor.LED[slot].fillColor = *color;
    }
    monitor.lblRange[slot].caption = std::string(rangeCaption(status.range));
    monitor.lblEinheit[slot].caption = std::string(monitorText(status.unit));
    monitor.statusShown(slot, status.range);
}

void showMissingStatus(MonitorForm& monitor, std::size_t slot) {
    monitor.LED_TEST_INTERN.fillColor = colors::grey;
    monitor.LED_TEST_EXTERN.fillColor = colors::grey;
    monitor.LED[slot].fillColor = colors::grey;
    monitor.lblRange[slot].caption = std::string(rangeCaption(RangeState::invalid));
    monitor.lblEinheit[slot].caption = std::string();
}

/// Without its status a value may be out of range or in alarm, so it is not shown either.
void showChannel(MonitorForm& monitor, std::size_t slot, const MeasurementChannel& channel) {
    const bool valid = channel.status && channel.status->range != RangeState::invalid;
    monitor.showValue(slot, valid ? channel.Value : std::nullopt);
    if (channel.status) {
        showStatus(monitor, slot, *channel.status);
    } else {
        showMissingStatus(monitor, slot);
    }
    const auto code = channel.DescriptionCode;
    monitor.lblMessName[slot].caption = std::string(code ? descriptionText(*code) : noValueText);
}

/// A single register for a label: `format` of its value, or what went wrong.
template <class Format>
std::string identificationText(const Bytes& result, Format format) {
    if (result == crcTimeout) {
        return result;
    }
    std::uint16_t value = 0;
    const auto parsed = std::from_chars(result.data(), result.data() + result.size(), value);
    const bool whole = parsed.ec == std::errc() && parsed.ptr == result.data() + result.size();
    return whole ? format(value) : noValueText;
}

std::string versionLabel(std::uint16_t hundredths) {
    const std::string decimals = std::to_string(hundredths % 100);
    return "V" + std::to_string(hundredths / 100) + "." + (decimals.size() < 2 ? "0" : "") + decimals;
}

std::string decimalText(std::uint16_t value) {
    return std::to_string(value);
}

/// The user has pressed "Stop" or closed the window; during the identification only over the box of a read
/// that failed.
bool isGivenUp(const Program& program, const MonitorForm& monitor) {
    return !program.MonitorRunning || !monitor.isOpen();
}

/// As MbReadRegisters for one register, but "" without asking once the user has given up: each further read
/// would only bring another box.
Bytes readIdentification(Program& program, const MonitorForm& monitor, std::uint16_t number) {
    return isGivenUp(program, monitor) ? Bytes() : MbReadRegisters(program, number, 1);
}

/// Day, month and year stand in three registers; one that is missing makes the whole date worthless.
std::string readSoftwareDate(Program& program, const MonitorForm& monitor) {
    const std::string year = identificationText(readIdentification(program, monitor, 9822), decimalText);
    const std::string month = identificationText(readIdentification(program, monitor, 9823), decimalText);
    const std::string day = identificationText(readIdentification(program, monitor, 9824), decimalText);
    for (const std::string& part : {year, month, day}) {
        if (part == crcTimeout || part == noValueText) {
            return part;
        }
    }
    return day + "." + month + "." + year;
}

void showIdentification(Program& program, MonitorForm& monitor) {
    monitor.lblDevName.caption = withoutControls(program.DeviceName);
    monitor.lblSwRegNr.caption =
        identificationText(readIdentification(program, monitor, 9820),
                           [](std::uint16_t value) { return decimalText(value) + "D"; });
    monitor.lblSwVer.caption = identificationText(readIdentification(program, monitor, 9821), versionLabel);
    monitor.lblSwDate.caption = readSoftwareDate(program, monitor);
    monitor.lblSwMb.caption = identificationText(readIdentification(program, monitor, 9825), versionLabel);
}

/// Time to press "Stop" before the next box: a device that refuses each request at once would leave none.
void leaveTimeForStop(Program& program, const MonitorForm& monitor) {
    constexpr Milliseconds pause{500};
    const TimePoint end = program.desktop.now() + pause;
    while (program.desktop.now() < end && !isGivenUp(program, monitor)) {
        program.desktop.waitForEvents(end);
    }
}

/// What has not been read in this cycle, from the slot on, is shown as not read.
void endCycleAt(MonitorForm& monitor, std::size_t firstUnread) {
    for (std::size_t slot = firstUnread; slot < polledChannels; ++slot) {
        showChannel(monitor, slot, {});
    }
    monitor.cycleDone();
}

/// One cycle; false when the poll is to end before its end.
bool pollChannels(Program& program, MonitorForm& monitor) {
    for (std::size_t slot = 0; slot < polledChannels; ++slot) {
        const unsigned messages = program.messagesShown;
        const bool answered = ReadMeasurementChannel(program, monitor, slot);
        // A channel that the device does not have is refused without a box, and no reason to end anything.
        const bool failed = !answered && program.messagesShown != messages;
        program.desktop.processEvents();
        if (failed) {
            leaveTimeForStop(program, monitor);
        }
        // After "Stop", a device that is silent would only bring box after box until the end of the cycle.
        if (!monitor.isOpen() || (failed && !program.MonitorRunning)) {
            endCycleAt(monitor, slot + 1);
            return false;
        }
    }
    monitor.cycleDone();
    return true;
}

}  // namespace

bool ReadMeasurementChannel(Program& program, MonitorForm& monitor, std::size_t slot) {
    const MeasurementChannel channel = readChannel(program, channelStartRegister(slot));
    showChannel(monitor, slot, channel);
    return channel.Value || channel.status || channel.DescriptionCode;
}

void runModbusPoll(Program& program, MonitorForm& monitor) {
    program.MonitorRunning = true;
    if (program.DeviceAddress < lowestAddress || program.DeviceAddress > highestAddress) {
        showError(program, "Keine gültige ModBus-Adresse vorhanden");
        ClosePort(program);
        program.MonitorRunning = false;
        return;
    }
    OpenPort(program);
    showIdentification(program, monitor);
    if (isGivenUp(program, monitor)) {
        endCycleAt(monitor, 0);
    }
    while (!isGivenUp(program, monitor) && pollChannels(program, monitor)) {
    }
    ClosePort(program);
    program.MonitorRunning = false;
}

}  // namespace vek
