#include "platform/serialport.h"

#include <gtest/gtest.h>
#include <sys/ioctl.h>
#include <sys/stat.h>

#include <atomic>
#include <ctime>
#include <thread>

#include "platform/posix/posixline.h"
#include "platform/posix/ttysettings.h"
#include "pseudoterminal.h"
#include "systemcalls.h"
#include "temporaryfolder.h"

namespace vek {
namespace {

namespace fs = std::filesystem;

using std::chrono::seconds;

class SerialPortTest : public testing::Test {
  protected:
    SerialPortTest() {
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
    SerialPort serial{std::make_unique<PosixLine>(data.path())};
};

/// Processor time of the whole process since the object was made.
class ProcessorTime {
  public:
    Milliseconds used() const { return Milliseconds{(std::clock() - begin_) * 1000 / CLOCKS_PER_SEC}; }

  private:
    std::clock_t begin_ = std::clock();
};

TEST(ByteLine, HasTheFrameOfTheSettingsAndNothingElse) {
    const std::tuple<const char*, speed_t, tcflag_t> cases[] = {
        {"1200,n,8,1", B1200, CS8},
        {"2400,e,8,1", B2400, CS8 | PARENB},
        {"4800,o,8,1", B4800, CS8 | PARENB | PARODD},
        {"9600,e,7,1", B9600, CS7 | PARENB},
        {"19200,o,7,2", B19200, CS7 | PARENB | PARODD | CSTOPB},
        {"38400,n,8,2", B38400, CS8 | CSTOPB},
        {"57600,n,7,1", B57600, CS7},
        {"115200,e,8,2", B115200, CS8 | PARENB | CSTOPB},
    };
    termios before{};
    before.c_iflag = before.c_oflag = before.c_lflag = before.c_cflag = ~tcflag_t{0};
    for (const auto& [settings, speed, frame] : cases) {
        for (const termios& state : {before, termios{}}) {
            const termios line = byteLine(state, *parseSerialSettings(settings));
            EXPECT_EQ(::cfgetospeed(&line), speed) << settings;
            EXPECT_EQ(::cfgetispeed(&line), speed) << settings;
            EXPECT_EQ(line.c_cflag & (CSIZE | PARENB | PARODD | CMSPAR | CSTOPB), frame) << settings;
            EXPECT_EQ(line.c_cflag & (CLOCAL | CREAD | CRTSCTS), tcflag_t{CLOCAL | CREAD});
            EXPECT_EQ(line.c_iflag & (IXON | IXOFF | IXANY | ICRNL | INLCR | ISTRIP | IGNPAR | PARMRK), 0U);
            const bool checked = (frame & (CSIZE | PARENB)) == (CS7 | PARENB);
            EXPECT_EQ((line.c_iflag & INPCK) != 0, checked) << settings << ": spoiled bytes come as NUL";
            EXPECT_EQ(line.c_lflag & (ICANON | ECHO | ISIG), 0U);
            EXPECT_EQ(line.c_oflag & OPOST, 0U);
            EXPECT_EQ(line.c_cc[VMIN], 1) << "or no data would look like a hang-up";
            EXPECT_EQ(line.c_cc[VTIME], 0);
        }
    }
}

TEST(PortErrors, AreToldApartByTheirCure) {
    const std::pair<int, PortError> cases[] = {
        {ENOENT, PortError::NotThere},    {ENODEV, PortError::NotThere},
        {ENOTTY, PortError::NotThere},    {EBUSY, PortError::InUse},
        {EWOULDBLOCK, PortError::InUse},  {EACCES, PortError::NotPermitted},
        {EPERM, PortError::NotPermitted}, {EINVAL, PortError::SettingsRefused},
        {ENOMEM, PortError::Failed}};
    for (const auto& [code, error] : cases) {
        EXPECT_EQ(portErrorOf(code), error) << code;
    }
}

TEST_F(SerialPortTest, EveryByteGoesBothWaysUnchanged) {
    std::string all;
    for (int byte = 0; byte < 256; ++byte) {
        all += static_cast<char>(byte);
    }
    const FileDescriptor neighbour = line.openPort();
    line.send("from before\n");
    EXPECT_EQ(line.take(13).size(), 13U) << "its echo, from before the port was opened";
    ASSERT_TRUE(serial.setSettings("115200,n,8,1"));
    ASSERT_EQ(serial.open(), PortError::None);
    EXPECT_TRUE(serial.isConnected());
    EXPECT_EQ(serial.receivedCount(), 0U) << "opening drops what came before";
    termios state{};
    ASSERT_EQ(::tcgetattr(neighbour.get(), &state), 0);
    EXPECT_EQ(::cfgetospeed(&state), speed_t{B115200});
    serial.writeOutput(all);
    serial.waitSent();
    EXPECT_EQ(serial.sendQueueCount(), 0U);
    EXPECT_EQ(line.take(all.size()), all);
    line.send(all);
    EXPECT_TRUE(serial.waitReceived(all.size(), Clock::now() + seconds{10}));
    EXPECT_EQ(serial.receivedCount(), all.size());
    EXPECT_EQ(serial.readInput(), all);
    EXPECT_EQ(serial.readInput(), "");
}

TEST_F(SerialPortTest, OnePortHasOneUserAndTheDriverIsGivenBackAsItWas) {
    systemCalls = {.log = {}, .driverHasLowLatency = true};
    SerialPort other(std::make_unique<PosixLine>(data.path()));
    const FileDescriptor neighbour = line.openPort();
    ASSERT_EQ(serial.open(), PortError::None);
    EXPECT_EQ(serial.open(), PortError::InUse);
    EXPECT_TRUE(serial.isOpen());
    EXPECT_EQ(other.open(), PortError::InUse);
    EXPECT_FALSE(other.isOpen());
    EXPECT_FALSE(serial.setPortNumber(2));
    int exclusive = 0;
    ::ioctl(neighbour.get(), TIOCGEXCL, &exclusive);
    EXPECT_EQ(exclusive, 1);
    serial.close();
    ::ioctl(neighbour.get(), TIOCGEXCL, &exclusive);
    EXPECT_EQ(exclusive, 0);
    EXPECT_FALSE(serial.isConnected());
    EXPECT_EQ(systemCalls.log, (std::vector<std::string>{"low latency on", "low latency off"}));
    EXPECT_EQ(other.open(), PortError::None);
    for (const int number : {1, 16}) {
        EXPECT_TRUE(serial.setPortNumber(number));
        EXPECT_FALSE(serial.setPortNumber(number == 1 ? 0 : 17));
    }
    systemCalls = {};
}

TEST_F(SerialPortTest, WhatIsNoSerialPortIsNotThere) {
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

TEST_F(SerialPortTest, WaitsForTheByteThatCompletesTheCountOrForTheDeadline) {
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
    line.send("waiting");
    EXPECT_TRUE(serial.waitReceived(7, Clock::now() + seconds{10}));
    serial.close();
    EXPECT_EQ(serial.receivedCount(), 0U);
    serial.writeOutput("x");
    serial.waitSent();
    expectSilence(Milliseconds{2});
    EXPECT_EQ(line.take(1, 50), "") << "written to a closed port";
}

TEST_F(SerialPortTest, ADeviceThatVanishesDoesNotAnswerUntilItIsBack) {
    ASSERT_TRUE(serial.setSettings("19200,e,8,1"));
    ASSERT_EQ(serial.open(), PortError::None);
    ASSERT_TRUE(serial.setSettings("1200,e,8,1"));  // for a later open(), not for this line
    pointCom1To("/dev/absent");
    line.send("12");
    line.hangUp();
    const ProcessorTime processor;
    expectSilence(Milliseconds{50});
    EXPECT_LT(processor.used(), Milliseconds{25}) << "the wait spins";
    serial.readInput();
    EXPECT_TRUE(serial.isOpen());
    EXPECT_FALSE(serial.isConnected());
    EXPECT_EQ(serial.systemInput(), nullptr);
    EXPECT_EQ(serial.open(), PortError::InUse);
    serial.writeOutput("lost");
    serial.waitSent();
    EXPECT_EQ(serial.sendQueueCount(), 0U);
    expectSilence(Milliseconds{2});

    PseudoTerminal again;
    const FileDescriptor neighbour = again.openPort();
    pointCom1To(again.path());
    serial.writeOutput("frame");
    EXPECT_EQ(again.take(5), "frame");
    termios state{};
    ASSERT_EQ(::tcgetattr(neighbour.get(), &state), 0);
    EXPECT_EQ(::cfgetospeed(&state), speed_t{B19200});
    again.send("reply");
    EXPECT_TRUE(serial.waitReceived(5, Clock::now() + seconds{10}));
    EXPECT_EQ(serial.readInput(), "reply");
}

TEST_F(SerialPortTest, AFloodIsBoundedInSpaceAndTime) {
    ASSERT_EQ(serial.open(), PortError::None);
    std::atomic<bool> stop = false;
    std::thread device([&] {
        const std::string chunk(4096, 'x');
        while (!stop) {
            line.send(chunk);
        }
    });
    const TimePoint deadline = Clock::now() + Milliseconds{20};
    EXPECT_FALSE(serial.waitReceived(10'000'000, deadline));
    const TimePoint limit = deadline + seconds{5};
    while (serial.receivedCount() < 65536 && Clock::now() < limit) {
    }
    for (int more = 0; more < 100; ++more) {
        EXPECT_EQ(serial.receivedCount(), 65536U);
    }
    stop = true;
    device.join();
}

TEST_F(SerialPortTest, APeerThatNeverReadsDoesNotHoldUpTheWriter) {
    const FileDescriptor neighbour = line.openPort();
    ASSERT_EQ(serial.open(), PortError::None);
    const std::string chunk(4096, 'x');
    while (::write(neighbour.get(), chunk.data(), chunk.size()) > 0) {
    }
    const ProcessorTime processor;
    const TimePoint begin = Clock::now();
    serial.writeOutput("frame");
    serial.close();
    EXPECT_LT(Clock::now() - begin, seconds{5});
    EXPECT_LT(processor.used(), Milliseconds{40}) << "the wait spins";
}

}  // namespace
}  // namespace vek
