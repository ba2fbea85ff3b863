#include <gtest/gtest.h>

#include "modbus/ModBus.h"
#include "support/hexbytes.h"
#include "support/testprogram.h"

namespace vek {
namespace {

using Boxes = std::vector<std::string>;

class Messages : public testing::Test {
  protected:
    void SetUp() override {
        test.configure();
        OpenPort(test.program);
    }

    void answerWith(const Bytes& reply) {
        test.serial.peer = [this, reply](std::string_view) { test.serial.reply(reply); };
    }

    TestProgram test;
};

TEST_F(Messages, OfExceptions) {
    const std::pair<int, const char*> cases[] = {
        {1, "Unzulässige Funktion"},
        {2, "Unzulässige Datenzugriff"},
        {3, "Unzulässige Datenwert"},
        {4, "Interner Fehler"},
        {5, "Annahmebestätigung (Antwort kommt zeitverzögert"},
        {6, "Anfrage nicht angenommen"},
        {7, "Unbekannter Fehler (Ausnahme-Code 7)"},
        {0, "Unbekannter Fehler (Ausnahme-Code 0)"},
    };
    for (const auto& [code, text] : cases) {
        const Boxes box = {std::string("MODBUS-Fehler|stop|ok|") + text};
        const auto refuse = [this, number = code](const char* head) {
            const Bytes reply = fromHex(head) + static_cast<char>(number);
            answerWith(reply + ComputeCrc(reply));
        };
        refuse("03 83");
        EXPECT_EQ(MbReadRegisters(test.program, 9820, 1), "EXCEP_" + std::to_string(code));
        EXPECT_EQ(test.desktop.takeBoxes(), code == 2 ? Boxes{} : box) << "missing registers are silent";
        refuse("03 90");
        EXPECT_FALSE(MbWriteRegisters(test.program, 3001, 1, 2, WordToBytes(100)));
        EXPECT_EQ(test.desktop.takeBoxes(), box);
    }
}

TEST_F(Messages, OfOtherReplies) {
    const std::tuple<const char*, const char*, bool> reads[] = {
        {"03 03 02 12 34 CC F3", "4660", true},
        {"03 03 02 FF FF C0 34", "65535", true},
        {"", "CRC_TIMEOUT", false},
        {"03 03 02 12 34 CC F4", "CRC_TIMEOUT", false},
        // Right CRC, but not even one register in it.
        {"03 03 00 81 30", "CRC_TIMEOUT", false},
        {"03 03 01 12 71 FD", "CRC_TIMEOUT", false},
    };
    for (const auto& [reply, result, good] : reads) {
        answerWith(fromHex(reply));
        EXPECT_EQ(MbReadRegisters(test.program, 9820, 1), result) << reply;
        EXPECT_EQ(test.desktop.takeBoxes(), good ? Boxes{} : Boxes{crcDialog}) << reply;
        EXPECT_TRUE(test.serial.isOpen()) << "the caller closes the port";
    }
    answerWith(fromHex("03 10 0B B9 00 01 D3 EA"));
    EXPECT_TRUE(MbWriteRegisters(test.program, 3001, 1, 2, WordToBytes(100)));
    EXPECT_EQ(test.serial.written.back(), fromHex("03 10 0B B9 00 01 02 00 64 1E B2"));
    EXPECT_TRUE(test.desktop.boxes.empty());
    answerWith(fromHex("03 10 0B B9 00 01 D3 EB"));
    EXPECT_FALSE(MbWriteRegisters(test.program, 3001, 1, 2, WordToBytes(100)));
    EXPECT_EQ(test.desktop.takeBoxes(), Boxes{crcDialog});
}

TEST_F(Messages, AReadNeverReturnsMoreThanArrived) {
    answerWith(fromHex("03 03 04 42 F6 E9 79 A3 CB"));
    EXPECT_EQ(MbReadRegisters(test.program, 1000, 2), fromHex("42 F6 E9 79"));
    answerWith(fromHex("03 03 C8 12 34 56 78 B2 D7"));
    EXPECT_EQ(MbReadRegisters(test.program, 1000, 2), fromHex("12 34 56 78"));
    EXPECT_EQ(readData(test.program, 1000, 2), fromHex("12 34 56 78"));

    EXPECT_EQ(BytesToSingle(fromHex("47 C3 50 00")), 100000.0F);
    EXPECT_EQ(BytesToSingle(fromHex("3F 80")), 1.0F) << "missing bytes count as 0";

    // Another number of bytes than asked for is no value at all.
    for (const char* reply : {"03 03 02 12 34 CC F3", "03 03 03 12 34 56 72 97"}) {
        answerWith(fromHex(reply));
        EXPECT_EQ(readData(test.program, 1000, 2), std::nullopt) << reply;
        EXPECT_EQ(readRegister(test.program, 1002).has_value(), std::string_view(reply).size() == 20)
            << reply;
    }
    EXPECT_TRUE(test.desktop.boxes.empty());
}

TEST_F(Messages, BaudRateAndParityCountAsWrittenWhateverComesBack) {
    for (const char* reply : {"", "55", "03 90 02 6C 01", "03 90 07 AC 02"}) {
        answerWith(fromHex(reply));
        EXPECT_TRUE(MbWriteRegisters(test.program, 3016, 1, 2, WordToBytes(4))) << reply;
        EXPECT_TRUE(MbWriteRegisters(test.program, 3017, 1, 2, WordToBytes(4))) << reply;
    }
    EXPECT_TRUE(test.desktop.boxes.empty());
    EXPECT_EQ(test.serial.written[0], fromHex("03 10 0B C8 00 01 02 00 04 14 7B"));
    EXPECT_EQ(test.serial.written[1], fromHex("03 10 0B C9 00 01 02 00 04 15 AA"));
}

TEST(DeviceText, EndsAtTheFirstNul) {
    const std::tuple<const char*, const char*, Boxes> cases[] = {
        {"03 03 14 76 65 6B 51 41 37 33 31 2D 4B 37 2D 32 00 58 59 5A 00 41 42 00 96", "vekQA731-K7-2", {}},
        {"03 03 14 41 42 43 44 45 46 47 48 49 4A 4B 4C 4D 4E 4F 50 51 52 53 54 36 D8",
         "ABCDEFGHIJKLMNOPQRST",
         {}},
        {"03 03 14 50 72 FC 66 20 80 0A 09 5A 00 00 00 00 00 00 00 00 00 00 00 B8 4D",
         "Pr\xFC\x66 \x80\n\tZ",
         {}},
        {"03 83 02 61 31", "EXCEP_2", {}},
        {"", "CRC_TIMEOUT", {crcDialog}},
    };
    for (const auto& [reply, text, boxes] : cases) {
        TestProgram test;
        test.configure();
        test.serial.peer = [&, bytes = fromHex(reply)](std::string_view) { test.serial.reply(bytes); };
        EXPECT_EQ(ReadDeviceText(test.program, 9800), text);
        EXPECT_EQ(test.serial.written, std::vector<Bytes>{fromHex("03 03 26 48 00 0A 4F 71")}) << text;
        EXPECT_EQ(test.desktop.boxes, boxes) << text;
        EXPECT_FALSE(test.serial.isOpen()) << text;
    }
}

}  // namespace
}  // namespace vek
