#pragma once

#include <array>
#include <bit>
#include <cstdio>

#include "campaign/witness.h"

namespace vek {

/// The row of texts.txt for a code or a key, nothing where there is none. In its texts "_" stands for a
/// blank.
inline std::optional<std::vector<std::string>> textsFor(const std::string& kind, const std::string& key) {
    static const Table table = readTable("texts.txt");
    const auto found =
        std::ranges::find_if(table, [&](const auto& row) { return row[0] == kind && row[1] == key; });
    std::vector<std::string> texts = found == table.end() ? std::vector<std::string>() : *found;
    for (std::string& text : texts) {
        std::ranges::replace(text, '_', ' ');
        text = text == "." ? "" : text;
    }
    return texts.empty() ? std::nullopt : std::optional(texts);
}

class MonitorWitness : public Witness {
  public:
    using Witness::Witness;

  protected:
    int type() const { return test_.program.DeviceType; }

    /// Percent of the bar, and the kOhm that both sides make up in parallel.
    void showFaultPosition(std::optional<double> percent, double kiloOhms) {
        constexpr std::array<double, 11> limits = {0,    4000, 4000, 1000, 1000, 5000,
                                                   4000, 4000, 1000, 0,    2000};
        const double limit = limits.at(test_.program.DeviceType);
        const double p = std::clamp(percent.value_or(0), -100.0, 100.0);
        show("Slider1", fixed(p, 0));
        show("lblFehlerVorzeichen", p > 15 ? "+" : p < -15 ? "-" : "~");
        for (const auto& [label, share] : {std::pair{"lblReNeg", 100 - p}, std::pair{"lblRePos", 100 + p}}) {
            const double side = share == 0 ? limit : std::nearbyint(200 * kiloOhms / share);
            const std::string text = side >= limit ? ">" + fixed(limit, 0) : fixed(side, 0);
            show(label, percent && limit > 0 ? text : "---");
        }
    }

    void showCommand(const Answer& answer) { expectBox(answer.data == "" ? "Hinweis|info" : "Fehler|stop"); }
};

class ModbusMonitor final : public MonitorWitness {
  public:
    using MonitorWitness::MonitorWitness;

    /// Each channel begins with its value.
    bool startsAnew(const Bytes& frame) const override {
        return wordAt(frame, 2) < 1036 && frame[3] % 4 == 0;
    }

  private:
    void follow(const std::vector<Exchange>& exchanges) override {
        for (const Exchange& exchange : exchanges) {
            const unsigned number = wordAt(exchange.request, 2);
            const Answer answer = modbusAnswer(exchange);
            expectBox(answer.box);
            if (number >= 9820) {
                showIdentification(number, answer);
            } else if (number >= 8000) {
                showCommand(answer);
            } else {
                judge(answer.data.has_value());
                answered_ = answer.data || (number % 4 != 0 && answered_);
                showChannel((number - 1000) / 4, number % 4, answer.data);
            }
        }
    }

    void showIdentification(unsigned number, const Answer& answer) {
        const unsigned value = answer.data ? wordAt(*answer.data, 0) : 0;
        const std::string missing = answer.token == "CRC_TIMEOUT" ? answer.token : "---";
        if (number == 9820) {
            show("lblSwRegNr", answer.data ? std::to_string(value) + "D" : missing);
        } else if (number == 9821 || number == 9825) {
            show(number == 9821 ? "lblSwVer" : "lblSwMb",
                 answer.data ? "V" + fixed(value / 100.0, 2) : missing);
        } else {
            // Year, month and day; the first that is missing stands for all.
            const bool failed = number > 9822 && (date_ == "---" || date_ == "CRC_TIMEOUT");
            const std::string behind = number > 9822 ? "." + date_ : "";
            date_ = failed ? date_ : answer.data ? std::to_string(value) + behind : missing;
            number == 9824 ? show("lblSwDate", date_) : void();
        }
    }

    void showChannel(unsigned slot, unsigned part, const std::optional<Bytes>& data) {
        const std::string n = "_" + std::to_string(slot);
        if (part == 0) {
            showValue(slot, data);
        } else if (part == 2) {
            showStatus(slot, data ? std::optional(wordAt(*data, 0)) : std::nullopt);
        } else {
            // A late reply may name a text that no device has sent for its channel.
            const auto texts = data ? textsFor("text", std::to_string(wordAt(*data, 0))) : std::nullopt;
            data && !texts ? forget("lblMessName" + n) : show("lblMessName" + n, data ? (*texts)[2] : "---");
            // A cycle that "Stop" cut short at a silent channel shows nothing more.
            if (slot == 8 && (answered_ || test_.program.MonitorRunning)) {
                type() == 9 ? showString() : showFaultPosition(number_[6], number_[0].value_or(0));
            }
        }
    }

