#include "monitor/kdlmonitor.h"

#include <optional>
#include <string>

#include "devicemodel/monitorrendering.h"
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
    return deviceText == kdlTimeOutError ? noValueText : withoutControls(utf8FromWindows1252(deviceText));
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

/// The requests of one row.
class Row {
  public:
    Row(Program& program, frmMbMonitor& monitor, std::size_t index)
        : program_(program), monitor_(monitor), number_(std::to_string(index + 1)) {}

    /// Its reply; an alarm goes before an operating value.
    Bytes read() {
        const std::optional<Bytes> alarm = readAlarmList();
        isAlarm_ = alarm.has_value();
        return alarm ? *alarm : readOperatingValue();
    }

    bool isAlarm() const { return isAlarm_; }
    /// Whether each request has got a reply.
    bool isAnswered() const { return answered_; }

  private:
    Bytes ask(const std::string& command) {
        Bytes reply = KdlTransact(program_, command);
        answered_ = answered_ && reply != kdlTimeOutError;
        return reply;
    }

    /// The alarm at this place; nothing when there is none.
    std::optional<Bytes> readAlarm() {
        Bytes reply = ask(":ALM? " + number_);
        return reply == kdlNoAlarm ? std::nullopt : std::optional(std::move(reply));
    }

    void showTests(const Color& color) {
        monitor_.LED_TEST_INTERN.fillColor = color;
        monitor_.LED_TEST_EXTERN.fillColor = color;
    }

    /// A running test counts among the alarms, so the list is asked for whatever its number is.
    std::optional<Bytes> readAlarmList() {
        const Bytes count = ask(":ALMN?");
        if (contains(count, "n=/")) {
            if (contains(count, "TI")) {
                monitor_.LED_TEST_INTERN.fillColor = colors::red;
            } else if (contains(count, "TE")) {
                monitor_.LED_TEST_EXTERN.fillColor = colors::red;
            }
            return readAlarm();
        }
        if (contains(count, "n= ")) {
            showTests(colors::white);
            return kdlCount(count) > 0 ? readAlarm() : std::nullopt;
        }
        if (count == kdlTimeOutError) {
            showTests(colors::grey);
        }
        return std::nullopt;
    }

    Bytes readOperatingValue() {
        Bytes count = ask(":BTRN?");
        return kdlCount(count) > 0 ? ask(":BTR? " + number_) : count;
    }

    Program& program_;
    frmMbMonitor& monitor_;
    const std::string number_;
    bool isAlarm_ = false;
    bool answered_ = true;
};

/// A row that nobody has filled in this pass.
void showEmptyRow(frmMbMonitor& monitor, std::size_t index, const char* value, const char* range) {
    monitor.LED[index].fillColor = colors::grey;
    monitor.lblMesswert[index].caption = value;
    monitor.lblRange[index].caption = range;
    monitor.lblEinheit[index].caption = std::string();
    monitor.lblMessName[index].caption = std::string();
}

void showUnreadRow(frmMbMonitor& monitor, std::size_t index) {
    showEmptyRow(monitor, index, noValueText, rangeCaption(RangeState::invalid).data());
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
    const bool noPosition = position.empty() || position == "-" || position == noValueText;
    const auto numberIn = [&program](bool none, const std::string& caption) {
        return none ? std::nullopt : std::optional(shownNumber(program, caption));
    };
    monitor.showFaultPosition(faultPosition(
        numberIn(noPosition, position), numberIn(resistance == noValueText, resistance), program.DeviceType));
}

/// One pass; false when the poll is to end before its end. After "Stop" a device that is silent would only
/// take time until the end of the list.
bool readRows(Program& program, frmMbMonitor& monitor) {
    RowEnd end = RowEnd::Filled;
    std::size_t index = 0;
    while (index < kdlRowCount && end != RowEnd::EndOfList) {
        end = KdlReadMonitorRow(program, monitor, index++);
        if (end != RowEnd::EndOfList) {
            program.desktop.processEvents();
        }
        if (!monitor.isOpen()) {
            return false;
        }
        if (end == RowEnd::Unanswered && !program.MonitorRunning) {
            break;
        }
    }
    for (std::size_t rest = index; rest < kdlRowCount; ++rest) {
        end == RowEnd::EndOfList ? showEmptyRow(monitor, rest, "", "") : showUnreadRow(monitor, rest);
    }
    showFaultPosition(program, monitor);
    return true;
}

}  // namespace

RowEnd KdlReadMonitorRow(Program& program, frmMbMonitor& monitor, std::size_t index) {
    Row row(program, monitor, index);
    const Bytes reply = row.read();
    const bool ended = reply == kdlEndOfList;
    if (!row.isAnswered()) {
        showUnreadRow(monitor, index);
        return ended ? RowEnd::EndOfList : RowEnd::Unanswered;
    }
    if (ended) {
        showEmptyRow(monitor, index, "", "");
        return RowEnd::EndOfList;
    }
    monitor.LED[index].fillColor = row.isAlarm() ? colors::red : colors::green;
    KdlShowRowNameUnit(reply, monitor, index);
    KdlShowRowValue(reply, program.locale, monitor, index);
    return RowEnd::Filled;
}

void KdlRunMonitor(Program& program, frmMbMonitor& monitor) {
    program.MonitorRunning = true;
    if (program.KdlAddressPrefix == blankKdlPrefix) {
        showError(program, "Keine gültige ModBus-Adresse vorhanden");
        KdlClosePort(program);
        program.MonitorRunning = false;
        return;
    }
    if (KdlPortOpened(program)) {
        showDevice(program, monitor);
        while (readRows(program, monitor) && program.MonitorRunning) {
        }
        KdlClosePort(program);
    }
    program.MonitorRunning = false;
}

}  // namespace vek
