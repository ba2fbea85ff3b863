#include <algorithm>
#include <cstring>
#include <deque>
#include <optional>
#include <string>
#include <variant>

#include "campaign/episodes.h"
#include "campaign/faultyline.h"
#include "devicemodel/descriptiontexts.h"
#include "devicemodel/monitorrendering.h"
#include "monitor/frmMbMonitor.h"
#include "parameters/frmMbParameter.h"
#include "parameters/parametertable.h"

namespace vek {

namespace {

constexpr const char* none = "---";
constexpr const char* modbusError = "MODBUS-Fehler|";
constexpr const char* writeError = "Write Error|";
constexpr const char* missingRegister = "EXCEP_2";

bool hasRightCrc(const Bytes& frame) {
    return sim::hasValidCrc(sim::Bytes(frame.begin(), frame.end()));
}

unsigned byteOf(const Bytes& bytes, std::size_t index) {
    return static_cast<unsigned char>(bytes[index]);
}

unsigned wordOf(const Bytes& bytes, std::size_t index) {
    return byteOf(bytes, index) << 8U | byteOf(bytes, index + 1);
}

bool isWrite(const Exchange& exchange) {
    return byteOf(exchange.request, 1) == 16;
}

unsigned registerOf(const Exchange& exchange) {
    return wordOf(exchange.request, 2);
}

/// The code of an exception reply.
std::optional<unsigned> exceptionOf(const Exchange& exchange) {
    const Bytes& reply = exchange.received;
    const bool refusal =
        hasRightCrc(reply) && (reply.size() < 5 || byteOf(reply, 1) == byteOf(exchange.request, 1) + 128U);
    return refusal ? std::optional(byteOf(reply, 2)) : std::nullopt;
}

/// Whether a frame with a right CRC came that answers this request: this device, this function, for a write
/// these registers, and not the program's own request.
bool isAnswered(const Exchange& exchange) {
    const Bytes& reply = exchange.received;
    const std::size_t head = isWrite(exchange) ? 6 : 2;
    return hasRightCrc(reply) && reply.size() >= 5 && !exceptionOf(exchange) && reply != exchange.request &&
           reply.substr(0, head) == exchange.request.substr(0, head);
}

/// The registers that a read has brought, if as many as asked for.
std::optional<Bytes> dataOf(const Exchange& exchange) {
    if (!isAnswered(exchange)) {
        return std::nullopt;
    }
    const Bytes& reply = exchange.received;
    const Bytes data = reply.substr(3, std::min<std::size_t>(byteOf(reply, 2), reply.size() - 5));
    return data.size() == 2 * std::size_t{wordOf(exchange.request, 4)} ? std::optional(data) : std::nullopt;
}

std::optional<std::uint16_t> wordOf(const Exchange& exchange) {
    const auto data = dataOf(exchange);
    return data ? std::optional(static_cast<std::uint16_t>(wordOf(*data, 0))) : std::nullopt;
}

float singleOf(const Bytes& data) {
    const std::uint32_t bits = wordOf(data, 0) << 16U | wordOf(data, 2);
    float value = 0;
    std::memcpy(&value, &bits, sizeof value);
    return value;
}

class ModbusEpisode : Episode {
  public:
    ModbusEpisode(std::uint32_t seed, Figures& figures) : Episode(seed, false, figures) {}

    void run() {
        const bool watching = line_.draw(2) == 0;
        const bool ended = test_.endsProgram([&] { watching ? watch() : edit(); });
        figures_.ends += ended ? 1 : 0;
        expect(!test_.serial.isOpen(), "the port stays open");
        expect(!ended || std::ranges::find(test_.desktop.boxes, farewell) != test_.desktop.boxes.end(),
               "the program ended by itself");
    }

