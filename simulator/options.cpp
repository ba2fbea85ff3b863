#include "simulator/options.h"

#include <algorithm>
#include <array>
#include <sstream>

#include "simulator/numbers.h"

namespace vek::sim {
namespace {

constexpr std::size_t longestName = 20;

bool setName(ProgramOptions& options, std::string_view text) {
    options.line.device.name = text;
    return !text.empty() && text.size() <= longestName;
}

bool setBaud(ProgramOptions& options, std::string_view text) {
    return readNumber(text, 1, 115200, options.line.device.baudRate) &&
           baudCode(options.line.device.baudRate).has_value();
}

bool setParity(ProgramOptions& options, std::string_view text) {
    const auto* found = std::ranges::find(parityNames, text);
    options.line.device.parity = static_cast<std::uint16_t>(found - parityNames.begin());
    return found != parityNames.end();
}

bool setState(ProgramOptions& options, std::string_view text) {
    struct Row {
        std::string_view name;
        bool Conditions::*flag;
    };
    constexpr std::array<Row, 4> rows{{{"device-fault", &Conditions::deviceFault},
                                       {"warning", &Conditions::warning},
                                       {"earth-warning", &Conditions::earthWarning},
                                       {"external-test", &Conditions::externalTest}}};
    const auto* found = std::ranges::find(rows, text, &Row::name);
    if (found == rows.end()) {
        return false;
    }
    options.line.device.conditions.*(found->flag) = true;
    return true;
}

bool setTurnaround(ProgramOptions& options, std::string_view text) {
    int milliseconds = 0;
    const bool good = readNumber(text, 0, 60000, milliseconds);
    options.line.turnaround = std::chrono::milliseconds(milliseconds);
    return good;
}

bool setDuration(ProgramOptions& options, std::string_view text) {
    double seconds = 0;
    const bool good = readNumber(text, 0.0, 1e8, seconds);
    options.duration = fromSeconds(seconds);
    return good;
}

// An option that takes a value when `value` is not empty. The setter returns whether the value was good.
struct OptionRow {
    std::string_view name;
    std::string_view value;
    std::string_view help;
    bool (*set)(ProgramOptions&, std::string_view);
};

constexpr std::array<OptionRow, 17> rows{{
    {"--type", "N", "device type, one of those below (default 1)",
     [](ProgramOptions& o, std::string_view t) {
         return readNumber(t, 1, static_cast<int>(highestDeviceType), o.line.device.type);
     }},
    {"--name", "TEXT", "device name of up to 20 characters (default: the article name of the type)", setName},
    {"--address", "N", "bus address 0..247 (default 3; written over the bus, only 0 and 3..90 are taken)",
     [](ProgramOptions& o, std::string_view t) {
         return readNumber<std::uint16_t>(t, 0, 247, o.line.device.address);
     }},
    {"--baud", "N", "1200, 2400, 4800, 9600 (default), 19200, 38400, 57600 or 115200 bit/s", setBaud},
    {"--kdl", "", "starts on the KDL bus at 9600 bit/s, whatever --baud and --parity say",
     [](ProgramOptions& o, std::string_view) { return o.line.device.kdl = true; }},
    {"--parity", "P", "none, odd or even (default); it only decides how long a character takes", setParity},
    {"--pace", "", "bytes take their time, and a master at another baud rate gets no answer",
     [](ProgramOptions& o, std::string_view) { return o.line.pace = true; }},
    {"--turnaround", "MS",
     "time from the end of a request to its reply in ms (default 5; paced at least 3.5 characters)",
     setTurnaround},
    {"--seed", "N", "seed of everything that varies (default 1); a run with the same seed repeats",
     [](ProgramOptions& o, std::string_view t) {
         return readNumber<std::uint32_t>(t, 0, 0xFFFFFFFF, o.line.device.seed);
     }},
    {"--speed", "F", "how much faster than the clock the installation lives, 0.01..10000 (default 1)",
     [](ProgramOptions& o, std::string_view t) { return readNumber(t, 0.01, 10000.0, o.line.device.speed); }},
    {"--state", "S", "device-fault, warning, earth-warning or external-test; may be repeated", setState},
    {"--battery", "SCENE", "what a type 9 device watches, see below; may be repeated",
     [](ProgramOptions& o, std::string_view t) { return o.line.device.battery.add(t); }},
    {"--fault", "F", "something that goes wrong on the line, see below; may be repeated", nullptr},
    {"--link", "PATH", "symbolic link to the pseudo-terminal; removed at the end",
     [](ProgramOptions& o, std::string_view t) {
         o.link = t;
         return !t.empty();
     }},
    {"--duration", "S", "end after so many seconds (default: run until interrupted)", setDuration},
    {"--verbose", "", "show every frame on the standard error output",
     [](ProgramOptions& o, std::string_view) { return o.verbose = true; }},
    {"--help", "", "show this text", [](ProgramOptions& o, std::string_view) { return o.help = true; }},
}};

// Returns what is wrong, empty if nothing is.
std::string applyOption(ProgramOptions& options, const OptionRow& row, std::string_view value) {
    if (row.set != nullptr) {
        if (row.set(options, value)) {
            return "";
        }
        return std::string("bad value \"")
            .append(value)
            .append("\" for ")
            .append(row.name)
            .append(": ")
            .append(row.help);
    }
    const auto fault = parseFault(value);
    if (const auto* problem = std::get_if<std::string>(&fault)) {
        return *problem;
    }
    options.line.faults.push_back(std::get<LineFault>(fault));
    return "";
}

}  // namespace

std::variant<ProgramOptions, std::string> parseOptions(std::span<const std::string_view> arguments) {
    ProgramOptions options;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const auto* row = std::ranges::find(rows, arguments[i], &OptionRow::name);
        if (row == rows.end()) {
            return std::string("unknown option \"").append(arguments[i]).append("\"");
        }
        std::string_view value;
        if (!row->value.empty()) {
            if (++i == arguments.size()) {
                return std::string(row->name) + " needs a value: " + std::string(row->help);
            }
            value = arguments[i];
        }
        if (std::string problem = applyOption(options, *row, value); !problem.empty()) {
            return problem;
        }
    }
    return options;
}

