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

    void answerWith(const char* reply) {
        test.serial.peer = [this, reply](std::string_view) { test.serial.reply(fromHex(reply)); };
    }

    TestProgram test;
};

struct ReadCase {
    const char* reply;
    std::string result;
    Boxes boxes;
};

TEST_F(Messages, OfAReadOfOneRegister) {
    const ReadCase cases[] = {
        {"03 03 02 12 34 CC F3", "4660", {}},
        {"03 03 02 00 00 C1 84", "0", {}},
        {"03 03 02 FF FF C0 34", "65535", {}},
        {"03 83 01 21 30", "EXCEP_1", {"MODBUS-Fehler|stop|ok|Unzulässige Funktion"}},
        {"03 83 02 61 31", "EXCEP_2", {}},
        {"03 83 03 A0 F1", "EXCEP_3", {"MODBUS-Fehler|stop|ok|Unzulässige Datenwert"}},
        {"03 83 04 E1 33", "EXCEP_4", {"MODBUS-Fehler|stop|ok|Interner Fehler"}},
        {"03 83 05 20 F3",
         "EXCEP_5",
         {"MODBUS-Fehler|stop|ok|Annahmebestätigung (Antwort kommt zeitverzögert"}},
        {"03 83 06 60 F2", "EXCEP_6", {"MODBUS-Fehler|stop|ok|Anfrage nicht angenommen"}},
        {"03 83 07 A1 32", "EXCEP_7", {"MODBUS-Fehler|stop|ok|Unbekannter Fehler (Ausnahme-Code 7)"}},
        {"03 83 00 E0 F0", "EXCEP_0", {"MODBUS-Fehler|stop|ok|Unbekannter Fehler (Ausnahme-Code 0)"}},
        {"03 03 41 41", "EXCEP_65", {"MODBUS-Fehler|stop|ok|Unbekannter Fehler (Ausnahme-Code 65)"}},
        {"", "CRC_TIMEOUT", {crcDialog}},
        {"03", "CRC_TIMEOUT", {crcDialog}},
        {"03 03 02 12 34 CC F4", "CRC_TIMEOUT", {crcDialog}},
        // Right CRC, but not even one register in it.
        {"03 03 00 81 30", "CRC_TIMEOUT", {crcDialog}},
        {"03 03 01 12 71 FD", "CRC_TIMEOUT", {crcDialog}},
        {"03 03 02 12 71 0D", "CRC_TIMEOUT", {crcDialog}},
    };
    for (const ReadCase& c : cases) {
        answerWith(c.reply);
        EXPECT_EQ(MbReadRegisters(test.program, 9820, 1), c.result) << c.reply;
        EXPECT_EQ(test.desktop.takeBoxes(), c.boxes) << c.reply;
        EXPECT_TRUE(test.serial.isOpen()) << "the caller closes the port";
    }
}

TEST_F(Messages, AReadNeverReturnsMoreThanArrived) {
    answerWith("03 03 04 42 F6 E9 79 A3 CB");
    EXPECT_EQ(MbReadRegisters(test.program, 1000, 2), fromHex("42 F6 E9 79"));
    answerWith("03 03 C8 12 34 56 78 B2 D7");
    EXPECT_EQ(MbReadRegisters(test.program, 1000, 2), fromHex("12 34 56 78"));
    EXPECT_EQ(readData(test.program, 1000, 2), fromHex("12 34 56 78"));

    // Another number of bytes than asked for is no value at all.
    for (const char* reply : {"03 03 02 12 34 CC F3", "03 03 03 12 34 56 72 97"}) {
        answerWith(reply);
        EXPECT_EQ(readData(test.program, 1000, 2), std::nullopt) << reply;
        EXPECT_EQ(readRegister(test.program, 1002).has_value(), std::string_view(reply).size() == 20)
            << reply;
    }
    EXPECT_TRUE(test.desktop.boxes.empty());
}

struct WriteCase {
    const char* reply;
    bool acknowledged;
    Boxes boxes;
};