  private:
    /// The exchanges since the last call, each held against its own reply and against its message box.
    std::vector<Exchange> takeExchanges() {
        std::vector<Exchange> exchanges = line_.take();
        std::vector<std::string> expected;
        for (const Exchange& exchange : exchanges) {
            judge(exchange);
            const bool unevaluated =
                isWrite(exchange) && (registerOf(exchange) == 3016 || registerOf(exchange) == 3017);
            const auto exception = exceptionOf(exchange);
            if (unevaluated || isAnswered(exchange) || (exception == 2 && !isWrite(exchange))) {
                continue;
            }
            expected.push_back(exception ? "MODBUS-Fehler|stop|ok|" : crcDialog);
        }
        std::vector<std::string> shown;
        std::ranges::copy_if(test_.desktop.boxes, std::back_inserter(shown),
                             [](const std::string& box) { return box.starts_with(modbusError); });
        expect(std::ranges::equal(
                   shown, expected,
                   [](const std::string& box, const std::string& begin) { return box.starts_with(begin); }),
               std::to_string(shown.size()) + " message boxes for " + std::to_string(expected.size()) +
                   " failures");
        boxes_ = test_.desktop.takeBoxes();
        return exchanges;
    }

    void judge(const Exchange& exchange) {
        if (exchange.clean) {
            expect(exchange.received == exchange.sent && (isAnswered(exchange) || exceptionOf(exchange)),
                   "no answer on a clean line");
        }
        if (isWrite(exchange)) {
            return;
        }
        if (dataOf(exchange) && exchange.received != exchange.genuine) {
            const bool earlier = std::ranges::find(earlier_, exchange.received) != earlier_.end();
            ++(earlier ? figures_.strays : figures_.accidents);
        }
        earlier_.push_back(exchange.genuine);
        if (earlier_.size() > 20) {
            earlier_.pop_front();
        }
    }

    void watch() {
        auto& window = test_.open<frmMbMonitor>();
        const int channels = 5 + static_cast<int>(line_.draw(60));
        if (line_.draw(20) == 0) {
            test_.desktop.answers.assign(line_.draw(40), MessageAnswer::Ok);
            test_.desktop.answers.push_back(MessageAnswer::Cancel);
        }
        test_.desktop.onEvents = [&] {
            checkChannel(window);
            if (test_.desktop.eventRounds >= channels) {
                window.cmdStop.click();
            }
        };
        window.cmdRunMonitor.click();
        test_.desktop.onEvents = nullptr;
        expect(window.cmdRunMonitor.enabled, "the monitor cannot be started again");
        window.cmdCLR.click();
        checkCommand();
    }

    void checkChannel(frmMbMonitor& window) {
        const std::vector<Exchange> exchanges = takeExchanges();
        if (exchanges.empty()) {
            return;  // the pause behind a channel that could not be read
        }
        if (exchanges.size() < 3) {
            expect(false, "a channel without its three reads");
            return;
        }
        if (exchanges.size() > 3) {
            checkIdentification(window, exchanges);
        }
        const Exchange* reads = &exchanges[exchanges.size() - 3];
        checkRow(window, static_cast<int>(registerOf(reads[0]) - 1000) / 4, dataOf(reads[0]),
                 wordOf(reads[1]), wordOf(reads[2]));
    }

    void checkIdentification(const frmMbMonitor& window, const std::vector<Exchange>& exchanges) {
        const auto number = wordOf(exchanges[0]);
        count(number.has_value());
        const bool silent = !number && !exceptionOf(exchanges[0]) && !isAnswered(exchanges[0]);
        expectText(window.lblSwRegNr, number ? std::to_string(*number) + "D" : silent ? "CRC_TIMEOUT" : none);
    }

    void checkRow(frmMbMonitor& window, int slot, const std::optional<Bytes>& value,
                  const std::optional<std::uint16_t>& status, const std::optional<std::uint16_t>& code) {
        count(value.has_value());
        count(status.has_value());
        count(code.has_value());
        const MeasurementChannel channel{.ChannelStatusWord = status.value_or(0xC0)};
        const bool valid = value && channel.rangeState() != RangeState::invalid;
        const auto index = static_cast<std::size_t>(slot);
        expectText(window.lblMesswert[index],
                   valid ? channelValueText(slot, test_.program.DeviceType, singleOf(*value), {}) : none);
        expectText(window.lblRange[index], std::string(rangeCaption(channel.rangeState())));
        expectText(window.lblEinheit[index], status ? std::string(monitorText(channel.unitCode())) : "");
        expectText(window.lblMessName[index], code ? std::string(descriptionText(*code)) : none);
        const auto color = status ? alarmColor(channel.alarmState()) : std::optional(colors::grey);
        expect(!color || window.LED[index].fillColor.get() == *color, "the indicator has another colour");
    }

