#include "monitor/modbuspoll.h"

#include <charconv>
#include <optional>

#include "devicemodel/descriptiontexts.h"
#include "devicemodel/measurementchannel.h"
#include "devicemodel/monitorrendering.h"
#include "modbus/ModBus.h"
#include "platform/textcodec.h"

namespace vek {

namespace {

constexpr std::uint8_t lowestAddress = 3;
constexpr std::uint8_t highestAddress = 90;

void showValue(ModbusMonitorView& view, int slot, const std::optional<Bytes>& data) {
    if (data) {
        view.channelRow(slot).lblMesswert.caption = view.valueText(slot, BytesToSingle(*data));
    } else {
        view.channelRow(slot).lblMesswert.caption = std::string(noValueText);
        view.valueMissing(slot);
    }
}

void showRange(ModbusMonitorView& view, int slot, RangeState state) {
    const ChannelRow row = view.channelRow(slot);
    row.lblRange.caption = std::string(rangeCaption(state));
    if (state == RangeState::invalid) {
        row.lblMesswert.caption = std::string(noValueText);
        view.valueMissing(slot);
    }
}

void showStatus(ModbusMonitorView& view, int slot, std::uint16_t statusWord) {
    const ChannelRow row = view.channelRow(slot);
    const MeasurementChannel channel{.ChannelStatusWord = statusWord};
    const TestColors tests = testColors(channel.testState());
    view.internalTest().fillColor = tests.internal;
    view.externalTest().fillColor = tests.external;
    if (const auto color = alarmColor(channel.alarmState())) {
        row.LED.fillColor = *color;
    }
    showRange(view, slot, channel.rangeState());
    row.lblEinheit.caption = std::string(monitorText(channel.unitCode()));
    view.statusShown(slot, channel.rangeState());
}

/// Without its status a value may be out of range or in alarm, so it is not shown either.
void showMissingStatus(ModbusMonitorView& view, int slot) {
    const ChannelRow row = view.channelRow(slot);
    row.LED.fillColor = colors::grey;
    showRange(view, slot, RangeState::invalid);
    row.lblEinheit.caption = std::string();
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
    return whole ? format(value) : std::string(noValueText);
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
bool isGivenUp(const Program& program, const ModbusMonitorView& view) {
    return !program.MonitorRunning || !view.isShown();
}

/// As MbReadRegisters for one register, but "" without asking once the user has given up: each further read
/// would only bring another box.
Bytes readIdentification(Program& program, const ModbusMonitorView& view, std::uint16_t number) {
    return isGivenUp(program, view) ? Bytes() : MbReadRegisters(program, number, 1);
}

/// Day, month and year stand in three registers; one that is missing makes the whole date worthless.
std::string readSoftwareDate(Program& program, const ModbusMonitorView& view) {
    const std::string year = identificationText(readIdentification(program, view, 9822), decimalText);
    const std::string month = identificationText(readIdentification(program, view, 9823), decimalText);
    const std::string day = identificationText(readIdentification(program, view, 9824), decimalText);
    for (const std::string& part : {year, month, day}) {
        if (part == crcTimeout || part == noValueText) {
            return part;
        }
    }
    return day + "." + month + "." + year;
}

void showIdentification(Program& program, ModbusMonitorView& view) {
    const DeviceLabels labels = view.deviceLabels();
    labels.lblDevName.caption = withoutControls(program.DeviceName);
    labels.lblSwRegNr.caption =
        identificationText(readIdentification(program, view, 9820),
                           [](std::uint16_t value) { return decimalText(value) + "D"; });
    labels.lblSwVer.caption = identificationText(readIdentification(program, view, 9821), versionLabel);
    labels.lblSwDate.caption = readSoftwareDate(program, view);
    labels.lblSwMb.caption = identificationText(readIdentification(program, view, 9825), versionLabel);
}

/// Time to press "Stop" before the next box: a device that refuses each request at once would leave none.
void leaveTimeForStop(Program& program, const ModbusMonitorView& view) {
    constexpr Milliseconds pause{500};
    const TimePoint end = program.desktop.now() + pause;
    while (program.desktop.now() < end && !isGivenUp(program, view)) {
        program.RS485.receivedCount();  // bytes that nobody has fetched would end the wait at once
        program.desktop.waitForEvents(end);
    }
}

/// One cycle; false when the poll is to end before its end.
bool pollChannels(Program& program, ModbusMonitorView& view) {
    for (int slot = 0; slot < polledChannels; ++slot) {
        const bool answered = ReadMeasurementChannel(
            program, view, static_cast<std::uint16_t>(channelStartRegister(slot)), slot);
        program.desktop.processEvents();
        if (!answered) {
            leaveTimeForStop(program, view);
        }
        // After "Stop", a device that is silent would only bring box after box until the end of the cycle.
        if (!view.isShown() || (!answered && !program.MonitorRunning)) {
            return false;
        }
    }
    view.cycleDone();
    return true;
}

}  // namespace

bool ReadMeasurementChannel(Program& program, ModbusMonitorView& view, std::uint16_t startRegister,
                            int slot) {
    const auto value = readData(program, startRegister, 2);
    showValue(view, slot, value);
    const auto status = readRegister(program, static_cast<std::uint16_t>(startRegister + 2));
    if (status) {
        showStatus(view, slot, *status);
    } else {
        showMissingStatus(view, slot);
    }
    const auto code = readRegister(program, static_cast<std::uint16_t>(startRegister + 3));
    view.channelRow(slot).lblMessName.caption = std::string(code ? descriptionText(*code) : noValueText);
    return value || status || code;
}

void runModbusPoll(Program& program, ModbusMonitorView& view) {
    program.MonitorRunning = true;
    if (program.DeviceAddress < lowestAddress || program.DeviceAddress > highestAddress) {
        showError(program, "Keine gültige ModBus-Adresse vorhanden");
        ClosePort(program);
        program.MonitorRunning = false;
        return;
    }
    OpenPort(program);
    showIdentification(program, view);
    while (!isGivenUp(program, view) && pollChannels(program, view)) {
    }
    ClosePort(program);
    program.MonitorRunning = false;
}

}  // namespace vek
