#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
#include <string>
#include <vector>

#include "simulator/options.h"

namespace vek::sim {
namespace {

std::variant<ProgramOptions, std::string> parse(const std::string& line) {
    std::vector<std::string_view> words;
    for (std::size_t start = 0; start < line.size();) {
        const std::size_t end = std::min(line.find(' ', start), line.size());
        words.push_back(std::string_view(line).substr(start, end - start));
        start = end + 1;
    }
    return parseOptions(words);
}

TEST(Options, SetTheDeviceAndTheLine) {
    const auto parsed = parse(
        "--type 9 --name vekQJK731-K7-2 --address 0 --baud 115200 --parity odd --pace --turnaround 40 --seed "
        "7 "
        "--speed 0.5 --state warning --state earth-warning --kdl --battery normal --battery all --fault "
        "unended,command=IDNV? --fault crc "
        "--fault cut=3,register=1000,every=2,from=5,times=4 --link /x/y --duration 1.5 --verbose");
    ASSERT_TRUE(std::holds_alternative<ProgramOptions>(parsed)) << std::get<std::string>(parsed);
    const auto& options = std::get<ProgramOptions>(parsed);
    const DeviceOptions& device = options.line.device;
    EXPECT_EQ(device.type, 9);
    EXPECT_EQ(device.name, "vekQJK731-K7-2");
    EXPECT_EQ(device.address, 0);
    EXPECT_EQ(device.baudRate, 115200);
    EXPECT_EQ(device.parity, 1);
    EXPECT_EQ(device.seed, 7U);
    EXPECT_EQ(device.speed, 0.5);
    EXPECT_TRUE(device.conditions.warning && device.conditions.earthWarning && device.kdl);
    EXPECT_TRUE(options.line.pace && options.verbose && !options.help);
    EXPECT_EQ(options.line.turnaround, std::chrono::milliseconds(40));
    EXPECT_EQ(options.duration, std::chrono::milliseconds(1500));
    ASSERT_EQ(options.line.faults.size(), 3U);
    EXPECT_EQ(describe(options.line.faults[0]),
              "the reply lacks its CR LF (KDL bus), requests that begin with :IDNV? only");
    EXPECT_EQ(describe(options.line.faults[2]),
              "the reply ends after so many bytes (3 bytes), requests for register 1000 only, "
              "one request in 2, from request 5 on, at most 4 times");
}

TEST(Options, RefuseNonsenseAndSayWhere) {
    std::istringstream lines(
        "--type 11;--type x;--address 248;--baud 1000;--speed nan;--parity mark;--state tired;"
        "--battery flat;--battery;--name averyverylongdevicename;--nonsense;--fault storm;--fault late;"
        "--fault late=x;--fault silence=3;--fault silence,command=;--fault crc,every=0;--fault lacks=70000");
    for (std::string line; std::getline(lines, line, ';');) {
        const auto parsed = parse(line);
        ASSERT_TRUE(std::holds_alternative<std::string>(parsed)) << line;
        const std::string& problem = std::get<std::string>(parsed);
        const std::string option = line.substr(0, line.find(' '));
        EXPECT_TRUE(problem.find(option) != std::string::npos || problem.find("fault") != std::string::npos)
            << problem;
    }
}

}  // namespace
}  // namespace vek::sim
