#include "monitor/kdlrow.h"

#include <algorithm>
#include <array>

#include "platform/leadingnumber.h"

namespace vek {

namespace {

constexpr std::string_view deviceFault = "35FDE 129";

/// The first row whose mark the reply contains decides; without `text` the field stays as it is.
struct Rule {
    std::string_view mark;
    std::optional<std::string_view> text;
};

constexpr auto unitRules = std::to_array<Rule>({
    {"kO", "kOhm"},
    {"V", "V"},
    {"%", "%"},
    {"nF", "nF"},
    {"uF", "µF"},
    {kdlNoAlarm, ""},
    {"dig", ""},
    {deviceFault, ""},
    {"31ANZ 101", ""},
    {"31AER 102", ""},
});

constexpr auto nameRules = std::to_array<Rule>({
    {"Re", "Isolationswiderstand"},
    {"Uu", "Unterspannung"},
    {"Uo", "Überspannung"},
    {"Ze", "Impedanz"},
    {"FL", "Fehlerort"},
    {"Ce", "Netzableitkapazität"},
    {kdlPeak, "Netzableitkapazität"},
    {"dig", "Aktualisierungszähler"},
    {kdlNoAlarm, ""},
    {deviceFault, "Interner Gerätefehler"},
    {"31ANZ 101", "Anschlußfehler Netz"},
    {"31AER 102", "Anschlußfehler Erde"},
    {"n=/TE", std::nullopt},
    {"n=/TI", std::nullopt},
    {"U", "Spannung"},
});

constexpr std::array<std::string_view, 3> tenthsMarks = {"Uo/dV", "Uu/dV", "U/dV"};
constexpr std::string_view negativeMark = "FL-";

char lower(char character) {
    return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a') : character;
}

bool contains(std::string_view text, std::string_view mark) {
    const auto same = [](char a, char b) { return lower(a) == lower(b); };
    return std::search(text.begin(), text.end(), mark.begin(), mark.end(), same) != text.end();
}

template <class Rules>
std::optional<std::string_view> firstMatch(const Rules& rules, std::string_view reply) {
    const auto found = std::find_if(rules.begin(), rules.end(),
                                    [&](const Rule& rule) { return contains(reply, rule.mark); });
    return found == rules.end() ? std::nullopt : found->text;
}

bool isDigit(char character) {
    return character >= '0' && character <= '9';
}

/// The reply taken apart: its digits, and all the rest.
struct Parts {
    std::string digits;
    std::string text;
};

Parts split(std::string_view reply) {
    Parts parts;
    for (const char character : reply) {
        (isDigit(character) ? parts.digits : parts.text) += character;
    }
    return parts;
}

std::string tenths(const std::string& digits, const NumberLocale& locale) {
    const NumberLocale ungrouped{locale.decimalPoint, ""};
    return ungrouped.fixed(leadingNumber(digits) / 10, 1);
}

/// Digit by digit, so that a number of any length keeps its value.
std::string negated(const std::string& digits) {
    const std::size_t first = digits.find_first_not_of('0');
    return first == std::string::npos ? "0" : "-" + digits.substr(first);
}

std::string rangeSymbol(std::string_view text) {
    for (const char* symbol : {">", "<"}) {
        if (contains(text, symbol)) {
            return symbol;
        }
    }
    return "";
}

std::string valueOf(const Parts& parts, const NumberLocale& locale) {
    const bool inTenths = std::any_of(tenthsMarks.begin(), tenthsMarks.end(),
                                      [&](std::string_view mark) { return contains(parts.text, mark); });
    if (inTenths) {
        return tenths(parts.digits, locale);
    }
    return contains(parts.text, negativeMark) ? negated(parts.digits) : parts.digits;
}

}  // namespace

std::optional<std::string_view> kdlRowUnit(std::string_view reply) {
    return firstMatch(unitRules, reply);
}

std::optional<std::string_view> kdlRowName(std::string_view reply) {
    return firstMatch(nameRules, reply);
}

KdlRowValue kdlRowValue(std::string_view reply, const NumberLocale& locale) {
    if (reply == deviceFault || reply == kdlNoAlarm) {
        return {"-", "", false};
    }
    if (reply == kdlPeak) {
        return {std::nullopt, ">", true};
    }
    const Parts parts = split(reply);
    return {valueOf(parts, locale), rangeSymbol(parts.text), false};
}

double kdlCount(std::string_view reply) {
    return reply.size() <= 2 ? 0 : leadingNumber(reply.substr(2));
}

}  // namespace vek
