#include <gtest/gtest.h>

#include "modbus/modbusframe.h"
#include "support/hexbytes.h"

namespace vek {
namespace {

TEST(ModbusFrames, RequestsAreTheseBytes) {
    EXPECT_EQ(readRequest(1, 0, 10), fromHex("01 03 00 00 00 0A C5 CD"));
    EXPECT_EQ(readRequest(247, 1000, 2), fromHex("F7 03 03 E8 00 02 50 ED"));
    EXPECT_EQ(writeRequest(1, 8000, 1, 2, "qo"), fromHex("01 10 1F 40 00 01 02 71 6F 22 2D"));
    EXPECT_EQ(writeRequest(3, 3001, 1, 2, WordToBytes(100)), fromHex("03 10 0B B9 00 01 02 00 64 1E B2"));
}

TEST(ModbusFrames, EverySingleSpoiledBitIsNoticed) {
    const Bytes reply = fromHex("01 03 02 12 34 B5 33");
    ASSERT_TRUE(CheckCrc(reply));
    for (std::size_t bit = 0; bit < 8 * reply.size(); ++bit) {
        Bytes spoiled = reply;
        spoiled[bit / 8] = static_cast<char>(static_cast<unsigned char>(spoiled[bit / 8]) ^ (1U << bit % 8));
        EXPECT_FALSE(CheckCrc(spoiled)) << "bit " << bit;
    }
    for (std::size_t length = 0; length < reply.size(); ++length) {
        EXPECT_FALSE(CheckCrc(reply.substr(0, length))) << "length " << length;
    }
    EXPECT_TRUE(CheckCrc(fromHex("03 FF 41")));
    EXPECT_FALSE(CheckCrc(fromHex("FF FF"))) << "no frame even if it looks like a CRC";
}

TEST(ModbusFrames, ExceptionRepliesAreToldByLengthAndFunction) {
    struct Case {
        const char* frame;
        std::uint8_t function;
        bool exception;
        bool complete;
    };
    const Case cases[] = {{"03 83 02 61 31", 3, true, true},    {"03 90 02 6C 01", 16, true, true},
                          {"03 83 02 61 31", 16, false, false}, {"03 90 02 6C 01", 3, false, false},
                          {"04 83 02 D0 F0", 3, true, false},   {"03 03 00 81 30", 3, false, false},
                          {"03 03 41 41", 3, true, false},      {"03 83 02 61 30", 3, true, false},
                          {"03 83 02 61 31 00", 3, true, false}};
    for (const Case& c : cases) {
        EXPECT_EQ(IsExceptionReply(fromHex(c.frame), c.function), c.exception) << c.frame;
        EXPECT_EQ(isCompleteExceptionReply(fromHex(c.frame), 3, c.function), c.complete) << c.frame;
    }
    EXPECT_EQ(ExceptionToken(fromHex("03 83 FF")), "EXCEP_255");
}

TEST(ModbusFrames, Conversions) {
    EXPECT_EQ(ToHexText(fromHex("01 03 00 0A FF 80")), "0103000AFF80");
    EXPECT_EQ(WordToBytes(0x1234), fromHex("12 34"));
    EXPECT_EQ(BytesToSingle(fromHex("47 C3 50 00")), 100000.0F);
    EXPECT_EQ(BytesToSingle(fromHex("C2 C8 00 00 FF")), -100.0F);
    EXPECT_EQ(BytesToSingle(fromHex("3F 80")), 1.0F) << "missing bytes count as 0";
}

}  // namespace
}  // namespace vek