    /// Ohm as kOhm, F as µF, percent without their fraction; no value for a resistance of 0.
    void showValue(unsigned slot, const std::optional<Bytes>& data) {
        const auto value =
            data ? static_cast<double>(std::bit_cast<float>(wordAt(*data, 0) << 16U | wordAt(*data, 2)))
                 : std::nan("");
        const bool ohm = slot == 0 || (type() != 8 && (slot == 1 || slot == 7));
        const bool tenths = !ohm && slot % 3 != 0 && slot != 8 && (type() == 8 || (type() == 9));
        const int decimals = slot == 3 ? 3 : tenths ? 1 : 0;
        const double number = ohm         ? value / 1000
                              : slot == 3 ? value * 1e6
                              : slot == 6 ? std::trunc(value)
                                          : value;
        std::array<char, 64> plain{};
        std::snprintf(plain.data(), plain.size(), "%.7g", number);
        const std::string text = slot == 8 ? plain.data() : fixed(number, decimals);
        number_.at(slot) =
            std::isfinite(value) && !(ohm && value == 0) ? std::optional(numberOf(text)) : std::nullopt;
        show("lblMesswert_" + std::to_string(slot), number_[slot] ? text : "---");
    }

    /// Without its status a channel shows no value.
    void showStatus(unsigned slot, std::optional<unsigned> status) {
        const std::string n = "_" + std::to_string(slot);
        const unsigned word = status.value_or(0xC0);
        const unsigned range = word >> 6U & 3U;
        const auto unit = textsFor("unit", std::to_string(word & 31U));
        const char alarm = status ? "GYM?CR??"[word >> 8U & 7U] : '-';
        show("lblRange" + n, std::string(1, " <>-"[range]));
        show("lblEinheit" + n, !status ? "" : unit ? unit->at(2) : " ");
        if (alarm != '?' && !(type() == 9 && slot == 8)) {
            show("LED" + n, std::string(1, alarm));
        }
        if (status) {
            show("LED_TEST_INTERN", word >> 14U == 1 ? "R" : "G");
            show("LED_TEST_EXTERN", word >> 14U == 2 ? "R" : "G");
        }
        if (range == 3) {
            show("lblMesswert" + n, "---");
            number_.at(slot).reset();
        } else if (type() == 9 && slot == 3 && range == 2) {
            show("lblMesswert" + n, "1,600");
            show("LED" + n, "R");
        }
    }

    /// The lamps of the string and of its positive pole tell its state; a fault has a place only beside a
    /// number for the resistance, and only in two of them.
    void showString() {
        const std::string lamps = shown("LED_2") + shown("LED_4");
        const auto [r, u, plus, minus] = std::tuple(number_[0], number_[2], number_[4], number_[5]);
        const bool foreign =
            r && u && plus && minus && *r < 100 && std::abs(*plus) > *u && std::abs(*minus) > *r;
        const std::map<std::string, const char*> states = {
            {"RG", foreign ? "unrelevanter Crossfault" : "CrossFault"},
            {"GR", "Strang offen"},
            {"RR", "Spannungsfehler"},
            {"GG", "Batteriespannung OK"}};
        show("Label28", states.contains(lamps) ? states.at(lamps) : "---");
        for (const char* label : {"Label33", "Label34", "Label35"}) {
            forget(label);
            !r || (lamps != "RG" && lamps != "GG") ? show(label, "---") : void();
        }
    }

    std::array<std::optional<double>, 9> number_;  // as the slots show them
    bool answered_ = false;                        // any part of the channel
    std::string date_;
};

class KdlMonitor final : public MonitorWitness {
  public:
    using MonitorWitness::MonitorWitness;

    bool startsAnew(const Bytes& frame) const override { return kdlCommand(frame) == ":ALMN?"; }

  private:
    void follow(const std::vector<Exchange>& exchanges) override {
        std::vector<Bytes> asked;
        std::vector<Bytes> replies;
        for (const Exchange& exchange : exchanges) {
            const Answer answer = kdlAnswer(exchange);
            judge(answer.data.has_value());
            asked.push_back(kdlCommand(exchange.request));
            replies.push_back(answer.data.value_or(answer.token));
        }
        if (asked.empty()) {
            return;
        }
        if (asked[0] == ":IDND?") {
            showIdentification(replies[0], replies.at(1));
        } else if (asked[0] == ":ALMN?") {
            showRow(asked, replies);
        } else {
            showCommand(kdlAnswer(exchanges[0]));
        }
    }

