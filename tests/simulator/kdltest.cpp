#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "master.h"
#include "simulator/kdlframe.h"

namespace vek::sim {
namespace {

using namespace std::chrono_literals;
using enum Quantity;

Bytes bytesOf(std::string_view text) {
    return {text.begin(), text.end()};
}

unsigned char codeSum(std::string_view text) {
    unsigned sum = 0;
    for (const char c : text) {
        sum += static_cast<unsigned char>(c);
    }
    return static_cast<unsigned char>(sum);
}

std::string requestText(const std::string& command, const std::string& address = "003") {
    const std::string text = ":;" + address + command + "&";
    return text + kdlTrailer(text) + "\r\n";
}

LineOptions onKdl(int type = 1) {
    LineOptions options = ofType(type);
    options.device.kdl = true;
    return options;
}

LineOptions withFault(const char* text) {
    LineOptions options = onKdl();
    options.faults = {std::get<LineFault>(parseFault(text))};
    return options;
}

std::string send(Master& master, const std::string& text) {
    const Bytes reply = master.send(bytesOf(text));
    return {reply.begin(), reply.end()};
}

// What a master makes of a reply, or "?" when it is no whole reply of the device.
std::string payload(const std::string& reply) {
    const bool whole = reply.starts_with("=;003:") && reply.ends_with("\r\n") &&
                       codeSum(reply.substr(0, reply.size() - 2)) == 0 &&
                       std::ranges::all_of(reply, [](char c) { return static_cast<unsigned char>(c) < 128; });
    return whole ? reply.substr(6, reply.find('&') - 6) : "?";
}

std::string ask(Master& master, const std::string& command) {
    return payload(send(master, requestText(command)));
}

// All replies in one text, one after the other.
std::string ask(Master& master, std::initializer_list<std::string> commands) {
    std::string texts;
    for (const std::string& command : commands) {
        texts += ask(master, command);
    }
    return texts;
}

// The operating values up to the end of the list.
std::string values(Master& master) {
    std::string texts;
    std::string text;
    for (int row = 1; text != "stop 0" && row < 99; ++row) {
        text = ask(master, ":BTR? " + std::to_string(row));
        texts += text + ", ";
    }
    return texts;
}

// The rows that have an alarm, each with its number.
std::string alarms(Master& master) {
    std::string texts;
    for (int row = 1; row <= 16; ++row) {
        const std::string text = ask(master, ":ALM? " + std::to_string(row));
        texts += text == "no 0" ? "" : std::to_string(row) + ": " + text + ", ";
    }
    return texts;
}

std::string parameter(Master& master, int number) {
    return ask(master, ":TRSH? " + std::to_string(number));
}

std::string write(Master& master, int number, const std::string& value) {
    return ask(master, {":CAN " + std::to_string(number), ":TRSH " + value});
}

void pin(Master& master, Quantity quantity, float value, std::optional<std::uint16_t> status = {}) {
    Device& device = master.line.device();
    for (std::size_t i = 0; i < channelCount; ++i) {
        if (device.type().channels.at(i) == quantity) {
            device.pin(i, {value, status, {}});
        }
    }
    master.wait(1);
}

// All quantities at values that are no reason for an alarm.
void pinHealthy(Master& master) {
    const auto supply = static_cast<float>(master.line.device().type().supplyVoltage);
    const std::pair<Quantity, float> pins[] = {{Insulation, 250e3F},     {Impedance, 60e3F},
                                               {Voltage, supply},        {RmsVoltage, 111.2F},
                                               {Capacitance, 38e-9F},    {VoltagePlus, 107.5F},
                                               {VoltageMinus, -107.0F},  {FaultPosition, 35.9F},
                                               {UpdateCounter, 1234.0F}, {DisplacementInsulation, 257e3F}};
    for (const auto& [quantity, value] : pins) {
        pin(master, quantity, value);
    }
}

TEST(KdlFrames, TrailersFillTheSumUpAtTheBordersOfTheirForms) {
    const std::pair<int, const char*> rows[] = {{0, "dZB"},   {56, "dZz"}, {57, "zzE"},  {110, "zzz"},
                                                {111, "(G"},  {160, "(x"}, {161, "00A"}, {214, "00v"},
                                                {215, "KKA"}, {255, "KKi"}};
    for (const auto& [missing, trailer] : rows) {
        EXPECT_EQ(kdlTrailer(std::string(1, static_cast<char>(256 - missing))), trailer) << missing;
    }
}

TEST(KdlFrames, OnlyWholeRequestsToTheDeviceAreAnswered) {
    Master master(onKdl());
    const std::string good = ":;003:IDNM?&dZs\r\n";
    for (const std::string& text :
         {requestText(":IDNM?", "004"), requestText("IDNM?"), std::string(1000, 'x'),
          std::string(":;003:IDNM?&dZt\r\n"), good.substr(0, 9)}) {
        EXPECT_EQ(send(master, text), "") << text;
        EXPECT_EQ(payload(send(master, good)), "vekQB731") << "after " << text;
    }
    std::string reply;
    for (const char c : good) {
        reply += send(master, std::string(1, c));
    }
    EXPECT_EQ(payload(reply), "vekQB731") << "however long the pauses are";
    EXPECT_EQ(send(master, "noise" + good + good), reply + reply);
}

TEST(KdlCommands, AnswerOrObeyOrRefuse) {
    const std::pair<const char*, const char*> rows[] = {
        {":IDNM?", "vekQB731"}, {":IDNV?", "-K7W-2"},     {":IDND?", "1731D"},     {":IDNF?", "1731D Sw 212"},
        {":DEFLT", ""},         {":DEFLT 52", "error 1"}, {":NONE?", "error 1"},   {":ALM?", "error 1"},
        {":ALM? x", "error 3"}, {":BTR? 0", "error 3"},   {":MEM?", "off 0"},      {":MEMRY 1", ""},
        {":MEM?", "on 1"},      {":MEMRY 2", "error 3"},  {":REL? 0", "no 0"},     {":RELNC 1", ""},
        {":REL? 0", "no 0"},    {":REL? 1", "nc 1"},      {":RELNC 0", ""},        {":RELNO 1", ""},
        {":REL? 0", "nc 1"},    {":REL? 1", "no 0"},      {":RELNO 2", "error 3"}, {":REL?", "error 1"},
        {":REL? 2", "error 3"}, {":TESTI", ""},           {":ALMN?", "n=/TI"},     {":KAL", ""},
        {":BTR? 1", "no 0"}};
    Master master(onKdl());
    for (const auto& [command, answer] : rows) {
        EXPECT_EQ(ask(master, command), answer) << command;
    }
    master.wait(11);
    EXPECT_EQ(ask(master, ":ALMN?").substr(0, 3), "n= ") << "the test is over";
    EXPECT_TRUE(ask(master, ":BTR? 1").starts_with("Re/kO ")) << "the calibration is over";
    Master battery(onKdl(9));
    EXPECT_EQ(ask(battery, ":KAL"), "error 1");
}

TEST(KdlCommands, TheInterfaceFollowsAfterTheAcknowledgement) {
    LineOptions options;
    options.pace = true;
    Master master(options);
    master.line.setMasterBaudRate(9600);
    EXPECT_EQ(master.write(3007, {45}), 0);
    EXPECT_EQ(master.write(3016, {0}), 0);
    EXPECT_EQ(master.read(3007), -100) << "it has left Modbus";
    const Time before = master.now;
    const std::string request = requestText(":DEFLT");
    const std::string reply = send(master, request);
    EXPECT_EQ(payload(reply), "");
    const auto characters = static_cast<Time::rep>(request.size() + reply.size());
    EXPECT_EQ(master.now - before, characters * (Time(1s) * 10 / 9600) + 5ms + 50ms);
    EXPECT_EQ(write(master, 14, "90"), "") << "still from the old address";
    EXPECT_EQ(ask(master, ":MEM?"), "?");
    EXPECT_EQ(send(master, requestText(":TRSH? 14", "090")).substr(0, 14), "=;090:Adr= 90&");
    EXPECT_EQ(send(master, requestText(":DEFLT 51", "090")).substr(0, 7), "=;090:&");
    master.wait(1);
    EXPECT_EQ(master.read(3007), 50);
    EXPECT_EQ(master.read(3016), 4);
}

// Both buses show one set: what is written here stands in the registers.
TEST(KdlParameters, AreTheRegistersOfTheOtherBus) {
    // Type, parameter, value, the text as it is read back, register and content.
    const std::tuple<int, int, const char*, const char*, std::uint16_t, int> rows[] = {
        {1, 1, "990", "Re/kO 990", 3005, 990}, {9, 1, "5000", "Re/kO 5000", 3001, 5000},
        {1, 3, "495", "Ze/kO 495", 3003, 495}, {8, 3, "40", "Ce/uF 40", 3023, 40},
        {9, 3, "500", "Uo/V 500", 3005, 500},  {9, 6, "3", "Uu/V 3", 3011, 3},
        {3, 4, " 30 ", "Uu/V 30", 3009, 30},   {2, 2, "0", "off", 3006, 0},
        {7, 5, "0", "off", 3010, 0},           {1, 8, "600", "FndHz 600", 3023, 600},
        {3, 6, "1", "T/h 1", 3021, 1},         {4, 7, "0", "dig 0", 3024, 0},
        {9, 8, "4", "dig 4", 3029, 4},         {10, 8, "1", "dig 1", 3023, 1},
        {5, 9, "10", "Tvz/s 10", 3018, 10},    {1, 13, "1", "STDBY 1", 3026, 1},
    };
    for (const auto& [type, number, value, text, reg, content] : rows) {
        SCOPED_TRACE(testing::Message() << "type " << type << ", parameter " << number);
        Master master(onKdl(type));
        const std::string before = parameter(master, number);
        EXPECT_EQ(write(master, number, value), "");
        EXPECT_EQ(parameter(master, number), text);
        EXPECT_EQ(master.line.device().parameters().read(reg), content);
        EXPECT_EQ(ask(master, ":DEFLT"), "");
        EXPECT_EQ(parameter(master, number), before);
    }
}

TEST(KdlParameters, RefuseWhatDoesNotFit) {
    // A value whose number was not taken or not heard must not land in the parameter before it.
    Master master(onKdl(6));
    EXPECT_EQ(ask(master, ":TRSH 5"), "error 3");
    EXPECT_EQ(write(master, 9, "5"), "");
    EXPECT_EQ(ask(master, ":TRSH 6"), "error 3");
    for (const char* number : {"0", "3", "15", "16", "x"}) {
        EXPECT_EQ(ask(master, {":CAN 9", std::string(":CAN ") + number, ":TRSH 6"}), "error 3error 3");
    }
    for (const char* value : {"11", "2.5", "-3", "", "x", "70000"}) {
        EXPECT_EQ(write(master, 9, value), "error 3") << value;
    }
    EXPECT_EQ(parameter(master, 9), "Tvz/s 5");
}

TEST(KdlParameters, SwitchesActOnWhatTheyStandFor) {
    Master master(onKdl());
    pinHealthy(master);
    pin(master, Insulation, 40e3F);
    EXPECT_EQ(ask(master, {":CAN 2", ":TRSH 0", ":TRSH? 2"}), "off");
    master.wait(1);
    EXPECT_EQ(alarms(master), "1: Re/kO 40, ");
    EXPECT_EQ(ask(master, {":CAN 8", ":TRSH 0", ":TRSH? 3", ":TRSH? 12"}), "offoff");
    EXPECT_EQ(write(master, 12, "60"), "error 3") << "only a measurement that is on has thresholds";
    EXPECT_EQ(parameter(master, 2), "Re/kO 50") << "something has to watch the installation";
    master.wait(1);
    EXPECT_EQ(alarms(master), "1: Re/kO 40, 2: Re/kO 40, ");
    EXPECT_EQ(ask(master, {":CAN 8", ":TRSH 600", ":TRSH? 2"}), "off") << "as it was before";
    EXPECT_EQ(ask(master, {":CAN 2", ":TRSH 30", ":TRSH? 2"}), "Re/kO 30");
}

TEST(KdlMonitor, OperatingValuesStandWhereTheTypeHasThem) {
    const std::string none = "no 0, no 0, no 0, FL 35 %, ";
    const std::string voltages = "U/dV 1075, U/dV -1070, ";
    const std::string displaced = voltages + "dig 1234, Re/kO 257, stop 0, ";
    const std::string plain = voltages + "dig 1234, stop 0, ";
    const std::string full = "Ce/nF 38, Ze/kO 60, dig 1234, " + voltages + "Re/kO 257, stop 0, ";
    const std::tuple<int, int, std::string, std::string> rows[] = {
        {1, 15, "Ze/kO 60, U/dV 2300, U/dV 2300, ", full},
        {3, 13, "Ce/nF 38, U/dV 4000, U/dV 4000, ", displaced},
        {6, 13, "Ce/nF 38, U/dV 2300, U/dV 2300, ", displaced},
        {7, 13, "Ce/nF 38, U/dV 6900, U/dV 6900, ", displaced},
        {8, 12, "U/dV 1112, U/dV 1100, U/dV 1100, ", plain},
        {9, 12, "Ce/nF 38, U/dV 2160, U/dV 2160, ", plain},
        {10, 14, "no 0, U/dV 2300, U/dV 2300, ", "Ce/nF 38, no 0, dig 1234, " + voltages + "stop 0, "}};
    for (const auto& [type, count, middle, last] : rows) {
        Master master(onKdl(type));
        pinHealthy(master);
        EXPECT_EQ(ask(master, {":ALMN?", ":BTRN?"}), "n= 0n= " + std::to_string(count));
        EXPECT_EQ(values(master),
                  std::string("Re/kO 250, Re/kO 250, ").append(middle).append(none).append(last))
            << type;
    }
}

TEST(KdlMonitor, ValuesTellTheirRangeAndUnit) {
    const std::tuple<Quantity, float, std::uint16_t, int, const char*> rows[] = {
        {Insulation, 4e6F, rangeGreater, 1, "Re/kO >4000"},
        {Insulation, 1e3F, rangeSmaller, 1, "Re/kO <1"},
        {Insulation, 4e6F, rangeInvalid, 1, "no 0"},
        {FaultPosition, -35.9F, rangeValid, 9, "FL-35 %"},
        {FaultPosition, -0.4F, rangeValid, 9, "FL 0 %"},
        {FaultPosition, 35.0F, rangeInvalid, 9, "no 0"},
        {Capacitance, 12.4e-6F, rangeValid, 10, "Ce/uF 12"},
        {Capacitance, 500e-6F, rangeGreater, 10, "peak 0"}};
    for (const auto& [quantity, value, status, row, text] : rows) {
        Master master(onKdl());
        pin(master, quantity, value, status);
        EXPECT_EQ(ask(master, ":BTR? " + std::to_string(row)), text);
    }
}

TEST(KdlMonitor, AlarmsStandAtTheirPlaces) {
    const std::tuple<int, Quantity, float, std::string> rows[] = {
        {1, Insulation, 80e3F, "1: Re/kO 80, "},    {1, Insulation, 40e3F, "1: Re/kO 40, 2: Re/kO 40, "},
        {1, Impedance, 40e3F, "11: Ze/kO 40, "},    {1, Impedance, 20e3F, "3: Ze/kO 20, 11: Ze/kO 20, "},
        {3, Voltage, 180.0F, "4: Uu/dV 1800, "},    {10, Voltage, 270.5F, "5: Uo/dV 2705, "},
        {8, RmsVoltage, 140.0F, "3: Uo/dV 1400, "}, {9, Voltage, 170.0F, "4: Uu/dV 1700, "}};
    for (const auto& [type, quantity, value, expected] : rows) {
        Master master(onKdl(type));
        pinHealthy(master);
        pin(master, quantity, value);
        EXPECT_EQ(alarms(master), expected) << type;
        EXPECT_EQ(ask(master, ":ALMN?"), "n= " + std::to_string(std::ranges::count(expected, ':')));
    }
}

TEST(KdlMonitor, ReportsConditionsAndTests) {
    Master master(onKdl());
    pin(master, Insulation, 40e3F);
    pin(master, Impedance, 40e3F);
    EXPECT_EQ(ask(master, ":KAL"), "");
    pin(master, Impedance, 40e3F, rangeInvalid);
    EXPECT_EQ(ask(master, ":ALM? 11"), "Ze/kO ---") << "the alarm outlives its value";
    master.line.device().setConditions({.deviceFault = true, .warning = true, .earthWarning = true});
    EXPECT_EQ(ask(master, ":ALMN?"), "n= 4") << "a faulty device does not judge the insulation";
    EXPECT_EQ(alarms(master), "6: 31AER 102, 7: 31ANZ 101, 8: 35FDE 129, 11: Ze/kO ---, ");
    master.line.device().setConditions({.externalTest = true});
    EXPECT_EQ(ask(master, ":ALMN?"), "n=/TE");
    EXPECT_EQ(ask(master, ":ALM? 1"), "Re/kO 40") << "alarms can be asked for during a test";
}

TEST(KdlFaults, SpoilTheReply) {
    Master sound(onKdl());
    const std::string request = requestText(":IDNM?");
    const std::string good = send(sound, request);
    std::string wrong = good;
    wrong[wrong.size() - 3] ^= 0x01;
    const std::pair<const char*, std::string> rows[] = {
        {"silence", ""},
        {"crc", wrong},
        {"unended", good.substr(0, good.size() - 2)},
        {"silence,command=IDNV?", good},
        {"silence,command=IDN", ""},
    };
    for (const auto& [fault, reply] : rows) {
        Master master(withFault(fault));
        EXPECT_EQ(send(master, request), reply) << fault;
    }
    Master refusing(withFault("exception=6"));
    EXPECT_EQ(ask(refusing, ":DEFLT 51"), "error 6");
    EXPECT_EQ(refusing.line.protocol(), Protocol::Kdl) << "refused means not carried out";
}

}  // namespace
}  // namespace vek::sim
