#include "platform/posix/comports.h"

#include <gtest/gtest.h>

#include "platform/temporaryfolder.h"

namespace vek {
namespace {

namespace fs = std::filesystem;

TEST(ComPorts, EachNumberHasItsDevice) {
    const TemporaryFolder data;
    const struct {
        int number;
        const char* path;
    } cases[] = {
        {1, "/dev/ttyUSB0"},
        {8, "/dev/ttyUSB7"},
        {9, "/dev/ttyACM0"},
        {12, "/dev/ttyACM3"},
        {13, "/dev/ttyS0"},
        {16, "/dev/ttyS3"},
        {0, ""},
        {17, ""},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(comDevicePath(data.path(), c.number), c.path);
        EXPECT_EQ(comDevicePath("", c.number), c.path);
    }
}

TEST(ComPorts, ALinkNamesAnotherDevice) {
    const TemporaryFolder data;
    fs::create_directory(data.path() / "ports");
    fs::create_symlink("/dev/null", data.file("ports/com3"));
    fs::create_symlink("/dev/absent", data.file("ports/com9"));
    fs::create_symlink("../line", data.file("ports/com10"));
    putBytes(data.file("ports/com4"), "no link");

    const PortInfo there = comPortInfo(data.path(), 3);
    EXPECT_EQ(there.devicePath, "/dev/null");
    EXPECT_EQ(there.group, "root");
    const PortInfo dangling = comPortInfo(data.path(), 9);
    EXPECT_EQ(dangling.devicePath, "/dev/absent");
    EXPECT_EQ(dangling.group, "");
    EXPECT_EQ(comDevicePath(data.path(), 10), data.file("line"));
    EXPECT_EQ(comDevicePath(data.path(), 4), "/dev/ttyUSB3");
}

}  // namespace
}  // namespace vek
