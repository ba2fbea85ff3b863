#include <gtest/gtest.h>

#include <bit>

#include "monitor/frmMessReg.h"
#include "monitor/frmParaReg.h"
#include "support/hexbytes.h"
#include "support/simulatedpeer.h"
#include "support/testprogram.h"

namespace vek {
namespace {

using Texts = std::vector<std::string>;

const Texts badChannel = {"Fehler|stop|ok|Keine gültige Registeradresse vorhanden."};
const Texts badRegister = {"Fehler|stop|ok|Ungültiges Parameter-Register."};
const Texts written = {"Hinweis|info|ok|Parameter erfolgreich geschrieben!"};

std::string modbusError(const std::string& text) {
    return "MODBUS-Fehler|stop|ok|" + text;
}

sim::LineOptions withFault(sim::FaultKind kind, double amount, std::uint16_t reg) {
    sim::LineOptions options;
    options.faults = {{.kind = kind, .amount = amount, .reg = reg}};
    return options;
}

/// One of the two windows on a simulated device, or on bytes that a test makes up.
template <class Tool>
class ToolRig {
  public:
    explicit ToolRig(const sim::LineOptions& options = {}) : peer(test.serial, test.clock, options) {
        test.configure();
    }

    /// Has the device answer every request with these bytes and their CRC.
    void answer(const std::string& hex) {
        test.serial.peer = [this, reply = fromHex(hex)](std::string_view) {
            test.serial.reply(reply + ComputeCrc(reply));
        };
    }

    TestProgram test{NumberLocale{.decimalPoint = ",", .groupSeparator = "."}};
    SimulatedPeer peer;
    LastWindow& mainWindow = test.open<LastWindow>();
    Tool& tool = test.open<Tool>();

    Texts boxes() { return test.desktop.takeBoxes(); }
    Bytes lastRequest() const { return test.serial.written.back(); }
};

class ChannelTool : public ToolRig<frmMessReg> {
  public:
    using ToolRig::ToolRig;

    void read(const std::string& reg) {
        tool.txtMessRegNr.text = reg;
        tool.cmdMessRegRead.click();
    }

