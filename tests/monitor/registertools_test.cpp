#include <gtest/gtest.h>

#include <bit>

#include "monitor/frmMessReg.h"
#include "monitor/frmParaReg.h"
#include "support/hexbytes.h"
#include "support/shown.h"
#include "support/simulatedpeer.h"
#include "support/testprogram.h"

namespace vek {
namespace {

using Boxes = std::vector<std::string>;
using sim::FaultKind;

const Boxes badChannel = {"Fehler|stop|ok|Keine gültige Registeradresse vorhanden."};
const Boxes badRegister = {"Fehler|stop|ok|Ungültiges Parameter-Register."};
const Boxes written = {"Hinweis|info|ok|Parameter erfolgreich geschrieben!"};

std::string modbusError(const std::string& text) {
    return "MODBUS-Fehler|stop|ok|" + text;
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

    Boxes boxes() {
        EXPECT_FALSE(test.serial.isOpen());
        return test.desktop.takeBoxes();
    }
    Bytes lastRequest() const { return test.serial.written.back().substr(0, 6); }

    TestProgram test{NumberLocale{.decimalPoint = ",", .groupSeparator = "."}};
    SimulatedPeer peer;
    LastWindow& mainWindow = test.open<LastWindow>();
    Tool& tool = test.open<Tool>();
};

class ChannelTool : public ToolRig<frmMessReg> {
  public:
    using ToolRig::ToolRig;

    void read(const std::string& reg) {
        tool.txtMessRegNr.text = reg;
        tool.cmdMessRegRead.click();
    }

