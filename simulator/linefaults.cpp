#include "simulator/linefaults.h"

#include <algorithm>
#include <array>
#include <bit>
#include <sstream>

#include "simulator/kdlframe.h"
#include "simulator/numbers.h"

namespace vek::sim {
namespace {

struct KindRow {
    FaultKind kind;
    std::string_view name;
    std::string_view unit;  // empty for a kind without an amount
    double max;
    std::string_view meaning;
};

constexpr std::array<KindRow, 17> kinds{{
    {FaultKind::Silence, "silence", "", 0, "the request is not heard and not answered"},
    {FaultKind::Late, "late", "ms", 3.6e6, "the reply comes late"},
    {FaultKind::Slow, "slow", "ms", 3.6e6, "the bytes of the reply come one by one, so far apart"},
    {FaultKind::WrongCrc, "crc", "", 0, "the reply has a wrong CRC, on the KDL bus a wrong trailer"},
    {FaultKind::Cut, "cut", "bytes", 255, "the reply ends after so many bytes"},
    {FaultKind::Unended, "unended", "", 0, "the reply lacks its CR LF (KDL bus)"},
    {FaultKind::Noise, "noise", "bytes", 255, "so many arbitrary bytes come right before the reply"},
    {FaultKind::Early, "early", "bytes", 255,
     "so many arbitrary bytes come at once, before the reply is due"},
    {FaultKind::Trail, "trail", "bytes", 255, "so many arbitrary bytes come right after the reply"},
    {FaultKind::Flip, "flip", "bits", 255, "so many bits of the reply are turned over"},
    {FaultKind::Double, "double", "", 0, "the reply comes twice"},
    {FaultKind::Foreign, "foreign", "", 0, "the reply names another device"},
    {FaultKind::Echo, "echo", "", 0, "the request comes back before the reply"},
    {FaultKind::Exception, "exception", "code", 255, "the request is refused with this code"},
    {FaultKind::Lacks, "lacks", "register", 65535, "the register is missing (exception 2)"},
    {FaultKind::Refuses, "refuses", "register", 65535, "writing the register is refused (exception 3)"},
    {FaultKind::HangUp, "hangup", "s", 3600,
     "the line goes away at the request and comes back after this time"},
}};

const KindRow& rowOf(FaultKind kind) {
    return *std::ranges::find(kinds, kind, &KindRow::kind);
}

struct Limit {
    std::string_view name;
    // Returns whether the value was good.
    bool (*apply)(LineFault&, std::string_view value);
};

bool limitRegister(LineFault& fault, std::string_view value) {
    fault.reg = parseNumber<std::uint16_t>(value, 0, 65535);
    return fault.reg.has_value();
}

bool limitCommand(LineFault& fault, std::string_view value) {
    fault.command = value;
    return !value.empty();
}

constexpr unsigned manyRequests = 1'000'000'000;

template <unsigned LineFault::*member>
bool limitCount(LineFault& fault, std::string_view value) {
    return readNumber(value, 1U, manyRequests, fault.*member);
}

constexpr std::array<Limit, 5> limits{{{"register", limitRegister},
                                       {"command", limitCommand},
                                       {"every", limitCount<&LineFault::every>},
                                       {"from", limitCount<&LineFault::from>},
                                       {"times", limitCount<&LineFault::times>}}};

struct Setting {
    std::string_view name;
    std::string_view value;
};

Setting splitSetting(std::string_view text) {
    const std::size_t equals = text.find('=');
    return equals == std::string_view::npos ? Setting{text, {}}
                                            : Setting{text.substr(0, equals), text.substr(equals + 1)};
}

std::string quoted(std::string_view text) {
    return std::string(1, '"').append(text).append(1, '"');
}

std::string applyKind(LineFault& fault, const Setting& setting) {
    const auto* row = std::ranges::find(kinds, setting.name, &KindRow::name);
    if (row == kinds.end()) {
        return "unknown fault " + quoted(setting.name);
    }
    fault.kind = row->kind;
    if (row->unit.empty()) {
        return setting.value.empty() ? "" : "fault " + quoted(setting.name) + " takes no value";
    }
    const auto amount = parseNumber(setting.value, 0.0, row->max);
    if (!amount.has_value()) {
        return "fault " + quoted(setting.name) + " needs a value (" + std::string(row->unit) + ")";
    }
    fault.amount = *amount;
    if (fault.kind == FaultKind::Lacks || fault.kind == FaultKind::Refuses) {
        fault.reg = static_cast<std::uint16_t>(*amount);
    }
    return "";
}

std::string applyLimit(LineFault& fault, const Setting& setting) {
    const auto* limit = std::ranges::find(limits, setting.name, &Limit::name);
    if (limit == limits.end()) {
        return "unknown fault condition " + quoted(setting.name);
    }
    return limit->apply(fault, setting.value) ? "" : "bad value for fault condition " + quoted(setting.name);
}

void addEffect(FaultEffects& effects, const LineFault& fault) {
    const auto count = static_cast<std::size_t>(fault.amount);
    switch (fault.kind) {
        case FaultKind::Silence:
            effects.silent = true;
            break;
        case FaultKind::Late:
            effects.delay += fromSeconds(fault.amount / 1000.0);
            break;
        case FaultKind::Slow:
            effects.byteGap = fromSeconds(fault.amount / 1000.0);
            break;
        case FaultKind::WrongCrc:
            effects.wrongChecksum = true;
            break;
        case FaultKind::Cut:
            effects.cutAfter = count;
            break;
        case FaultKind::Unended:
            effects.unended = true;
            break;
        case FaultKind::Early:
            effects.earlyNoise += count;
            break;
        case FaultKind::Noise:
            effects.noise += count;
            break;
        case FaultKind::Trail:
            effects.trailingNoise += count;
            break;
        case FaultKind::Flip:
            effects.flippedBits += count;
            break;
        case FaultKind::Double:
            effects.twice = true;
            break;
        case FaultKind::Foreign:
            effects.foreign = true;
            break;
        case FaultKind::Echo:
            effects.echo = true;
            break;
        case FaultKind::Exception:
            effects.exception = static_cast<std::uint8_t>(count);
            break;
        case FaultKind::Lacks:
            effects.exception = static_cast<std::uint8_t>(ModbusException::IllegalAddress);
            break;
        case FaultKind::Refuses:
            effects.exception = static_cast<std::uint8_t>(ModbusException::IllegalValue);
            break;
        case FaultKind::HangUp:
            effects.hangUp = fromSeconds(fault.amount);
            break;
    }
}

bool fits(const LineFault& fault, const LineRequest& request) {
    if ((fault.reg.has_value() && !request.head.touches(*fault.reg)) ||
        (fault.kind == FaultKind::Refuses && !request.head.isWrite())) {
        return false;
    }
    return fault.command.empty() || request.command.starts_with(":" + fault.command);
}

// What spoiling a reply has to know of its protocol.
struct ReplyForm {
    std::size_t endLength;   // of what follows the checksum
    std::uint8_t wrongBits;  // turned over in the last byte of the checksum, which stays a character
    std::uint8_t codeBits;   // that a character can carry
};

ReplyForm formOf(Protocol protocol) {
    return protocol == Protocol::Kdl ? ReplyForm{kdlLineEnd.size(), 0x01, 0x7F} : ReplyForm{0, 0xFF, 0xFF};
}

}  // namespace

std::variant<LineFault, std::string> parseFault(std::string_view text) {
    LineFault fault;
    auto apply = applyKind;
    while (true) {
        const std::size_t comma = text.find(',');
        if (std::string problem = apply(fault, splitSetting(text.substr(0, comma))); !problem.empty()) {
            return problem;
        }
        if (comma == std::string_view::npos) {
            return fault;
        }
        text.remove_prefix(comma + 1);
        apply = applyLimit;
    }
}

std::string describe(const LineFault& fault) {
    const KindRow& row = rowOf(fault.kind);
    std::ostringstream text;
    text << row.meaning;
    if (!row.unit.empty()) {
        text << " (" << fault.amount << ' ' << row.unit << ')';
    }
    if (fault.reg.has_value() && row.unit != "register") {
        text << ", requests for register " << *fault.reg << " only";
    }
    if (!fault.command.empty()) {
        text << ", requests that begin with :" << fault.command << " only";
    }
    if (fault.every > 1) {
        text << ", one request in " << fault.every;
    }
    if (fault.from > 1) {
        text << ", from request " << fault.from << " on";
    }
    if (fault.times > 0) {
        text << ", at most " << fault.times << " times";
    }
    return text.str();
}

std::string faultHelp() {
    std::ostringstream text;
    for (const KindRow& row : kinds) {
        std::string form(row.name);
        if (!row.unit.empty()) {
            form.append("=").append(row.unit);
        }
        form.resize(std::max<std::size_t>(form.size() + 1, 20), ' ');
        text << "  " << form << row.meaning << '\n';
    }
    return text.str();
}

bool FaultPlan::strikes(Entry& entry, const LineRequest& request) {
    const LineFault& fault = entry.fault;
    if (!fits(fault, request)) {
        return false;
    }
    ++entry.requests;
    const bool exhausted = fault.times > 0 && entry.strikes >= fault.times;
    if (exhausted || entry.requests < fault.from || entry.requests % fault.every != 0) {
        return false;
    }
    ++entry.strikes;
    return true;
}

FaultEffects FaultPlan::strike(const LineRequest& request) {
    FaultEffects effects;
    for (Entry& entry : faults_) {
        if (strikes(entry, request)) {
            addEffect(effects, entry.fault);
        }
    }
    return effects;
}

void FaultPlan::spoil(Bytes& reply, const FaultEffects& effects, Protocol protocol) {
    const ReplyForm form = formOf(protocol);
    const std::size_t checksumEnd = reply.size() - form.endLength;
    if (effects.wrongChecksum) {
        reply[checksumEnd - 1] ^= form.wrongBits;
    }
    const std::size_t length = effects.unended ? checksumEnd : reply.size();
    reply.resize(std::min(length, effects.cutAfter.value_or(length)));
    for (std::size_t count = reply.empty() ? 0 : effects.flippedBits; count > 0; --count) {
        const auto bit = random_() % static_cast<unsigned>(std::popcount(form.codeBits));
        reply[random_() % reply.size()] ^= static_cast<std::uint8_t>(1U << bit);
    }
    if (effects.twice) {
        const Bytes once = reply;
        reply.insert(reply.end(), once.begin(), once.end());
    }
    const Bytes before = noise(effects.noise, protocol);
    reply.insert(reply.begin(), before.begin(), before.end());
    const Bytes after = noise(effects.trailingNoise, protocol);
    reply.insert(reply.end(), after.begin(), after.end());
}

Bytes FaultPlan::noise(std::size_t count, Protocol protocol) {
    Bytes bytes(count);
    const unsigned bits = formOf(protocol).codeBits;
    std::ranges::generate(bytes, [&] { return static_cast<std::uint8_t>(random_() & bits); });
    return bytes;
}

}  // namespace vek::sim