    Texts shown() {
        return {tool.lblMessVal.caption,          tool.lblMessTest.caption,    tool.lblTestTxt.caption,
                tool.lblMessAlarm.caption,        tool.lblAlarmTxt.caption,    tool.lblMessRange.caption,
                tool.lblRangeTxt.caption,         tool.lblMessEinheit.caption, tool.lblEinheitTxt.caption,
                tool.lblMessBeschreibung.caption, tool.lblBezTxt.caption};
    }
};

TEST(MeasurementRegisters, ShowEveryFieldAsNumberAndText) {
    struct Row {
        sim::ChannelPin pin;
        Texts shown;
    };
    const Row rows[] = {
        {{100000.0F, 0x4100, 82},
         {"100000", "16384", "Test intern", "256", "Vorwarnung", "0", "gültig", "0", " ", "82",
          "Kapazität Ce"}},
        {{1.5e-6F, 0xC5C2, 84},
         {"0,0000015", "49152", "x", "1280", "Alarm", "192", "ungültig", "2", "Ohm", "84", "Überlast"}},
        {{-1234.5F, 0xBBA8, 65535},
         {"-1234,5", "32768", "Test extern", "768", "x", "128", "größer", "8", "µF", "65535", "-"}},
        {{std::bit_cast<float>(0x7FC00000U), 0x0000, 0},
         {"---", "0", "-", "0", "-", "0", "gültig", "0", " ", "0", " "}},
    };
    ChannelTool rig;
    for (const Row& row : rows) {
        rig.peer.line.device().pin(2, row.pin);
        rig.read("1008");
        EXPECT_EQ(rig.shown(), row.shown) << row.shown[0];
    }
    const Bytes expected[] = {fromHex("03 03 03F0 0002"), fromHex("03 03 03F2 0001"),
                              fromHex("03 03 03F3 0001")};
    for (std::size_t index = 0; index < std::size(expected); ++index) {
        EXPECT_EQ(rig.test.serial.written[index].substr(0, 6), expected[index]);
    }
    EXPECT_FALSE(rig.test.serial.isOpen());
    EXPECT_TRUE(rig.boxes().empty());
}

TEST(MeasurementRegisters, TakeOnlyRegistersWhereAChannelCanStart) {
    ChannelTool rig;
    for (const char* text : {"", "  ", "abc", "1e3", "-1", "3.5", "4.5", "999", "999.4", "32764.6", "32765",
                             "65536", "66536", "999999999999"}) {
        rig.read(text);
        EXPECT_EQ(rig.boxes(), badChannel) << text;
    }
    EXPECT_TRUE(rig.test.serial.openings.empty());
    const std::pair<const char*, const char*> good[] = {
        {"1000", "03 03 03EB 0001"},   {" 1004 Re", "03 03 03EF 0001"}, {"999.5", "03 03 03EB 0001"},
        {"1000.5", "03 03 03EB 0001"}, {"1003.5", "03 03 03EF 0001"},   {"32764", "03 03 7FFF 0001"},
    };
    for (const auto& [text, lastRead] : good) {
        rig.read(text);
        EXPECT_TRUE(rig.boxes().empty()) << text;
        EXPECT_EQ(rig.lastRequest().substr(0, 6), fromHex(lastRead)) << text;
    }
}

TEST(MeasurementRegisters, WhatCannotBeReadShowsNothingOld) {
    const Texts noValue = {"---", "0", "-", "0", "-", "0", "gültig", "4", "V", "76", "Spannung"};
    const Texts noStatus = {"100", "---", "---", "---", "---", "---", "---", "---", "---", "76", "Spannung"};
    const Texts noCode = {"100", "0", "-", "0", "-", "0", "gültig", "4", "V", "---", "---"};
    struct Row {
        sim::LineOptions line;
        Texts boxes;
        Texts shown;
    };
    const Row rows[] = {
        {withFault(sim::FaultKind::Silence, 0, 1008), {crcDialog}, noValue},
        {withFault(sim::FaultKind::Cut, 6, 1010), {crcDialog}, noStatus},
        {withFault(sim::FaultKind::Exception, 4, 1011), {modbusError("Interner Fehler")}, noCode},
        {withFault(sim::FaultKind::Exception, 2, 1011), {}, noCode},
    };
    for (const Row& row : rows) {
        ChannelTool rig(row.line);
        rig.peer.line.device().pin(2, {100.0F, 0x0004, 76});
        rig.read("1008");
        EXPECT_EQ(rig.shown(), row.shown);
        EXPECT_EQ(rig.boxes(), row.boxes);
        EXPECT_FALSE(rig.test.serial.isOpen());
    }
    // Frames of another length than the request's.
    ChannelTool rig;
    for (const char* reply : {"03 03 06 0001 0002 0003", "03 03 03 41 42 43"}) {
        rig.answer(reply);
        rig.read("1000");
        EXPECT_EQ(rig.shown(), Texts(11, "---")) << reply;
    }
}

class RegisterTool : public ToolRig<frmParaReg> {
  public:
    using ToolRig::ToolRig;

    void read(const std::string& reg, const std::string& count) {
        tool.txtParaReg.text = reg;
        tool.cmbRegAnz.text = count;
        tool.cmdRead.click();
    }

    void write(const std::string& reg, const std::string& value, const std::string& count = "1") {
        tool.txtParaReg.text = reg;
        tool.cmbRegAnz.text = count;
        tool.txtRegVal.text = value;
        tool.cmdWrite.click();
    }

