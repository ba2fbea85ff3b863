#include "platform/diskprofilefiles.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <random>
#include <thread>

#include "systemcalls.h"
#include "temporaryfolder.h"

namespace vek {
namespace {

namespace fs = std::filesystem;

const std::vector<ProfileEntry> port{{"RS485", "COM", "0"}, {"RS485", "BAUD", "0"}};
constexpr const char* portText = "[RS485]\r\nCOM=0\r\nBAUD=0\r\n";

class DiskProfileFilesTest : public testing::Test {
  protected:
    std::size_t entryCount() const {
        return static_cast<std::size_t>(std::distance(fs::directory_iterator(folder.path()), {}));
    }
    static struct stat stateOf(const std::string& path) {
        struct stat state {};
        EXPECT_EQ(::stat(path.c_str(), &state), 0) << path;
        return state;
    }

    TemporaryFolder folder;
    std::string path = folder.file("Einstellungen.ini");
    DiskProfileFiles files;
};

TEST_F(DiskProfileFilesTest, KeepsPermissionsAndOwnerAndGivesNewFilesTheUsualOnes) {
    putBytes(path, "");
    ASSERT_EQ(::chmod(path.c_str(), 0640), 0);
    const bool given = ::chown(path.c_str(), 12345, 23456) == 0;
    EXPECT_TRUE(files.write(path, port));
    EXPECT_EQ(stateOf(path).st_mode & 07777U, 0640U);
    if (given) {
        EXPECT_EQ(stateOf(path).st_uid, 12345U);
        EXPECT_EQ(stateOf(path).st_gid, 23456U);
    }
    const mode_t mask = ::umask(027);
    EXPECT_TRUE(files.write(folder.file("new.ini"), port));
    EXPECT_EQ(stateOf(folder.file("new.ini")).st_mode & 07777U, 0640U);
    ASSERT_EQ(::chmod(folder.path().c_str(), 02775), 0);
    EXPECT_TRUE(files.write(folder.file("shared.ini"), port));
    EXPECT_EQ(stateOf(folder.file("shared.ini")).st_mode & 07777U, 0660U);
    ::umask(mask);
}

TEST_F(DiskProfileFilesTest, FollowsLinksAndLeavesThem) {
    fs::create_directory(folder.path() / "real");
    const std::string target = folder.file("real/target.ini");
    fs::create_symlink("real/hop.ini", path);
    fs::create_symlink(target, folder.file("real/hop.ini"));
    for (const char* state : {"dangling", "there"}) {
        EXPECT_TRUE(files.write(path, port)) << state;
        EXPECT_TRUE(fs::is_symlink(path)) << state;
        EXPECT_FALSE(fs::is_symlink(target)) << state;
        EXPECT_EQ(bytesOf(target), portText) << state;
        EXPECT_EQ(files.text(path), portText) << state;
    }
    const std::string loop = folder.file("loop.ini");
    fs::create_symlink(loop, loop);
    EXPECT_FALSE(files.write(loop, port));
}

TEST_F(DiskProfileFilesTest, RefusesWhatIsNoRegularFile) {
    const std::string pipe = folder.file("pipe.ini");
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    fs::create_directory(path);
    for (const std::string& refused :
         {pipe, path, path + "/", path + "/missing/x.ini", pipe + "/x.ini", std::string("/dev/null"),
          std::string(), path + std::string("\0x", 2)}) {
        EXPECT_FALSE(files.write(refused, port)) << refused;
        EXPECT_EQ(files.text(refused), "") << refused;
    }
    EXPECT_EQ(entryCount(), 2U);
    EXPECT_TRUE(fs::is_empty(path));
}

TEST_F(DiskProfileFilesTest, AFullDiskLeavesTheOldFileAndNoOther) {
    putBytes(path, "[RS485]\r\nCOM=5\r\n");
    // No file of this process may grow beyond 20 bytes for a moment.
    rlimit before{};
    ::getrlimit(RLIMIT_FSIZE, &before);
    const rlimit full{20, before.rlim_max};
    auto* const handler = std::signal(SIGXFSZ, SIG_IGN);
    ::setrlimit(RLIMIT_FSIZE, &full);
    EXPECT_FALSE(files.write(path, {{"RS485", "FRAME", ",e,8,1"}}));
    EXPECT_FALSE(files.write(folder.file("new.ini"), port));
    ::setrlimit(RLIMIT_FSIZE, &before);
    std::signal(SIGXFSZ, handler);
    EXPECT_EQ(bytesOf(path), "[RS485]\r\nCOM=5\r\n");
    EXPECT_EQ(entryCount(), 1U);
}

TEST_F(DiskProfileFilesTest, AFolderOrFileThatMayNotBeWrittenKeepsTheOldBytes) {
    putBytes(path, portText);
    const std::string readOnly = folder.file("nur-lesen.ini");
    putBytes(readOnly, portText);
    ASSERT_EQ(::chmod(path.c_str(), 0666), 0);
    ASSERT_EQ(::chmod(readOnly.c_str(), 0444), 0);
    ASSERT_EQ(::chmod(folder.path().c_str(), 0777), 0);
    const auto refusedToAUser = [&](const std::string& file) {
        constexpr uid_t nobody = 65534;
        const uid_t user = ::geteuid();
        EXPECT_TRUE(user != 0 || ::seteuid(nobody) == 0);
        const bool written = files.write(file, {{"RS485", "COM", "9"}});
        return ::seteuid(user) == 0 && !written;
    };
    EXPECT_TRUE(refusedToAUser(readOnly));
    ASSERT_EQ(::chmod(folder.path().c_str(), 0555), 0);
    EXPECT_TRUE(refusedToAUser(path));
    EXPECT_TRUE(refusedToAUser(folder.file("neu.ini")));
    ASSERT_EQ(::chmod(folder.path().c_str(), 0755), 0);
    EXPECT_EQ(bytesOf(path), portText);
    EXPECT_EQ(bytesOf(readOnly), portText);
    EXPECT_EQ(entryCount(), 2U);
}

TEST_F(DiskProfileFilesTest, AFileIsOnTheDiskBeforeItTakesTheOldOnesPlace) {
    systemCalls = {};
    EXPECT_TRUE(files.write(path, port));
    EXPECT_EQ(systemCalls.log, (std::vector<std::string>{"flush file", "rename", "flush folder"}));
}

TEST_F(DiskProfileFilesTest, AProgramKilledWhileItWritesLeavesTheOldFileOrTheNewOne) {
    const std::array<std::string, 2> values = {std::string(20'000, 'x'), std::string(30'000, 'y')};
    std::array<int, 2> found{};
    std::mt19937 random(1);
    EXPECT_TRUE(files.write(path, {{"S", "k", values[0]}}));
    // On until the moments have met each of the two contents and a write that was under way.
    const auto goesOn = [&](int count) {
        return count < 200 || found[0] == 0 || found[1] == 0 || entryCount() == 1;
    };
    for (int count = 0; goesOn(count); ++count) {
        ASSERT_LT(count, 5000) << "the moments miss the writing";
        const pid_t child = ::fork();
        if (child == 0) {
            for (std::size_t turn = 1;; ++turn) {
                files.write(path, {{"S", "k", values.at(turn % 2)}});
            }
        }
        // Longer and longer, as a busy machine may not let the child begin.
        std::this_thread::sleep_for(
            std::chrono::microseconds(300 + random() % (1000 + 10U * static_cast<unsigned>(count))));
        ::kill(child, SIGKILL);
        ::waitpid(child, nullptr, 0);
        const std::string left = bytesOf(path);
        const std::size_t which = left.find('y') == std::string::npos ? 0 : 1;
        ASSERT_EQ(left, "[S]\r\nk=" + values.at(which) + "\r\n") << "after kill " << count;
        ++found.at(which);
    }
}

}  // namespace
}  // namespace vek
