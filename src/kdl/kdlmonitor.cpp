#include "kdl/kdlmonitor.h"

#include <optional>
#include <string>

#include "kdl/KDL.h"
#include "kdl/kdlrow.h"
#include "platform/leadingnumber.h"
#include "platform/textcodec.h"

namespace vek {

namespace {

constexpr int resistanceRow = 0;
constexpr int faultPositionRow = 8;

std::string shown(const Bytes& deviceText) {
    return withoutControls(utf8FromWindows1252(deviceText));
}

bool contains(std::string_view text, std::string_view mark) {
    return text.find(mark) != std::string_view::npos;
}

void showDevice(Program& program, KdlMonitorView& view) {
    const DeviceLabels labels = view.deviceLabels();
    labels.lblDevName.caption = withoutControls(program.DeviceName);
    labels.lblSwRegNr.caption = shown(KdlReadDeviceData(program));
    labels.lblSwVer.caption = KdlReadSoftwareVersion(program);
    labels.lblSwDate.caption = "-";
    labels.lblSwMb.caption = "-";
}

/// The alarm at this place; nothing when there is none.
std::optional<Bytes> readAlarm(Program& program, int index) {
    Bytes reply = KdlTransact(program, ":ALM? " + std::to_string(index + 1));
    return reply == kdlNoAlarm ? std::nullopt : std::optional(std::move(reply));
}

/// A running test counts among the alarms, so the list is asked for whatever its number is.
std::optional<Bytes> readAlarmList(Program& program, KdlMonitorView& view, int index) {
    const Bytes count = KdlTransact(program, ":ALMN?");
    if (contains(count, "n=/")) {
        if (contains(count, "TI")) {
            view.internalTest().fillColor = colors::red;
        } else if (contains(count, "TE")) {
            view.externalTest().fillColor = colors::red;
        }
        return readAlarm(program, index);
    }
    if (contains(count, "n= ")) {
        view.internalTest().fillColor = colors::white;
        view.externalTest().fillColor = colors::white;
        return kdlCount(count) > 0 ? readAlarm(program, index) : std::nullopt;
    }
    return std::nullopt;
}

Bytes readOperatingValue(Program& program, int index) {
    Bytes count = KdlTransact(program, ":BTRN?");
    return kdlCount(count) > 0 ? KdlTransact(program, ":BTR? " + std::to_string(index + 1)) : count;
}

void KdlSetRowLed(bool alarm, const ChannelRow& row) {
    row.LED.fillColor = alarm ? colors::red : colors::green;
}

void KdlShowRowNameUnit(const Bytes& reply, const ChannelRow& row) {
    if (const auto unit = kdlRowUnit(reply)) {
        row.lblEinheit.caption = std::string(*unit);
    }
    if (const auto description = kdlRowName(reply)) {
        row.lblMessName.caption = std::string(*description);
    }
}

void KdlShowRowValue(const Bytes& reply, const NumberLocale& locale, const ChannelRow& row) {
    const KdlRowValue value = kdlRowValue(reply, locale);
    row.lblRange.caption = value.range;
    if (value.value) {
        row.lblMesswert.caption = *value.value;
    }
    if (value.forcesRed) {
        row.LED.fillColor = colors::red;
    }
}

/// The number that a caption shows in the user's locale.
double shownNumber(const Program& program, const std::string& caption) {
    std::string text = caption;
    const std::size_t point = text.find(program.locale.decimalPoint);
    if (point != std::string::npos) {
        text.replace(point, program.locale.decimalPoint.size(), ".");
    }
    return leadingNumber(text);
}

void showFaultPosition(Program& program, KdlMonitorView& view) {
    const std::string& position = view.channelRow(faultPositionRow).lblMesswert.caption;
    const std::string& resistance = view.channelRow(resistanceRow).lblMesswert.caption;
    const bool none = position.empty() || position == "-";
    const auto percent = none ? std::nullopt : std::optional(shownNumber(program, position));
    view.showFaultPosition(faultPosition(percent, shownNumber(program, resistance), program.DeviceType));
}

/// One pass; false when the window was closed meanwhile.
bool readRows(Program& program, KdlMonitorView& view) {
    for (int index = 0; index < kdlRowCount; ++index) {
        const bool ended = KdlReadMonitorRow(program, view, index);
        if (!ended) {
            program.desktop.processEvents();
        }
        if (!view.isShown()) {
            return false;
        }
        if (ended) {
            break;
        }
    }
    showFaultPosition(program, view);
    return true;
}

}  // namespace

bool KdlReadMonitorRow(Program& program, KdlMonitorView& view, int index) {
    const std::optional<Bytes> alarm = readAlarmList(program, view, index);
    const Bytes reply = alarm ? *alarm : readOperatingValue(program, index);
    if (reply == kdlEndOfList) {
        return true;
    }
    const ChannelRow row = view.channelRow(index);
    KdlSetRowLed(alarm.has_value(), row);
    KdlShowRowNameUnit(reply, row);
    KdlShowRowValue(reply, program.locale, row);
    return false;
}

void KdlRunMonitor(Program& program, KdlMonitorView& view) {
    program.MonitorRunning = true;
    if (program.KdlAddressPrefix == blankKdlPrefix) {
        showError(program, "Keine gültige ModBus-Adresse vorhanden");
        KdlClosePort(program);
        program.MonitorRunning = false;
        return;
    }
    KdlOpenPort(program);
    showDevice(program, view);
    while (readRows(program, view) && program.MonitorRunning) {
    }
    KdlClosePort(program);
    program.MonitorRunning = false;
}

}  // namespace vek