    /// The rows up to the last that shows something.
    Texts rows() {
        Texts rows;
        for (std::size_t index = 0; index < frmParaReg::rowCount; ++index) {
            const std::string row = tool.lblHexVal[index].caption.get() + " " +
                                    tool.lblDezVal[index].caption.get() + " " +
                                    tool.lblChr[index].caption.get();
            if (row != "  ") {
                rows.resize(index);
                rows.push_back(row);
            }
        }
        return rows;
    }
};

TEST(ParameterRegisters, ShowEachRegisterInThreeForms) {
    RegisterTool rig;
    EXPECT_EQ(rig.tool.cmbRegAnz.items.get(), (Texts{"1", "2", "3", "4", "5", "6", "7", "8", "9", "10"}));
    rig.read("9800", "10");
    EXPECT_EQ(rig.rows(), (Texts{"7665 30309 ve", "6B51 27473 kQ", "4237 16951 B7", "3331 13105 31",
                                 "2D4B 11595 -K", "3757 14167 7W", "2D32 11570 -2", "0000 0 \uFFFD\uFFFD",
                                 "0000 0 \uFFFD\uFFFD", "0000 0 \uFFFD\uFFFD"}));
    EXPECT_EQ(rig.lastRequest().substr(0, 6), fromHex("03 03 2648 000A"));
    rig.answer("03 03 06 4142 80FC 0A81");
    rig.read("3001", "3");
    EXPECT_EQ(rig.rows(), (Texts{"4142 16706 AB", "80FC 33020 €ü", "0A81 2689 \uFFFD\uFFFD"}));
    EXPECT_FALSE(rig.test.serial.isOpen());
}

TEST(ParameterRegisters, AWrittenRegisterIsThereAtTheNextRead) {
    RegisterTool rig;
    rig.write("3007", "45");
    EXPECT_EQ(rig.boxes(), written);
    EXPECT_EQ(rig.lastRequest().substr(0, 9), fromHex("03 10 0BBF 0001 02 002D"));
    rig.read("3007", "1");
    EXPECT_EQ(rig.rows(), Texts{"002D 45 \uFFFD-"});
    rig.write("3007", "46");
    EXPECT_TRUE(rig.rows().empty()) << "what was read before the write is no longer true";
}

TEST(ParameterRegisters, RequestsAreCheckedBeforeTheyAreSent) {
    RegisterTool rig;
    const std::pair<const char*, const char*> badReads[] = {
        {"", "1"},       {"10000", "1"},        {"9999.5", "1"}, {"-1", "1"},
        {"65536", "1"},  {"999999999999", "1"}, {"3001", ""},    {"3001", "0"},
        {"3001", "11"},  {"3001", "x"},         {"3001", "-1"},  {"3001", "10.6"},
        {"3001", "0.5"}, {"3001", " "},
    };
    for (const auto& [reg, count] : badReads) {
        rig.tool.lblHexVal[0].caption = "4142";
        rig.read(reg, count);
        EXPECT_EQ(rig.boxes(), badRegister) << reg << ' ' << count;
        EXPECT_TRUE(rig.rows().empty()) << "nothing stale";
    }
    const std::array<const char*, 3> badWrites[] = {
        {"", "1", "1"},          {"10000", "1", "1"},           {"-1", "1", "1"},
        {"3007", "1", ""},       {"3007", "32768", "1"},        {"3007", "65536", "1"},
        {"3007", "-32769", "1"}, {"3007", "999999999999", "1"},
    };
    for (const auto& [reg, value, count] : badWrites) {
        rig.write(reg, value, count);
        EXPECT_EQ(rig.boxes(), badRegister) << reg << ' ' << value;
    }
    EXPECT_TRUE(rig.test.serial.openings.empty());
}

TEST(ParameterRegisters, TypedNumbersAreWholeNumbers) {
    RegisterTool rig;
    const std::array<const char*, 3> reads[] = {
        {"9999", "1", "270F 0001"},   {"9998.5", "3.5", "270E 0004"}, {" 3001 x", "4.5", "0BB9 0004"},
        {"1e3", "10.5", "0001 000A"}, {"  ", "1", "0000 0001"},       {"abc", "2", "0000 0002"},
    };
    for (const auto& [reg, count, request] : reads) {
        rig.read(reg, count);
        EXPECT_EQ(rig.lastRequest().substr(0, 6), fromHex("03 03") + fromHex(request)) << reg;
    }
    const std::pair<const char*, const char*> writes[] = {
        {"-1", "FFFF"},  {"-32768", "8000"}, {"32767", "7FFF"}, {"3.5", "0004"},
        {"4.5", "0004"}, {"1e3", "0001"},    {"", "0000"},      {"x", "0000"},
    };
    for (const auto& [value, bytes] : writes) {
        rig.write("3007", value, "99");
        EXPECT_EQ(rig.lastRequest().substr(7, 2), fromHex(bytes)) << value;
    }
}

TEST(ParameterRegisters, TellWhatTheDeviceRefuses) {
    struct Row {
        int code;
        const char* onRead;
        const char* onWrite;
    };
    const Row rows[] = {
        {1, "Unzulässige Funktion", "Unzulässige Funktion"},
        {2, "Unzulässige Datenzugriff", "Unzulässiger Datenzugriff"},
        {3, "Unzulässige Datenwert", "Unzulässiger Datenwert"},
        {4, "Interner Fehler", "Interner Fehler"},
        {5, "Annahmebestätigung (Antwort kommt zeitverzögert",
         "Annahmebestätigung (Antwort kommt zeitverzögert"},
        {6, "Anfrage nicht angenommen", "Anfrage nicht angenommen"},
        {11, "Unbekannter Fehler (Ausnahme-Code 11)", "Unbekannter Fehler (Ausnahme-Code 11)"},
    };
    for (const Row& row : rows) {
        RegisterTool rig(withFault(sim::FaultKind::Exception, row.code, 3007));
        rig.read("3007", "1");
        EXPECT_EQ(rig.boxes(), Texts{modbusError(row.onRead)});
        rig.write("3007", "45");
        EXPECT_EQ(rig.boxes(), Texts{modbusError(row.onWrite)});
        EXPECT_TRUE(rig.rows().empty());
        EXPECT_FALSE(rig.test.serial.isOpen());
    }
}

TEST(ParameterRegisters, ADeviceThatDoesNotAnswer) {
    RegisterTool rig(withFault(sim::FaultKind::Silence, 0, 3007));
    rig.read("3007", "1");
    EXPECT_EQ(rig.boxes(), Texts{crcDialog});
    rig.write("3007", "45");
    EXPECT_EQ(rig.boxes(), Texts{crcDialog}) << "no success";
    EXPECT_FALSE(rig.test.serial.isOpen());

    rig.test.desktop.answers = {MessageAnswer::Cancel};
    EXPECT_TRUE(rig.test.endsProgram([&] { rig.write("3007", "45"); }));
    EXPECT_EQ(rig.boxes(), (Texts{crcDialog, farewell}));
}

TEST(ParameterRegisters, RepliesOfAnotherLength) {
    const std::pair<const char*, Texts> cases[] = {
        {"03 03 02 4142", {"4142 16706 AB"}},
        {"03 03 03 4142 43", {"4142 16706 AB"}},
        {"03 03 08 4142 4344 4546 4748", {"4142 16706 AB", "4344 17220 CD", "4546 17734 EF"}},
        {"03 03 FF 4142 4344", {"4142 16706 AB", "4344 17220 CD"}},
        {"03 03 00", {}},
    };
    for (const auto& [reply, rows] : cases) {
        RegisterTool rig;
        rig.answer(reply);
        rig.read("3001", "3");
        EXPECT_EQ(rig.rows(), rows) << reply;
        EXPECT_TRUE(rig.boxes().empty()) << reply;
        EXPECT_FALSE(rig.test.serial.isOpen());
    }
}

}  // namespace
}  // namespace vek