    /// A spoiled reply is shown, too, but not judged.
    void showIdentification(const Bytes& data, const Bytes& version) {
        if (std::ranges::all_of(data, [](char c) { return c >= ' ' && c <= '~'; })) {
            show("lblSwRegNr", data);
        }
        if (const std::size_t mark = version.find("Sw "); mark != Bytes::npos) {
            show("lblSwVer", fixed(numberOf(version.substr(mark + 3)) / 100, 2));
        }
    }

    /// Whether the list behind this count is asked for.
    static bool lists(const Bytes& count) { return count.size() > 2 && numberOf(count.substr(2)) > 0; }

    /// A row is an alarm, or when there is none the operating value: the replies say what is asked for next.
    void showRow(const std::vector<Bytes>& asked, const std::vector<Bytes>& replies) {
        const std::string place = " " + std::to_string(row_ + 1);
        const bool test = replies[0].find("n=/") != Bytes::npos;
        const bool plain = !test && replies[0].find("n= ") != Bytes::npos;
        const bool internal = replies[0].find("TI") != Bytes::npos;
        std::vector<Bytes> due = {":ALMN?"};
        if (plain || (test && internal)) {
            show("LED_TEST_INTERN", test ? "R" : "W");
        }
        if (plain || (test && !internal && replies[0].find("TE") != Bytes::npos)) {
            show("LED_TEST_EXTERN", test ? "R" : "W");
        }
        if (test || (plain && lists(replies[0]))) {
            due.push_back(":ALM?" + place);
        }
        const bool alarm = due.size() == 2 && replies.size() >= 2 && replies[1] != "no 0";
        if (!alarm) {
            due.emplace_back(":BTRN?");
            if (replies.size() >= due.size() && lists(replies[due.size() - 1])) {
                due.push_back(":BTR?" + place);
            }
        }
        line_.expect(asked == due, "the row's last request was " + asked.back() + ", not " + due.back());
        showReply(replies.back(), alarm);
    }

    void showReply(const Bytes& reply, bool alarm) {
        if (reply != "stop 0") {
            showFields("_" + std::to_string(row_), reply, alarm);
        }
        row_ = reply == "stop 0" ? 0 : (row_ + 1) % 15;
        if (row_ == 0) {
            const std::string position = shown("lblMesswert_8");
            showFaultPosition(
                position.empty() || position == "-" ? std::nullopt : std::optional(numberOf(position)),
                numberOf(shown("lblMesswert_0")));
        }
    }

    /// A reply is a text, or a key and a number; one that is spoiled is shown, too, but not judged.
    void showFields(const std::string& n, const Bytes& reply, bool alarm) {
        std::string whole = reply;
        std::ranges::replace(whole, ' ', '_');
        const std::string key = reply.substr(0, reply.find_first_of(" <>-"));
        const bool numbered = reply.find_first_not_of("0123456789<>- %", key.size()) == Bytes::npos;
        const auto fixedTexts = textsFor("kdl", whole);
        const auto texts = fixedTexts || !numbered ? fixedTexts : textsFor("kdl", key);
        for (const char* label : {"lblMesswert", "lblRange", "lblEinheit", "lblMessName"}) {
            texts ? void() : forget(label + n);
        }
        show("LED" + n, alarm || reply == "peak 0" ? "R" : "G");
        if (!texts) {
            return;
        }
        std::string digits;
        std::ranges::copy_if(reply, std::back_inserter(digits), [](char c) { return c >= '0' && c <= '9'; });
        digits = key.ends_with("/dV") ? fixed(numberOf(digits) / 10, 1) : digits;
        digits = reply.starts_with("FL-") && digits.size() < 9 ? fixed(-numberOf(digits), 0) : digits;
        digits = reply == "no 0" || reply == "35FDE 129" ? "-" : digits;
        const bool above = reply == "peak 0" || reply.find('>') != Bytes::npos;
        show("lblMessName" + n, texts->at(3));
        show("lblRange" + n, above ? ">" : reply.find('<') != Bytes::npos ? "<" : "");
        texts->at(2) == "=" ? void() : show("lblEinheit" + n, texts->at(2));
        reply == "peak 0" ? void() : show("lblMesswert" + n, digits);
    }

    int row_ = 0;
};

}  // namespace vek