    void checkCommand() {
        const std::vector<Exchange> exchanges = takeExchanges();
        const bool success = exchanges.size() == 1 && isAnswered(exchanges[0]);
        expect(!boxes_.empty() && boxes_.back().starts_with(success ? "Hinweis|" : "Fehler|"),
               "the command's result is not the device's");
    }

    void edit() {
        auto& editor = test_.open<frmMbParameter>();
        checkRead(editor);
        // What failed to be read must not move the device to another address or bus.
        editor.txtAdresse.text = std::to_string(test_.program.DeviceAddress);
        editor.optBaud9600.value = true;
        editor.optEven.value = true;
        for (TextBox* box : {&editor.txtRWarnung, &editor.txtRAlarm, &editor.txtTein, &editor.txtTab}) {
            box->text = std::to_string(line_.draw(120));
        }
        editor.chkMemory.value = line_.draw(2) == 0;
        editor.cmdWritePara.click();
        checkWrite();
        editor.cmdReadPara.click();
        checkRead(editor);
    }

    void checkRead(frmMbParameter& editor) {
        for (const Exchange& exchange : takeExchanges()) {
            for (const ParameterRow* row : rowsInOrder(readOrder(), test_.program.DeviceType)) {
                if (vek::registerOf(*row, test_.program.DeviceType) == registerOf(exchange)) {
                    checkParameter(editor, *row, exchange);
                }
            }
        }
    }

    void checkParameter(frmMbParameter& editor, const ParameterRow& row, const Exchange& exchange) {
        const auto value = wordOf(exchange);
        const auto exception = exceptionOf(exchange);
        count(value.has_value());
        const std::string text = value       ? std::to_string(*value)
                                 : exception ? "EXCEP_" + std::to_string(*exception)
                                             : "CRC_TIMEOUT";
        if (const auto* number = std::get_if<NumberParameter>(&row.kind)) {
            expect(
                (editor.*number->box).text.get() == text,
                (editor.*number->box).name + " shows " + (editor.*number->box).text.get() + ", not " + text);
        } else if (value || text != missingRegister) {
            // A failed read counts as 0; the user has been told so.
            figures_.zeros += value ? 0U : 1U;
            checkCode(editor, row, value.value_or(0));
        }
    }

    void checkCode(frmMbParameter& editor, const ParameterRow& row, unsigned code) {
        bool good = true;
        if (const auto* flag = std::get_if<FlagParameter>(&row.kind)) {
            good = code > 1 || (editor.*flag->box).value.get() == (code == 1);
        } else if (const auto* choice = std::get_if<ChoiceParameter>(&row.kind)) {
            for (const ChoiceParameter::Option& option : choice->options) {
                good = good && (option.code != code || (editor.*option.button).value.get());
            }
        } else if (const auto* mask = std::get_if<AlarmMaskParameter>(&row.kind)) {
            for (unsigned bit = 1; bit <= AlarmBoxes::count; ++bit) {
                good = good && (editor.*mask->boxes)[bit].value.get() == ((code >> bit & 1U) != 0);
            }
        }
        expect(good,
               "the parameter in " + std::string(row.section) + " does not show " + std::to_string(code));
    }

    void checkWrite() {
        std::size_t failures = 0;
        for (const Exchange& exchange : takeExchanges()) {
            if (!isWrite(exchange)) {
                continue;
            }
            count(isAnswered(exchange));
            failures += isAnswered(exchange) ? 0U : 1U;
            const auto number = static_cast<std::uint16_t>(registerOf(exchange));
            expect(!isAnswered(exchange) ||
                       line_.device().parameters().read(number) == wordOf(exchange.request, 7),
                   "register " + std::to_string(number) +
                       " counts as written, but the device has another value");
        }
        const auto reported = static_cast<std::size_t>(std::ranges::count_if(
            boxes_, [](const std::string& box) { return box.starts_with(writeError); }));
        expect(reported >= failures, "a write that failed was not reported");
    }

    std::vector<std::string> boxes_;
    std::deque<Bytes> earlier_;
};

}  // namespace

void runModbusEpisode(std::uint32_t seed, Figures& figures) {
    ModbusEpisode(seed, figures).run();
}

}  // namespace vek
