#include <gtest/gtest.h>

#include "kdl/KDLBusLink.h"
#include "kdl/kdldevice.h"

namespace vek {
namespace {

using Boxes = std::vector<std::string>;
using Lines = std::vector<std::string>;
using Pieces = std::vector<std::pair<int, std::string>>;  // ms from the request on, bytes

constexpr Milliseconds pause{5};
constexpr Milliseconds timeOut{200};
const Bytes request = ":;003:IDNM?&dZs\r\n";

class KdlLink : public testing::Test {
  protected:
    void SetUp() override {
        configureKdl(test.program);
        KdlOpenPort(test.program);
    }

    void answerWith(const Pieces& pieces) {
        test.serial.peer = [this, pieces](std::string_view) {
            for (const auto& [delay, bytes] : pieces) {
                test.serial.reply(bytes, Milliseconds{delay});
            }
        };
    }

    Bytes transact() {
        const TimePoint begin = test.clock.now();
        Bytes result = KdlTransact(test.program, ":IDNM?");
        took = std::chrono::duration_cast<Milliseconds>(test.clock.now() - begin);
        EXPECT_FALSE(test.program.TimeOut.enabled);
        EXPECT_FALSE(test.program.TimeOutElapsed);
        return result;
    }

    Lines logLines() const {
        Lines lines;
        for (std::uint64_t index = 0; index < test.program.terminalLog.lineCount(); ++index) {
            const char* const names[] = {"black ", "red ", "blue "};
            lines.push_back(names[static_cast<int>(test.program.terminalLog.line(index).color)] +
                            test.program.terminalLog.text(index));
        }
        return lines;
    }

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
    EXPECT_EQ(logLines(), (Lines{"black :;003:IDNM?&dZs", "blue abcdefvekQA&dZB"}));
    EXPECT_TRUE(test.desktop.boxes.empty());
}

TEST_F(KdlLink, TheTimeOutRunsFromTheMomentTheLastByteIsOut) {
    for (const int sending : {0, 70}) {
        test.serial.sendTime = Milliseconds{sending};
        answerWith({});
        EXPECT_EQ(transact(), "#TIMEOUT_ERROR#");
        EXPECT_EQ(took, pause + Milliseconds{sending} + timeOut);
        answerWith({{sending + 199, "abcdef42&dZB\r\n"}});
        EXPECT_EQ(transact(), "42");
        EXPECT_EQ(took, pause + Milliseconds{sending + 199});
        answerWith({{sending + 201, "abcdef42&dZB\r\n"}});
        EXPECT_EQ(transact(), "#TIMEOUT_ERROR#");
        EXPECT_EQ(took, pause + Milliseconds{sending} + timeOut);
        test.clock.advance(Milliseconds{1});
    }
    test.serial.sendTime = Milliseconds{60'000};
    answerWith({});
    EXPECT_EQ(transact(), "#TIMEOUT_ERROR#") << "the line stands still";
    EXPECT_LT(took, Milliseconds{5000});
}

TEST_F(KdlLink, RepliesMayComeInPiecesUntilTheTimeIsUp) {
    const std::tuple<Pieces, Bytes, int> cases[] = {
        {{{1, "abc"}, {90, "def4"}, {199, "2&dZB\r\n"}}, "42", 199},
        {{{5, "abcdef42&dZB\r"}, {150, "\n"}}, "42", 150},
        {{{9, "abcdef1&\r\n"}, {40, "abcdef2&\r\n"}}, "1", 9},
        {{{150, "abcdef42&d"}, {201, "ZB\r\n"}}, "#TIMEOUT_ERROR#", 200},
    };
    for (const auto& [pieces, payload, milliseconds] : cases) {
        answerWith(pieces);
        EXPECT_EQ(transact(), payload);
        EXPECT_EQ(took, pause + Milliseconds{milliseconds});
        test.clock.advance(Milliseconds{50});
    }
}

struct ReplyCase {
    Bytes reply;
    Bytes payload;
    Lines log;  ///< in blue
};

TEST_F(KdlLink, RepliesOfAllKinds) {
    const Bytes none = "#TIMEOUT_ERROR#";
    const ReplyCase cases[] = {
        {"", none, {}},
        {"abcdef&dZB\r\n", "", {"abcdef&dZB"}},
        {"abcdef42&...\r\n", "42", {"abcdef42&..."}},
        {"abc\r\n", "abc", {"abc"}},
        {"\r\n", "", {""}},
        {"abcdef42&dZB", none, {"abcdef42&dZB"}},
        {"abcdef42&dZB\r", none, {"abcdef42&dZB\uFFFD"}},
        {"abcdef42&dZB\n\r", none, {"abcdef42&dZB\uFFFD\uFFFD"}},
        {"ab\r\ncd42&dZB", none, {"ab", "cd42&dZB"}},
        {"ab\r\ncd42&dZB\r\n", "42", {"ab", "cd42&dZB"}},
        {Bytes("abcdef\0\x80\xE4\x7F&\xFF\r\n", 14), Bytes("\0\x80\xE4\x7F", 4), {"abcdef\uFFFD€ä\uFFFD&ÿ"}},
    };
    Lines expected;
    for (const ReplyCase& c : cases) {
        answerWith({{9, c.reply}});
        EXPECT_EQ(transact(), c.payload) << c.reply;
        EXPECT_EQ(took, pause + (c.payload == none ? timeOut : Milliseconds{9})) << c.reply;
        expected.emplace_back("black :;003:IDNM?&dZs");
        for (const std::string& line : c.log) {
            expected.push_back("blue " + line);
        }
        EXPECT_EQ(logLines(), expected) << c.reply;
    }
}

TEST_F(KdlLink, WhatCameBeforeTheRequestIsNoAnswerToIt) {
    answerWith({{201, "abcdefLATE&dZB\r\n"}});
    EXPECT_EQ(transact(), "#TIMEOUT_ERROR#");
    test.clock.advance(Milliseconds{2});
    answerWith({{9, "abcdef42&dZB\r\n"}});
    EXPECT_EQ(transact(), "42");
    EXPECT_EQ(logLines().back(), "blue abcdef42&dZB");

    test.serial.reply("stale without an end");
    test.clock.advance(Milliseconds{1});
    answerWith({});
    EXPECT_EQ(transact(), "#TIMEOUT_ERROR#");
    EXPECT_EQ(logLines().back(), "black :;003:IDNM?&dZs");
}

TEST_F(KdlLink, BytesThatComeInThePauseOrWhileSendingDoNotStopTheClocks) {
    test.serial.sendTime = Milliseconds{10};
    test.serial.reply("=;003:17&dZB\r\n", Milliseconds{2});  // too late for the request before
    answerWith({{3, "abcd"}, {30, "ef42&dZB\r\n"}});
    EXPECT_EQ(transact(), "42") << "not the late reply";
    EXPECT_EQ(took, pause + Milliseconds{30});
    EXPECT_LT(test.desktop.eventRounds, 30) << "sleeps until something happens";
}

TEST_F(KdlLink, AFloodEndsWithTheTimeOutAndFillsNothing) {
    const Bytes flood = "abcdef" + Bytes(70'000, 'x') + "&dZB\r\n";
    answerWith({{9, flood}});
    EXPECT_EQ(transact(), "#TIMEOUT_ERROR#");
    EXPECT_EQ(took, pause + timeOut);
    EXPECT_EQ(test.program.terminalLog.widestLine(), 65536U);

    test.serial.peer = [&](std::string_view) {
        test.serial.reply(Bytes(70'000, '\n'), Milliseconds{0}, Milliseconds{1});
    };
    EXPECT_EQ(transact(), "#TIMEOUT_ERROR#");
    EXPECT_EQ(took, pause + timeOut) << "no byte starts the time anew";

    const Bytes longest = "abcdef" + Bytes(65536 - 9, 'x') + "&\r\n";
    KdlClosePort(test.program);
    KdlOpenPort(test.program);
    answerWith({{9, longest}});
    EXPECT_EQ(transact(), Bytes(65536 - 9, 'x'));
}

TEST_F(KdlLink, ADeviceThatIsPulledOutOrGoneDoesNotAnswer) {
    test.serial.peer = [this](std::string_view) { test.serial.hangUp(); };
    EXPECT_EQ(transact(), "#TIMEOUT_ERROR#");
    EXPECT_EQ(took, pause + timeOut);
    EXPECT_EQ(transact(), "#TIMEOUT_ERROR#");
    KdlClosePort(test.program);
    KdlOpenPort(test.program);
    EXPECT_FALSE(test.serial.isOpen());
    EXPECT_EQ(transact(), "#TIMEOUT_ERROR#") << "closed port";
    EXPECT_EQ(took, pause + timeOut);
    EXPECT_EQ(test.serial.lost, (std::vector<Bytes>{request, request}));
    EXPECT_TRUE(test.desktop.boxes.empty()) << "without a message";
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
    KdlClosePort(test.program);
    EXPECT_EQ(test.serial.closeCount, 1);
    const std::tuple<std::int16_t, std::int32_t, int, const char*> cases[] = {
        {16, 115200, 16, "115200,e,7,1"}, {17, 1200, 16, "1200,e,7,1"}, {0, 300, 16, "9600,e,7,1"}};
    for (const auto& [comPort, baudRate, opened, settings] : cases) {
        test.program.ComPort = comPort;
        test.program.BaudRate = baudRate;
        KdlOpenPort(test.program);
        EXPECT_EQ(test.serial.openings.back().number, opened) << comPort;
        EXPECT_EQ(test.serial.openings.back().settings, settings) << comPort;
        KdlClosePort(test.program);
    }
}

TEST_F(KdlLink, AddressesFromText) {
    const std::tuple<const char*, const char*, int> cases[] = {
        {" 7", ":;007", 7}, {"247", ":;247", 247}, {"12a", ":;12a", 12}, {"2ü", ":;02\xFC", 2}};
    for (const auto& [text, prefix, address] : cases) {
        KdlSetAddress(test.program, text);
        EXPECT_EQ(test.program.KdlAddressPrefix, prefix) << text;
        EXPECT_EQ(test.program.DeviceAddress, address) << text;
    }
}

TEST(KdlAddress, ATextOfAnotherLengthEndsTheProgramWithoutAWord) {
    for (const char* text : {"", "   ", "1234", "0012", "12abc"}) {
        TestProgram test;
        configureKdl(test.program);
        test.open<LastWindow>();
        EXPECT_TRUE(test.endsProgram([&] { KdlSetAddress(test.program, text); })) << text;
        EXPECT_EQ(test.program.KdlAddressPrefix, "     ");
        EXPECT_EQ(test.host.log.back(), "-lastWindow");
        EXPECT_TRUE(test.desktop.boxes.empty());
    }
}

TEST(KdlEnd, AtNoMomentOfATransactionAnythingFollowsTheEndOfTheProgram) {
    int moment = 0;
    for (bool ended = true; ended;) {
        ++moment;
        ASSERT_LT(moment, 50);
        TestProgram test;
        configureKdl(test.program);
        auto& mainWindow = test.open<LastWindow>();
        KdlOpenPort(test.program);
        test.serial.sendTime = Milliseconds{3};
        test.serial.peer = [&](std::string_view) {
            test.serial.reply(kdlReply("42"), Milliseconds{3}, Milliseconds{1});
        };
        std::size_t writtenAtEnd = 0;
        test.desktop.onEvents = [&] {
            if (test.desktop.eventRounds == moment) {
                writtenAtEnd = test.serial.written.size();
                mainWindow.closeBoxPressed();
            }
        };
        ended = test.endsProgram([&] { KdlTransact(test.program, ":IDNM?"); });
        const std::size_t linesOfReply = ended ? 0 : 1;
        EXPECT_EQ(test.serial.written.size(), ended ? writtenAtEnd : 1U) << moment;
        EXPECT_EQ(test.program.terminalLog.lineCount(), test.serial.written.size() + linesOfReply) << moment;
        EXPECT_TRUE(test.desktop.boxes.empty());
    }
    EXPECT_GT(moment, 10) << "pause, sending and each byte of the reply";
}

}  // namespace
}  // namespace vek