    /// Value, then number and text of test, alarm, range, unit and description.
    std::string shown() {
        return captions({&tool.lblMessVal, &tool.lblMessTest, &tool.lblTestTxt, &tool.lblMessAlarm,
                         &tool.lblAlarmTxt, &tool.lblMessRange, &tool.lblRangeTxt, &tool.lblMessEinheit,
                         &tool.lblEinheitTxt, &tool.lblMessBeschreibung, &tool.lblBezTxt});
    }
};

TEST(MeasurementRegisters, ShowEveryFieldAsNumberAndText) {
    const std::pair<sim::ChannelPin, const char*> rows[] = {
        {{100000.0F, 0x4100, 82}, "100000|16384|Test intern|256|Vorwarnung|0|gültig|0| |82|Kapazität Ce"},
        {{1.5e-6F, 0xC5C2, 84}, "0,0000015|49152|x|1280|Alarm|192|ungültig|2|Ohm|84|Überlast"},
        {{-1234.5F, 0xBBA8, 65535}, "-1234,5|32768|Test extern|768|x|128|größer|8|µF|65535|-"},
        {{0.0F, 0x0248, 0}, "0|0|-|512|Gerätefehler|64|kleiner|8|µF|0| "},
        {{0.0F, 0x0410, 0}, "0|0|-|1024|Warnung|0|gültig|16|mm|0| "},
        {{std::bit_cast<float>(0x7FC00000U), 0x0000, 0}, "---|0|-|0|-|0|gültig|0| |0| "},
    };
    ChannelTool rig;
    for (const auto& [pin, shown] : rows) {
        rig.peer.line.device().pin(2, pin);
        rig.read("1008");
        EXPECT_EQ(rig.shown(), shown);
        EXPECT_EQ(rig.boxes(), Boxes{});
    }
    std::size_t index = 0;
    for (const char* request : {"03 03 03F0 0002", "03 03 03F2 0001", "03 03 03F3 0001"}) {
        EXPECT_EQ(rig.test.serial.written[index++].substr(0, 6), fromHex(request));
    }
}

TEST(MeasurementRegisters, TakeOnlyRegistersWhereAChannelCanStart) {
    ChannelTool rig;
    for (const char* text : {"", "abc", "1e3", "-1", "999", "999.4", "32764.6", "66536", "999999999999"}) {
        rig.read(text);
        EXPECT_EQ(rig.boxes(), badChannel) << text;
    }
    EXPECT_TRUE(rig.test.serial.openings.empty());
    const std::pair<const char*, const char*> good[] = {{" 1004 Re", "03 03 03EF 0001"},
                                                        {"999.5", "03 03 03EB 0001"},
                                                        {"1000.5", "03 03 03EB 0001"},
                                                        {"32764", "03 03 7FFF 0001"}};
    for (const auto& [text, lastRead] : good) {
        rig.read(text);
        EXPECT_EQ(rig.boxes(), Boxes{}) << text;
        EXPECT_EQ(rig.lastRequest(), fromHex(lastRead)) << text;
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

    /// The rows that show something, each with a comma behind it.
    std::string rows() {
        std::string rows;
        for (std::size_t index = 0; index < frmParaReg::rowCount; ++index) {
            const std::string row =
                captions({&tool.lblHexVal[index], &tool.lblDezVal[index], &tool.lblChr[index]});
            rows += row == "||" ? "" : row + ", ";
        }
        return rows;
    }
};

TEST(ParameterRegisters, ShowEachRegisterInThreeForms) {
    RegisterTool rig;
    EXPECT_EQ(rig.tool.cmbRegAnz.items.get().size(), 10U);
    rig.read("9800", "10");
    EXPECT_EQ(rig.rows(),
              "7665|30309|ve, 6B51|27473|kQ, 4237|16951|B7, 3331|13105|31, 2D4B|11595|-K, 3757|14167|7W, "
              "2D32|11570|-2, 0000|0|\uFFFD\uFFFD, 0000|0|\uFFFD\uFFFD, 0000|0|\uFFFD\uFFFD, ");
    EXPECT_EQ(rig.lastRequest(), fromHex("03 03 2648 000A"));
    // As many as arrived, but no more than were asked for.
    const std::pair<const char*, const char*> replies[] = {
        {"03 03 06 4142 80FC 0A81", "4142|16706|AB, 80FC|33020|€ü, 0A81|2689|\uFFFD\uFFFD, "},
        {"03 03 03 4142 43", "4142|16706|AB, "},
        {"03 03 08 4142 4344 4546 4748", "4142|16706|AB, 4344|17220|CD, 4546|17734|EF, "},
        {"03 03 FF 4142 4344", "4142|16706|AB, 4344|17220|CD, "},
        {"03 03 00", ""},
    };
    for (const auto& [reply, rows] : replies) {
        rig.answer(reply);
        rig.read("3001", "3");
        EXPECT_EQ(rig.rows(), rows);
        EXPECT_EQ(rig.boxes(), Boxes{}) << reply;
    }
}

TEST(ParameterRegisters, AWrittenRegisterIsThereAtTheNextRead) {
    RegisterTool rig;
    rig.write("3007", "45");
    EXPECT_EQ(rig.boxes(), written);
    EXPECT_EQ(rig.test.serial.written.back().substr(0, 9), fromHex("03 10 0BBF 0001 02 002D"));
    rig.read("3007", "1");
    EXPECT_EQ(rig.rows(), "002D|45|\uFFFD-, ");
    rig.write("3007", "46");
    EXPECT_EQ(rig.rows(), "") << "what was read before the write is no longer true";
}

TEST(ParameterRegisters, OnlySoundRequestsAreSent) {
    RegisterTool rig;
    const std::pair<const char*, const char*> badReads[] = {
        {"", "1"}, {"10000", "1"}, {"9999.5", "1"}, {"-1", "1"}, {"1", ""}, {"1", "0"}, {"1", "10.6"}};
    for (const auto& [reg, count] : badReads) {
        rig.tool.lblHexVal[0].caption = "4142";
        rig.read(reg, count);
        EXPECT_EQ(rig.boxes(), badRegister) << reg << ' ' << count;
        EXPECT_EQ(rig.rows(), "") << "nothing stale";
    }
    const std::array<const char*, 3> badWrites[] = {{"", "1", "1"},          {"10000", "1", "1"},
                                                    {"3007", "1", ""},       {"3007", "32768", "1"},
                                                    {"3007", "-32769", "1"}, {"3007", "999999999999", "1"}};
    for (const auto& [reg, value, count] : badWrites) {
        rig.write(reg, value, count);
        EXPECT_EQ(rig.boxes(), badRegister) << reg << ' ' << value;
    }
    EXPECT_TRUE(rig.test.serial.openings.empty());

    const std::array<const char*, 3> reads[] = {{"9999", "1", "270F 0001"},
                                                {"9998.5", "3.5", "270E 0004"},
                                                {" 3001 x", "4.5", "0BB9 0004"},
                                                {"1e3", "10.5", "0001 000A"},
                                                {"abc", "2", "0000 0002"}};
    for (const auto& [reg, count, request] : reads) {
        rig.read(reg, count);
        EXPECT_EQ(rig.lastRequest(), fromHex("03 03") + fromHex(request)) << reg;
    }
    const std::pair<const char*, const char*> writes[] = {{"-1", "FFFF"},    {"-32768", "8000"},
                                                          {"32767", "7FFF"}, {"3.5", "0004"},
                                                          {"4.5", "0004"},   {"", "0000"}};
    for (const auto& [value, bytes] : writes) {
        rig.write("3007", value, "99");
        EXPECT_EQ(rig.test.serial.written.back().substr(7, 2), fromHex(bytes)) << value;
    }
}

TEST(ParameterRegisters, TellWhatTheDeviceRefuses) {
    const std::tuple<int, const char*, const char*> rows[] = {
        {2, "Unzulässige Datenzugriff", "Unzulässiger Datenzugriff"},
        {4, "Interner Fehler", ""},
        {11, "Unbekannter Fehler (Ausnahme-Code 11)", ""},
    };
    for (const auto& [code, onRead, onWrite] : rows) {
        RegisterTool rig(deviceOf(1, {fault(FaultKind::Exception, 3007, code)}));
        rig.read("3007", "1");
        EXPECT_EQ(rig.boxes(), Boxes{modbusError(onRead)});
        rig.write("3007", "45");
        EXPECT_EQ(rig.boxes(), Boxes{modbusError(*onWrite == '\0' ? onRead : onWrite)});
        EXPECT_EQ(rig.rows(), "");
    }
    RegisterTool silent(deviceOf(1, {fault(FaultKind::Silence, 3007, 0)}));
    silent.read("3007", "1");
    EXPECT_EQ(silent.boxes(), Boxes{crcDialog});
    silent.write("3007", "45");
    EXPECT_EQ(silent.boxes(), Boxes{crcDialog}) << "no success";
    silent.test.desktop.answers = {MessageAnswer::Cancel};
    EXPECT_TRUE(silent.test.endsProgram([&] { silent.write("3007", "45"); }));
    EXPECT_EQ(silent.boxes(), (Boxes{crcDialog, farewell}));
}

}  // namespace
}  // namespace vek