TEST_F(Messages, OfAWrite) {
    const WriteCase cases[] = {
        {"03 10 0B B9 00 01 D3 EA", true, {}},
        {"03 90 01 2C 00", false, {"MODBUS-Fehler|stop|ok|Unzulässige Funktion"}},
        {"03 90 02 6C 01", false, {"MODBUS-Fehler|stop|ok|Unzulässige Datenzugriff"}},
        {"03 90 03 AD C1", false, {"MODBUS-Fehler|stop|ok|Unzulässige Datenwert"}},
        {"03 90 04 EC 03", false, {"MODBUS-Fehler|stop|ok|Interner Fehler"}},
        {"03 90 05 2D C3", false, {"MODBUS-Fehler|stop|ok|Annahmebestätigung (Antwort kommt zeitverzögert"}},
        {"03 90 06 6D C2", false, {"MODBUS-Fehler|stop|ok|Anfrage nicht angenommen"}},
        {"03 90 07 AC 02", false, {"MODBUS-Fehler|stop|ok|Unbekannter Fehler (Ausnahme-Code 7)"}},
        {"", false, {crcDialog}},
        {"03 10 0B B9 00 01 D3 EB", false, {crcDialog}},
    };
    for (const WriteCase& c : cases) {
        answerWith(c.reply);
        EXPECT_EQ(MbWriteRegisters(test.program, 3001, 1, 2, WordToBytes(100)), c.acknowledged) << c.reply;
        EXPECT_EQ(test.desktop.takeBoxes(), c.boxes) << c.reply;
    }
    EXPECT_EQ(test.serial.written.front(), fromHex("03 10 0B B9 00 01 02 00 64 1E B2"));
}

TEST_F(Messages, BaudRateAndParityCountAsWrittenWhateverComesBack) {
    for (const char* reply : {"", "55", "03 90 02 6C 01", "03 90 07 AC 02"}) {
        answerWith(reply);
        EXPECT_TRUE(MbWriteRegisters(test.program, 3016, 1, 2, WordToBytes(4))) << reply;
        EXPECT_TRUE(MbWriteRegisters(test.program, 3017, 1, 2, WordToBytes(4))) << reply;
    }
    EXPECT_TRUE(test.desktop.boxes.empty());
    EXPECT_EQ(test.serial.written[0], fromHex("03 10 0B C8 00 01 02 00 04 14 7B"));
    EXPECT_EQ(test.serial.written[1], fromHex("03 10 0B C9 00 01 02 00 04 15 AA"));
}

TEST_F(Messages, CancelInTheCrcDialogEndsTheProgram) {
    for (const bool writing : {false, true}) {
        TestProgram program;
        program.configure();
        program.open<LastWindow>();
        OpenPort(program.program);
        program.desktop.answers = {MessageAnswer::Cancel};
        EXPECT_TRUE(program.endsProgram([&] {
            if (writing) {
                MbWriteRegisters(program.program, 3001, 1, 2, WordToBytes(100));
            } else {
                MbReadRegisters(program.program, 9820, 1);
            }
        }));
        EXPECT_EQ(program.desktop.boxes, (Boxes{crcDialog, farewell}));
        EXPECT_FALSE(program.serial.isOpen());
        EXPECT_EQ(program.serial.written.size(), 1U);
        EXPECT_EQ(program.host.log.back(), "-lastWindow");
    }
}

struct TextCase {
    const char* what;
    const char* reply;
    std::string text;
    Boxes boxes;
};

TEST(DeviceText, EndsAtTheFirstNul) {
    const TextCase cases[] = {
        {"padded",
         "03 03 14 76 65 6B 51 41 37 33 31 2D 4B 37 2D 32 00 00 00 00 00 00 00 B3 3A",
         "vekQA731-K7-2",
         {}},
        {"rubbish behind it",
         "03 03 14 76 65 6B 51 41 37 33 31 2D 4B 37 2D 32 00 58 59 5A 00 41 42 00 96",
         "vekQA731-K7-2",
         {}},
        {"twenty bytes",
         "03 03 14 41 42 43 44 45 46 47 48 49 4A 4B 4C 4D 4E 4F 50 51 52 53 54 36 D8",
         "ABCDEFGHIJKLMNOPQRST",
         {}},
        {"bytes as they are",
         "03 03 14 50 72 FC 66 20 80 0A 09 5A 00 00 00 00 00 00 00 00 00 00 00 B8 4D",
         "Pr\xFC"
         "f \x80\n\tZ",
         {}},
        {"no such register", "03 83 02 61 31", "EXCEP_2", {}},
        {"no answer", "", "CRC_TIMEOUT", {crcDialog}},
    };
    for (const TextCase& c : cases) {
        TestProgram test;
        test.configure();
        test.serial.peer = [&](std::string_view) {
            EXPECT_TRUE(test.serial.isOpen());
            test.serial.reply(fromHex(c.reply));
        };
        EXPECT_EQ(ReadDeviceText(test.program, 9800), c.text) << c.what;
        EXPECT_EQ(test.serial.written, std::vector<Bytes>{fromHex("03 03 26 48 00 0A 4F 71")}) << c.what;
        EXPECT_EQ(test.desktop.boxes, c.boxes) << c.what;
        EXPECT_FALSE(test.serial.isOpen()) << c.what;
        EXPECT_EQ(test.serial.closeCount, 1) << c.what;
    }
}

}  // namespace
}  // namespace vek
