#include <gtest/gtest.h>

#include "kdl/KDLBusLink.h"
#include "kdl/kdldevice.h"
#include "kdl/kdlframe.h"
#include "support/shown.h"

namespace vek {
namespace {

using Boxes = std::vector<std::string>;
using Lines = std::vector<std::string>;
using Pieces = std::vector<std::pair<int, std::string>>;  // ms from the request on, bytes

constexpr Milliseconds pause{5};
constexpr Milliseconds timeOut{200};
const Bytes none = "#TIMEOUT_ERROR#";
const Bytes request = ":;003:IDNM?&dZs\r\n";

Bytes framed(Bytes text) {
    KdlAppendChecksum(text);
    return text;
}

TEST(KdlFrames, RequestsAreTheseBytes) {
    for (const char* frame :
         {":;001:IDNM?&dZu", ":;001:MEM?&(T", ":;005:CAN 8&zzx", ":;090:TRSH? 8&00Z", ":;003:IDNV?&dZj",
          ":;003:IDND?&zzF", ":;003:IDNF?&dZz", ":;003:ALM? 15&KKc", ":;003:BTR? 1&dZb", ":;003:KAL&00`",
          ":;003:DEFLT 51&00C", ":;247:REL? 1&dZ]", "     :IDNM?&(q"}) {
        const std::string text = frame;
        EXPECT_EQ(framed(text.substr(0, text.find('&'))), text + "\r\n");
    }
}

TEST(KdlFrames, TrailersAtTheBordersOfTheirForms) {
    const std::pair<int, const char*> rows[] = {{0, "dZB"},   {56, "dZz"}, {57, "zzE"},  {110, "zzz"},
                                                {111, "(G"},  {160, "(x"}, {161, "00A"}, {214, "00v"},
                                                {215, "KKA"}, {255, "KKi"}};
    for (const auto& [checksum, trailer] : rows) {
        // A text of one byte whose sum with the "&" leaves that checksum.
        const Bytes text(1, static_cast<char>(2 * 256 - '&' - checksum));
        EXPECT_EQ(framed(text), text + "&" + trailer + "\r\n") << checksum;
    }
}

class KdlLink : public testing::Test {
  protected:
    void SetUp() override {
        test.configureKdl();
        KdlOpenPort(test.program);
    }

    void answerWith(const Pieces& pieces) {
        test.serial.peer = [this, pieces](std::string_view) {
            for (const auto& [delay, bytes] : pieces) {
                test.serial.reply(bytes, Milliseconds{delay});
            }
        };
    }

    /// Long after whatever was before.
    Bytes transact() {
        test.program.lateReplyLimit = {};
        const TimePoint begin = test.clock.now();
        Bytes result = KdlTransact(test.program, ":IDNM?");
        took = std::chrono::duration_cast<Milliseconds>(test.clock.now() - begin);
        EXPECT_FALSE(test.program.TimeOut.enabled);
        EXPECT_FALSE(test.program.TimeOutElapsed);
        return result;
    }

    Lines log() const { return logLines(test.program.terminalLog); }

