#include <gtest/gtest.h>

#include "modbus/ModBusLink1.h"
#include "support/hexbytes.h"
#include "support/shown.h"
#include "support/testprogram.h"

namespace vek {
namespace {

using Pieces = std::vector<std::pair<Milliseconds, std::string>>;  // delay from the request on, bytes

class Transactions : public testing::Test {
  protected:
    void SetUp() override {
        test.configure();
        OpenPort(test.program);
    }

    void answerWith(const std::string& reply) { answerWith({{Milliseconds{20}, reply}}); }
    void answerWith(const Pieces& pieces) {
        test.serial.peer = [this, pieces](std::string_view) {
            for (const auto& [delay, bytes] : pieces) {
                test.serial.reply(bytes, delay);
            }
        };
    }

    std::string read(std::uint16_t count) {
        return timed([&] { return SendReadRequest(test.program, 3, 9820, count); });
    }
    std::string write() {
        return timed([&] { return SendWriteRequest(test.program, 3, 8000, 1, 2, "qo"); });
    }

    template <class Transaction>
    std::string timed(Transaction transaction) {
        const TimePoint begin = test.clock.now();
        std::string result = transaction();
        took = std::chrono::duration_cast<Milliseconds>(test.clock.now() - begin);
        return result;
    }

    TestProgram test;
    Milliseconds took{};
};

TEST_F(Transactions, SendOneFrameAndReturnTheWholeReply) {
    const std::string reply = fromHex("03 03 02 12 34 CC F3");
    answerWith(reply);
    EXPECT_EQ(read(1), reply);
    EXPECT_EQ(took, Milliseconds{20}) << "the wait ends with the last byte";

    const std::string acknowledged = fromHex("03 10 1F 40 00 01 06 2B");
    answerWith(acknowledged);
    EXPECT_EQ(write(), acknowledged);
    EXPECT_EQ(test.serial.written, (std::vector<Bytes>{fromHex("03 03 26 5C 00 01 4E B2"),
                                                       fromHex("03 10 1F 40 00 01 02 71 6F 3B 4D")}));
    EXPECT_EQ(logLines(test.program.terminalLog),
              (std::vector<std::string>{"black 0303265C00014EB2",
                                        "red 030302"
                                        "1234CCF3",
                                        "black 03101F40000102716F3B4D", "red 03101F400001062B"}));
    EXPECT_EQ(test.desktop.eventRounds, 0) << "no event may run inside a transaction";
    EXPECT_TRUE(test.desktop.boxes.empty());
    SendReadRequest(test.program, 247, 1000, 2);
    EXPECT_EQ(test.serial.written.back(), fromHex("F7 03 03 E8 00 02 50 ED"));
    answerWith(reply);
    EXPECT_EQ(SendReadRequest(test.program, 0, 9820, 1), reply) << "any device may answer to address 0";
}

TEST_F(Transactions, SilenceCostsTheTimeOutFromTheMomentTheFrameIsOut) {
    test.serial.reply(fromHex("03 03 02 FF FF C0 34"));
    test.clock.advance(Milliseconds{5});
    EXPECT_EQ(read(1), "CRC_TIMEOUT") << "stale input is thrown away";
    EXPECT_EQ(took, Milliseconds{1000});
    EXPECT_EQ(logLines(test.program.terminalLog),
              (std::vector<std::string>{"black 0303265C00014EB2", "red "}));

    test.serial.sendTime = Milliseconds{70};
    EXPECT_EQ(read(1), "CRC_TIMEOUT");
    EXPECT_EQ(took, Milliseconds{1070});
}

TEST_F(Transactions, HostileReplies) {
    const std::string good = fromHex("03 03 04 42 F6 E9 79 A3 CB");
    std::vector<std::tuple<std::string, const char*, int>> cases = {
        {std::string(300, '\x55'), "CRC_TIMEOUT", 20},
        // Right CRC, but too short; then exceptions, of others or damaged.
        {fromHex("03 03 41 41"), "EXCEP_65", 1000},
        {fromHex("03 FF 41"), "EXCEP_65", 1000},
        {fromHex("03 83 02 61 31"), "EXCEP_2", 20},
        {fromHex("03 83 02 61 32"), "CRC_TIMEOUT", 1000},
        {fromHex("04 83 02 D0 F0"), "EXCEP_2", 1000},
        // Of a write, of another slave, and what an adapter returns that hears its own sending.
        {fromHex("03 90 02 6C 01"), "CRC_TIMEOUT", 1000},
        {fromHex("04 03 04 42 F6 E9 79 D5 0B"), "CRC_TIMEOUT", 20},
        {fromHex("03 10 1F 40 00 01 06 2B"), "CRC_TIMEOUT", 1000},
        {fromHex("03 03 26 5C 00 02 0E B3"), "CRC_TIMEOUT", 1000},
    };
    for (std::size_t length = 0; length < good.size(); ++length) {
        cases.emplace_back(good.substr(0, length), "CRC_TIMEOUT", 1000);
    }
    for (std::size_t bit = 0; bit < 8 * good.size(); ++bit) {
        std::string spoiled = good;
        spoiled[bit / 8] = static_cast<char>(static_cast<unsigned char>(spoiled[bit / 8]) ^ (1U << bit % 8));
        cases.emplace_back(spoiled, "CRC_TIMEOUT", 20);
    }
    for (const auto& [reply, result, milliseconds] : cases) {
        answerWith(reply);
        EXPECT_EQ(read(2), result) << reply.size();
        EXPECT_EQ(took, Milliseconds{milliseconds}) << reply.size();
    }
    const std::tuple<const char*, const char*, int> acknowledgements[] = {
        {"03 90 03 AD C1", "EXCEP_3", 20},
        // Of another slave, another register, more registers, and an echo.
        {"04 10 1F 40 00 01 07 9C", "CRC_TIMEOUT", 20},
        {"03 10 1F 41 00 01 57 EB", "CRC_TIMEOUT", 20},
        {"03 10 1F 40 00 02 46 2A", "CRC_TIMEOUT", 20},
        {"03 10 1F 40 00 01 02 71 6F 3B 4D", "CRC_TIMEOUT", 20},
    };
    for (const auto& [reply, result, milliseconds] : acknowledgements) {
        answerWith(fromHex(reply));
        EXPECT_EQ(write(), result) << reply;
        EXPECT_EQ(took, Milliseconds{milliseconds}) << reply;
    }
}

TEST_F(Transactions, RepliesMayComeInPiecesUntilTheTimeIsUp) {
    const std::string good = fromHex("03 03 02 12 34 CC F3");
    for (std::size_t cut = 1; cut < good.size(); ++cut) {
        answerWith({{Milliseconds{10}, good.substr(0, cut)}, {Milliseconds{999}, good.substr(cut)}});
        EXPECT_EQ(read(1), good) << cut;
        EXPECT_EQ(took, Milliseconds{999}) << cut;
    }
    answerWith({{Milliseconds{10}, good.substr(0, 5)}, {Milliseconds{1001}, good.substr(5)}});
    EXPECT_EQ(read(1), "CRC_TIMEOUT");
    EXPECT_EQ(took, Milliseconds{1000});

    // The rest of that reply is stale by the next request, and must not be taken for its answer.
    test.clock.advance(Milliseconds{50});
    answerWith(good);
    EXPECT_EQ(read(1), good);
}

TEST_F(Transactions, DeviceAddressesFromText) {
    const std::pair<const char*, int> cases[] = {{"3", 3},  {"247", 247}, {"12a", 12}, {" 90 ", 90},
                                                 {"", 0},   {"abc", 0},   {"3.5", 4},  {"256", 0},
                                                 {"-1", 0}, {"1e9", 1}};
    for (const auto& [text, address] : cases) {
        test.program.DeviceAddress = 77;
        SetDeviceAddress(test.program, text);
        EXPECT_EQ(test.program.DeviceAddress, address) << text;
    }
}

}  // namespace
}  // namespace vek