std::string helpText() {
    std::ostringstream text;
    text
        << "vekXX731_Simulator - a simulated insulation monitoring device on a pseudo-terminal\n\n"
           "Usage: vekXX731_Simulator [OPTION]...\n\n"
           "The device answers Modbus RTU requests; with baud code 0 in its parameters (register 3016, "
           "--kdl)\n"
           "it answers on the KDL bus instead. The installation it watches goes round in a minute: healthy,\n"
           "a fault on L1/+ with pre-alarm and alarm, healthy, the same on L2/-.\n\nOptions:\n";
    for (const OptionRow& row : rows) {
        std::string form = std::string(row.name) + " " + std::string(row.value);
        form.resize(18, ' ');
        text << "  " << form << row.help << '\n';
    }
    text << "\nFaults (KIND[=VALUE][,register=R][,command=C][,every=N][,from=M][,times=K]):\n"
         << faultHelp()
         << "With register=R only Modbus requests for that register count, with command=C only KDL requests\n"
            "that begin with C after their colon (command=ALM?). Of the requests that count, the fault\n"
            "strikes from the Mth on (from=M), each one whose number divides by N (every=N), at most K\n"
            "times (times=K).\n"
            "\nBattery scenes (--battery; several follow each other, each for 20 s at --speed 1):\n";
    for (const BatteryScene& scene : batteryScenes()) {
        text << "  " << scene.name << ": " << scene.meaning << '\n';
    }
    text << "  all: all of them in this order\n"
            "\nTypes:\n";
    for (const DeviceType& type : deviceTypes()) {
        text << "  " << type.number << (type.number < 10 ? "   " : "  ") << type.articleName << '\n';
    }
    text << "\nExamples:\n"
            "  vekXX731_Simulator --link /tmp/com1\n"
            "  vekXX731_Simulator --type 9 --name vekQJK731-K7-2 --address 7 --baud 19200 --pace\n"
            "  vekXX731_Simulator --speed 5 --fault crc,every=10 --fault late=1500,from=100,times=1\n"
            "  vekXX731_Simulator --fault lacks=3022 --fault exception=4,register=1024 --state warning\n"
            "  vekXX731_Simulator --type 9 --battery normal --battery cross-fault-plus\n"
            "  vekXX731_Simulator --kdl --fault unended,command=IDNV?,times=1\n";
    return text.str();
}

}  // namespace vek::sim