    TestProgram test;
    Milliseconds took{};
};

TEST_F(KdlLink, SendsOneFrameAfterAPauseAndReturnsThePayload) {
    const TimePoint begin = test.clock.now();
    test.serial.peer = [&](std::string_view frame) {
        EXPECT_EQ(frame, request);
        EXPECT_EQ(test.clock.now() - begin, pause);
        test.serial.reply("abcdefvekQA&dZB\r\n", Milliseconds{20}, Milliseconds{2});
    };
    EXPECT_EQ(transact(), "vekQA");
    EXPECT_EQ(took, Milliseconds{5 + 20 + 16 * 2}) << "the wait ends with the line feed";
    EXPECT_EQ(test.serial.written, std::vector<Bytes>{request});
    EXPECT_EQ(log(), (Lines{"black :;003:IDNM?&dZs", "blue abcdefvekQA&dZB"}));
    EXPECT_TRUE(test.desktop.boxes.empty());
}

TEST_F(KdlLink, BytesThatFollowOneAnotherDoNotWakeTheWindowsOneByOne) {
    const Bytes reply = "abcdef" + Bytes(60, 'x') + "&dZB\r\n";
    test.serial.peer = [&](std::string_view) {
        test.desktop.eventRounds = 0;
        test.serial.reply(reply, Milliseconds{20}, Milliseconds{1});
    };
    EXPECT_EQ(transact(), Bytes(60, 'x'));
    EXPECT_EQ(took, Milliseconds{5 + 20 + 71}) << "the wait ends with the line feed all the same";
    EXPECT_LT(test.desktop.eventRounds, 30);
}

TEST_F(KdlLink, TheTimeOutRunsFromTheMomentTheLastByteIsOut) {
    for (const int sending : {0, 70}) {
        test.serial.sendTime = Milliseconds{sending};
        answerWith({});
        EXPECT_EQ(transact(), none);
        EXPECT_EQ(took, pause + Milliseconds{sending} + timeOut);
        answerWith({{sending + 199, "abcdef42&dZB\r\n"}});
        EXPECT_EQ(transact(), "42");
        EXPECT_EQ(took, pause + Milliseconds{sending + 199});
        answerWith({{sending + 201, "abcdef42&dZB\r\n"}});
        EXPECT_EQ(transact(), none);
        EXPECT_EQ(took, pause + Milliseconds{sending} + timeOut);
        test.clock.advance(Milliseconds{1});
    }
    test.serial.sendTime = Milliseconds{60'000};
    answerWith({});
    EXPECT_EQ(transact(), none) << "the line stands still";
    EXPECT_LT(took, Milliseconds{5000});
}

TEST_F(KdlLink, RepliesMayComeInPiecesUntilTheTimeIsUp) {
    const std::tuple<Pieces, Bytes, int> cases[] = {
        {{{1, "abc"}, {90, "def4"}, {150, "2&dZB\r"}, {199, "\n"}}, "42", 199},
        {{{9, "abcdef1&\r\n"}, {40, "abcdef2&\r\n"}}, "1", 9},
        {{{150, "abcdef42&d"}, {201, "ZB\r\n"}}, none, 200},
    };
    for (const auto& [pieces, payload, milliseconds] : cases) {
        answerWith(pieces);
        EXPECT_EQ(transact(), payload);
        EXPECT_EQ(took, pause + Milliseconds{milliseconds});
        test.clock.advance(Milliseconds{50});
    }
}

TEST_F(KdlLink, RepliesOfAllKinds) {
    const std::tuple<Bytes, Bytes, Lines> cases[] = {
        {"", none, {}},
        {"abcdef&dZB\r\n", "", {"abcdef&dZB"}},
        {"abc\r\n", "abc", {"abc"}},
        {"ab&defgh&dZB\r\n", "ab&defgh&dZB", {"ab&defgh&dZB"}},
        {"abcde&gh\r\n", "abcde&gh", {"abcde&gh"}},
        {"abcdefgh&&d&\r\n", "gh", {"abcdefgh&&d&"}},
        {"\r\n", "", {""}},
        {"abcdef42&dZB", none, {"abcdef42&dZB"}},
        {"abcdef42&dZB\n\r", none, {"abcdef42&dZB\uFFFD\uFFFD"}},
        {"ab\r\ncd42&dZB", none, {"ab", "cd42&dZB"}},
        {"ab\r\ncd42&dZB\r\n", "42", {"ab", "cd42&dZB"}},
        {Bytes("abcdef\0\x80\xE4\x7F&\xFF\r\n", 14), Bytes("\0\x80\xE4\x7F", 4), {"abcdef\uFFFD€ä\uFFFD&ÿ"}},
    };
    Lines expected;
    for (const auto& [reply, payload, lines] : cases) {
        answerWith({{9, reply}});
        EXPECT_EQ(transact(), payload) << reply;
        EXPECT_EQ(took, pause + (payload == none ? timeOut : Milliseconds{9})) << reply;
        expected.emplace_back("black :;003:IDNM?&dZs");
        for (const std::string& line : lines) {
            expected.push_back("blue " + line);
        }
        EXPECT_EQ(log(), expected) << reply;
    }
}

TEST_F(KdlLink, WhatCameBeforeTheRequestIsNoAnswerToIt) {
    answerWith({{201, "abcdefLATE&dZB\r\n"}});
    EXPECT_EQ(transact(), none);
    test.clock.advance(Milliseconds{2});
    // Nor is what comes in the pause or while it is sent; and neither stops the clocks.
    test.serial.reply("=;003:17&dZB\r\n", Milliseconds{2});
    test.serial.sendTime = Milliseconds{10};
    answerWith({{3, "abcd"}, {30, "ef42&dZB\r\n"}});
    EXPECT_EQ(transact(), "42");
    EXPECT_EQ(took, pause + Milliseconds{30});
    EXPECT_EQ(log().back(), "blue abcdef42&dZB");
    EXPECT_LT(test.desktop.eventRounds, 60) << "sleeps until something happens";
}

/// No reply says what it answers; one late reply would shift all those behind it.
TEST_F(KdlLink, AReplyThatMissedItsTimeIsNoAnswerToTheNextRequest) {
    for (const int delay : {201, 230, 399}) {
        answerWith({{delay, "abcdefLATE&dZB\r\n"}});
        EXPECT_EQ(KdlTransact(test.program, ":TRSH? 1"), none);
        answerWith({{20, "abcdef42&dZB\r\n"}});
        const TimePoint begin = test.clock.now();
        EXPECT_EQ(KdlTransact(test.program, ":TRSH? 2"), "42") << delay;
        EXPECT_EQ(test.clock.now() - begin, Milliseconds{delay - 200} + pause + Milliseconds{20});
    }
    answerWith({});
    EXPECT_EQ(KdlTransact(test.program, ":TRSH? 1"), none);
    test.clock.advance(Milliseconds{150});
    const TimePoint begin = test.clock.now();
    EXPECT_EQ(KdlTransact(test.program, ":TRSH? 2"), none);
    EXPECT_EQ(test.clock.now() - begin, Milliseconds{50} + pause + timeOut);
}

TEST_F(KdlLink, AFloodEndsWithTheTimeOutAndFillsNothing) {
    const Bytes flood = "abcdef" + Bytes(70'000, 'x') + "&dZB\r\n";
    answerWith({{9, flood}});
    EXPECT_EQ(transact(), none);
    EXPECT_EQ(took, pause + timeOut);
    EXPECT_EQ(test.program.terminalLog.widestLine(), 65536U);

    test.serial.peer = [&](std::string_view) {
        test.serial.reply(Bytes(70'000, '\n'), Milliseconds{0}, Milliseconds{1});
    };
    EXPECT_EQ(transact(), none);
    EXPECT_EQ(took, pause + timeOut) << "no byte starts the time anew";

    const Bytes longest = "abcdef" + Bytes(65536 - 9, 'x') + "&\r\n";
    KdlClosePort(test.program);
    KdlOpenPort(test.program);
    answerWith({{9, longest}});
    EXPECT_EQ(transact(), Bytes(65536 - 9, 'x'));
}

TEST_F(KdlLink, OpensThePortWithItsOwnFrame) {
    ASSERT_EQ(test.serial.openings.size(), 1U);
    EXPECT_EQ(test.serial.openings[0].number, 3);
    EXPECT_EQ(test.serial.openings[0].settings, "9600,e,7,1");

    test.program.ComPort = 5;
    KdlOpenPort(test.program);
    EXPECT_EQ(test.desktop.takeBoxes(), Boxes{"Fehler|-|ok+cancel|Schnittstelle nicht vorhanden"});
    EXPECT_EQ(test.serial.openings.size(), 1U) << "stays open as it is";
    answerWith({{9, "abcdef42&dZB\r\n"}});
    EXPECT_EQ(transact(), "42");

    KdlClosePort(test.program);
    EXPECT_FALSE(test.serial.isOpen());
    EXPECT_EQ(transact(), none) << "without a message";
    test.program.BaudRate = 300;
    KdlOpenPort(test.program);
    EXPECT_EQ(test.serial.openings.back().number, 5);
    EXPECT_EQ(test.serial.openings.back().settings, "9600,e,7,1");
}

TEST_F(KdlLink, AddressesFromText) {
    const std::tuple<const char*, const char*, int> cases[] = {{"     90", ":;090", 90},
                                                               {"247", ":;247", 247},
                                                               {"12a", ":;12a", 12},
                                                               {"5 ", ":;05 ", 5},
                                                               {"2ü", ":;02\xFC", 2}};
    for (const auto& [text, prefix, address] : cases) {
        KdlSetAddress(test.program, text);
        EXPECT_EQ(test.program.KdlAddressPrefix, prefix) << text;
        EXPECT_EQ(test.program.DeviceAddress, address) << text;
    }
}

}  // namespace
}  // namespace vek
