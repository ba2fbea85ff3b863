#include "platform/posix/posixserial.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <termios.h>

#include <atomic>
#include <ctime>
#include <thread>

#include "platform/pseudoterminal.h"
#include "platform/temporaryfolder.h"

namespace vek {
namespace {

namespace fs = std::filesystem;

using std::chrono::seconds;

class PosixSerialTest : public testing::Test {
  protected:
    PosixSerialTest() {
        fs::create_directory(data.path() / "ports");
        pointCom1To(line.path());
    }

    void pointCom1To(const std::string& device) const {
        const std::string link = data.file("ports/com1");
        fs::remove(link);
        fs::create_symlink(device, link);
    }

    /// Waits in vain, but until the deadline.
    void expectSilence(Milliseconds span) {
        const TimePoint deadline = Clock::now() + span;
        EXPECT_FALSE(serial.waitReceived(10, deadline));
        EXPECT_GE(Clock::now(), deadline);
    }

    TemporaryFolder data;
    PseudoTerminal line;
    PosixSerial serial{data.path()};
};

/// Processor time of the whole process since the object was made.
class ProcessorTime {
  public:
    Milliseconds used() const { return Milliseconds{(std::clock() - begin_) * 1000 / CLOCKS_PER_SEC}; }

  private:
    std::clock_t begin_ = std::clock();
};

TEST_F(PosixSerialTest, OpensAsAPlainByteLineWithTheSettings) {
    const std::pair<const char*, speed_t> cases[] = {
        {"1200,n,8,1", B1200},   {"2400,e,8,1", B2400},   {"4800,o,8,1", B4800},   {"9600,e,7,1", B9600},
        {"19200,e,8,1", B19200}, {"38400,n,8,2", B38400}, {"57600,o,7,2", B57600}, {"115200,e,8,1", B115200}};
    const FileDescriptor neighbour = line.openPort();
    for (const auto& [settings, speed] : cases) {
        ASSERT_TRUE(serial.setSettings(settings));
        ASSERT_EQ(serial.open(), PortError::None) << settings;
        termios state{};
        ASSERT_EQ(::tcgetattr(neighbour.get(), &state), 0);
        EXPECT_EQ(::cfgetospeed(&state), speed);
        EXPECT_EQ(state.c_lflag & (ICANON | ECHO | ISIG), 0U);
        EXPECT_EQ(state.c_iflag & (IXON | IXOFF | ICRNL | INLCR | ISTRIP), 0U);
        EXPECT_EQ(state.c_oflag & OPOST, 0U);
        EXPECT_EQ(state.c_cflag & (CLOCAL | CREAD | CRTSCTS), tcflag_t{CLOCAL | CREAD});
        serial.close();
    }
}

TEST_F(PosixSerialTest, EveryByteGoesBothWaysUnchanged) {
    std::string all;
    for (int byte = 0; byte < 256; ++byte) {
        all += static_cast<char>(byte);
    }
    const FileDescriptor neighbour = line.openPort();
    line.send("from before\n");
    pollfd state{neighbour.get(), POLLIN, 0};
    ASSERT_EQ(::poll(&state, 1, 1000), 1);
    ASSERT_EQ(serial.open(), PortError::None);
    EXPECT_EQ(serial.receivedCount(), 0U) << "opening drops what came before";
    EXPECT_EQ(line.take(13).size(), 13U) << "its echo, from before the port was opened";
    serial.writeOutput(all);
    serial.waitSent();
    EXPECT_EQ(serial.sendQueueCount(), 0U);
    EXPECT_EQ(line.take(all.size()), all);
    line.send(all);
    EXPECT_TRUE(serial.waitReceived(all.size(), Clock::now() + seconds{1}));
    EXPECT_EQ(serial.receivedCount(), all.size());
    EXPECT_EQ(serial.readInput(), all);
    EXPECT_EQ(serial.readInput(), "");
}

TEST_F(PosixSerialTest, OnePortHasOneUser) {
    PosixSerial other(data.path());
    ASSERT_EQ(serial.open(), PortError::None);
    EXPECT_EQ(serial.open(), PortError::InUse);
    EXPECT_TRUE(serial.isOpen());
    EXPECT_EQ(other.open(), PortError::InUse);
    EXPECT_FALSE(serial.setPortNumber(2));
    serial.close();
    EXPECT_EQ(other.open(), PortError::None);
    EXPECT_TRUE(serial.setPortNumber(16));
    EXPECT_FALSE(serial.setPortNumber(17));
    EXPECT_FALSE(serial.setPortNumber(0));
}

TEST_F(PosixSerialTest, WhatIsNoSerialPortIsNotThere) {
    const std::string pipe = data.file("pipe");
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    putBytes(data.file("file"), "");
    for (const std::string& device : {std::string("/dev/absent"), std::string("/dev/null"), pipe,
                                      data.file("file"), data.path().string()}) {
        pointCom1To(device);
        EXPECT_EQ(serial.open(), PortError::NotThere) << device;
        EXPECT_FALSE(serial.isOpen());
    }
}

TEST_F(PosixSerialTest, AForbiddenPortIsNotPermitted) {
    if (::geteuid() == 0) {
        GTEST_SKIP() << "the administrator may open any port";
    }
    ASSERT_EQ(::chmod(line.path().c_str(), 0), 0);
    EXPECT_EQ(serial.open(), PortError::NotPermitted);
}

TEST_F(PosixSerialTest, WaitsForTheByteThatCompletesTheCountOrForTheDeadline) {
    ASSERT_EQ(serial.open(), PortError::None);
    std::thread device([this] {
        line.send("1234");
        std::this_thread::sleep_for(Milliseconds{5});
        line.send("5");
    });
    const TimePoint begin = Clock::now();
    EXPECT_TRUE(serial.waitReceived(5, begin + seconds{10}));
    EXPECT_LT(Clock::now() - begin, seconds{5});
    device.join();
    EXPECT_TRUE(serial.waitReceived(5, TimePoint::min()));
    expectSilence(Milliseconds{5});
    EXPECT_FALSE(serial.waitReceived(6, TimePoint::min()));
    EXPECT_EQ(serial.readInput(), "12345");
}

TEST_F(PosixSerialTest, ADeviceThatVanishesDoesNotAnswerUntilItIsBack) {
    ASSERT_TRUE(serial.setSettings("19200,e,8,1"));
    ASSERT_EQ(serial.open(), PortError::None);
    ASSERT_TRUE(serial.setSettings("1200,e,8,1"));  // for a later open(), not for this line
    line.send("12");
    line.hangUp();
    const ProcessorTime processor;
    expectSilence(Milliseconds{50});
    EXPECT_LT(processor.used(), Milliseconds{25}) << "the wait spins";
    EXPECT_EQ(serial.open(), PortError::InUse);
    serial.writeOutput("lost");
    serial.waitSent();
    EXPECT_EQ(serial.sendQueueCount(), 0U);
    expectSilence(Milliseconds{2});
    serial.readInput();

    PseudoTerminal again;
    pointCom1To(again.path());
    serial.writeOutput("frame");
    EXPECT_EQ(again.take(5), "frame");
    again.send("reply");
    EXPECT_TRUE(serial.waitReceived(5, Clock::now() + seconds{1}));
    EXPECT_EQ(serial.readInput(), "reply");
    PosixSerial other(data.path());
    EXPECT_EQ(other.open(), PortError::InUse);

    // A write may be the first to notice that the device was changed.
    again.hangUp();
    PseudoTerminal third;
    pointCom1To(third.path());
    serial.writeOutput("frame");
    EXPECT_EQ(third.take(5), "frame");
}

TEST_F(PosixSerialTest, AFloodIsBoundedInSpaceAndTime) {
    ASSERT_EQ(serial.open(), PortError::None);
    std::atomic<bool> stop = false;
    std::thread device([this, &stop] {
        const std::string chunk(4096, 'x');
        while (!stop) {
            line.send(chunk);
        }
    });
    const TimePoint deadline = Clock::now() + Milliseconds{30};
    EXPECT_FALSE(serial.waitReceived(10'000'000, deadline));
    EXPECT_LT(Clock::now(), deadline + seconds{1});
    EXPECT_LE(serial.receivedCount(), 65536U);
    stop = true;
    device.join();
}

TEST_F(PosixSerialTest, APeerThatNeverReadsDoesNotHoldUpTheWriter) {
    const FileDescriptor neighbour = line.openPort();
    ASSERT_EQ(serial.open(), PortError::None);
    const std::string chunk(4096, 'x');
    while (::write(neighbour.get(), chunk.data(), chunk.size()) > 0) {
    }
    const ProcessorTime processor;
    const TimePoint begin = Clock::now();
    serial.writeOutput("frame");
    serial.close();
    EXPECT_LT(Clock::now() - begin, seconds{1});
    EXPECT_LT(processor.used(), Milliseconds{25}) << "the wait spins";
}

TEST_F(PosixSerialTest, AClosedPortDropsEverythingAndWaitsInVain) {
    serial.writeOutput("x");
    serial.waitSent();
    serial.close();
    expectSilence(Milliseconds{2});
    ASSERT_EQ(serial.open(), PortError::None);
    line.send("waiting");
    EXPECT_TRUE(serial.waitReceived(7, Clock::now() + seconds{1}));
    serial.close();
    EXPECT_EQ(serial.receivedCount(), 0U);
    EXPECT_EQ(line.take(1), "");
}

}  // namespace
}  // namespace vek
