#include "monitor/kdlmonitor.h"

#include <optional>
#include <string>

#include "kdl/KDL.h"
#include "monitor/frmMbMonitor.h"
#include "monitor/kdlrow.h"
#include "platform/leadingnumber.h"
#include "platform/textcodec.h"

namespace vek {

namespace {

constexpr std::size_t resistanceRow = 0;
constexpr std::size_t faultPositionRow = 8;

std::string shown(const Bytes& deviceText) {
    return withoutControls(utf8FromWindows1252(deviceText));
}

bool contains(std::string_view text, std::string_view mark) {
    return text.find(mark) != std::string_view::npos;
}

void showDevice(Program& program, frmMbMonitor& monitor) {
    monitor.lblDevName.caption = withoutControls(program.DeviceName);
    monitor.lblSwRegNr.caption = shown(KdlReadDeviceData(program));
    monitor.lblSwVer.caption = KdlReadSoftwareVersion(program);
    monitor.lblSwDate.caption = "-";
    monitor.lblSwMb.caption = "-";
}

/// The alarm at this place; nothing when there is none.
std::optional<Bytes> readAlarm(Program& program, std::size_t index) {
    Bytes reply = KdlTransact(program, ":ALM? " + std::to_string(index + 1));
    return reply == kdlNoAlarm ? std::nullopt : std::optional(std::move(reply));
}

/// A running test counts among the alarms, so the list is asked for whatever its number is.
std::optional<Bytes> readAlarmList(Program& program, frmMbMonitor& monitor, std::size_t index) {
    const Bytes count = KdlTransact(program, ":ALMN?");
    if (contains(count, "n=/")) {
        if (contains(count, "TI")) {
            monitor.LED_TEST_INTERN.fillColor = colors::red;
        } else if (contains(count, "TE")) {
            monitor.LED_TEST_EXTERN.fillColor = colors::red;
        }
        return readAlarm(program, index);
    }
    if (contains(count, "n= ")) {
        monitor.LED_TEST_INTERN.fillColor = colors::white;
        monitor.LED_TEST_EXTERN.fillColor = colors::white;
        return kdlCount(count) > 0 ? readAlarm(program, index) : std::nullopt;
    }
    return std::nullopt;
}

Bytes readOperatingValue(Program& program, std::size_t index) {
    Bytes count = KdlTransact(program, ":BTRN?");
    return kdlCount(count) > 0 ? KdlTransact(program, ":BTR? " + std::to_string(index + 1)) : count;
}

void KdlShowRowNameUnit(const Bytes& reply, frmMbMonitor& monitor, std::size_t index) {
    if (const auto unit = kdlRowUnit(reply)) {
        monitor.lblEinheit[index].caption = std::string(*unit);
    }
    if (const auto description = kdlRowName(reply)) {
        monitor.lblMessName[index].caption = std::string(*description);
    }
}

void KdlShowRowValue(const Bytes& reply, const NumberLocale& locale, frmMbMonitor& monitor,
                     std::size_t index) {
    const KdlRowValue value = kdlRowValue(reply, locale);
    monitor.lblRange[index].caption = value.range;
    if (value.value) {
        monitor.lblMesswert[index].caption = *value.value;
    }
    if (value.forcesRed) {
        monitor.LED[index].fillColor = colors::red;
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

void showFaultPosition(Program& program, frmMbMonitor& monitor) {
    const std::string& position = monitor.lblMesswert[faultPositionRow].caption;
    const std::string& resistance = monitor.lblMesswert[resistanceRow].caption;
    const bool none = position.empty() || position == "-";
    const auto percent = none ? std::nullopt : std::optional(shownNumber(program, position));
    monitor.showFaultPosition(faultPosition(percent, shownNumber(program, resistance), program.DeviceType));
}

/// One pass; false when the window was closed meanwhile.
bool readRows(Program& program, frmMbMonitor& monitor) {
    for (std::size_t index = 0; index < kdlRowCount; ++index) {
        const bool ended = KdlReadMonitorRow(program, monitor, index);
        if (!ended) {
            program.desktop.processEvents();
        }
        if (!monitor.isOpen()) {
            return false;
        }
        if (ended) {
            break;
        }
    }
    showFaultPosition(program, monitor);
    return true;
}

}  // namespace

bool KdlReadMonitorRow(Program& program, frmMbMonitor& monitor, std::size_t index) {
    const std::optional<Bytes> alarm = readAlarmList(program, monitor, index);
    const Bytes reply = alarm ? *alarm : readOperatingValue(program, index);
    if (reply == kdlEndOfList) {
        return true;
    }
    monitor.LED[index].fillColor = alarm ? colors::red : colors::green;
    KdlShowRowNameUnit(reply, monitor, index);
    KdlShowRowValue(reply, program.locale, monitor, index);
    return false;
}

void KdlRunMonitor(Program& program, frmMbMonitor& monitor) {
    program.MonitorRunning = true;
    if (program.KdlAddressPrefix == blankKdlPrefix) {
        showError(program, "Keine gültige ModBus-Adresse vorhanden");
        KdlClosePort(program);
        program.MonitorRunning = false;
        return;
    }
    KdlOpenPort(program);
    showDevice(program, monitor);
    while (readRows(program, monitor) && program.MonitorRunning) {
    }
    KdlClosePort(program);
    program.MonitorRunning = false;
}

}  // namespace vek
