#include <fcntl.h>
#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <functional>
#include <random>
#include <thread>

#include "app/ModBusLink.h"
#include "kills.h"
#include "parameters/parameterfiles.h"
#include "platform/posix/posixprofilefiles.h"
#include "platform/temporaryfolder.h"
#include "support/testprogram.h"

namespace vek {
namespace {

namespace fs = std::filesystem;

using Boxes = std::vector<std::string>;
using Microseconds = std::chrono::microseconds;

/// The program on the real disk; the rest of the platform are stand-ins.
struct DiskFiles {
    PosixProfileFiles disk;
};
struct DiskProgram : DiskFiles, TestProgram {
    DiskProgram() : TestProgram({}, nullptr, &disk) {}
};

/// Takes over one of two settings in the interface dialog, which stores them.
void saveSettings(DiskProgram& on, const std::string& path, bool second) {
    on.program.ProfilePath = path;
    auto& dialog = on.open<ModBusLink>();
    dialog.optCom[second ? 11 : 0].value = true;
    dialog.optBaud[second ? 7 : 3].value = true;
    (second ? dialog.opt8n1 : dialog.opt8e1).value = true;
    dialog.btnOk.click();
    on.program.windows.collect();
}

/// Saves one of two parameter sets, which differ from the file's first lines to its last.
void saveParameters(DiskProgram& on, const std::string& path, bool second) {
    on.program.DeviceType = 1;
    on.program.DeviceName = "vekQB731-K75-2";
    on.desktop.files = {path};
    ParameterControls controls;
    controls.chkAnkop.value = second;
    controls.txtAdresse.text = second ? "90" : "3";
    controls.txtTab.text = second ? "99" : "1";
    SaveParameterFile(on.program, controls);
}

/// One of the files that the program keeps, and how it comes about.
struct Kind {
    const char* name;
    void (*save)(DiskProgram& on, const std::string& path, bool second);
    const char* lastEntry;  ///< of the second content
    Boxes refused;          ///< what the user is told when the file cannot be written
};

void PrintTo(const Kind& kind, std::ostream* out) {
    *out << kind.name;
}

int entryCount(const fs::path& folder) {
    return static_cast<int>(std::distance(fs::directory_iterator(folder), {}));
}

class Durability : public testing::TestWithParam<Kind> {
  protected:
    void save(bool second) const {
        DiskProgram on;
        GetParam().save(on, path, second);
    }

    /// What the saving of one of the two contents tells the user.
    Boxes boxesOfSaving(const std::string& file, bool second) const {
        DiskProgram on;
        GetParam().save(on, file, second);
        return on.desktop.takeBoxes();
    }

    /// Runs the steps in a process that sees the machine as they change it. Its checks are part of the test.
    static bool holdsInOwnProcess(const std::function<void()>& steps) {
        std::fflush(nullptr);
        const pid_t child = ::fork();
        if (child == 0) {
            steps();
            std::fflush(nullptr);
            std::_Exit(HasFailure() ? 1 : 0);
        }
        int status = -1;
        return ::waitpid(child, &status, 0) == child && status == 0;
    }

    TemporaryFolder folder;
    std::string path = folder.file("Datei");
};

/// A process that saves the two contents in turn until it is killed.
class EndlessSaving {
  public:
    EndlessSaving(const Kind& kind, const std::string& path, bool second) {
        std::array<int, 2> ends{};
        if (::pipe(ends.data()) != 0) {
            return;
        }
        child_ = ::fork();
        if (child_ == 0) {
            ::prctl(PR_SET_PDEATHSIG, SIGKILL);
            DiskProgram on;
            ::close(ends[1]);
            for (;; second = !second) {
                kind.save(on, path, second);
            }
        }
        ::close(ends[1]);
        char none = 0;
        while (::read(ends[0], &none, 1) > 0) {  // ends when the other end is closed: the first save begins
        }
        ::close(ends[0]);
    }
    ~EndlessSaving() {
        ::kill(child_, SIGKILL);
        ::waitpid(child_, nullptr, 0);
    }
    EndlessSaving(const EndlessSaving&) = delete;
    EndlessSaving& operator=(const EndlessSaving&) = delete;

  private:
    pid_t child_ = -1;
};

TEST_P(Durability, AProgramKilledWhileItSavesLeavesTheOldFileOrTheNewOne) {
    putBytes(path, "; Anlage 7\r\n[Fremd]\r\na=b\r\n");
    std::array<std::string, 2> contents;
    const auto begin = std::chrono::steady_clock::now();
    for (const std::size_t second : {0U, 1U}) {
        save(second != 0);
        contents.at(second) = bytesOf(path);
    }
    const auto twoSaves = std::chrono::duration_cast<Microseconds>(std::chrono::steady_clock::now() - begin);
    ASSERT_NE(contents[0], contents[1]);
    ASSERT_NE(contents[1].find(GetParam().lastEntry), std::string::npos);

    std::mt19937 random(kills.seed);
    std::uniform_int_distribution<Microseconds::rep> moment(0, twoSaves.count());
    std::array<unsigned, 2> found{};
    for (unsigned count = 0; count < kills.count; ++count) {
        {
            const EndlessSaving saving(GetParam(), path, (count & 1U) == 0);
            std::this_thread::sleep_for(Microseconds(moment(random)));
        }
        const std::string left = bytesOf(path);
        const auto* const whole = std::find(contents.begin(), contents.end(), left);
        ASSERT_TRUE(whole != contents.end()) << "after kill " << count << ":\n" << left;
        ++found.at(static_cast<std::size_t>(whole - contents.begin()));
    }
    const int interrupted = entryCount(folder.path()) - 1;
    std::printf("%u kills with seed %u: %u first, %u second content, %d while a new file was being written\n",
                kills.count, kills.seed, found[0], found[1], interrupted);
    EXPECT_TRUE(found[0] != 0 && found[1] != 0 && interrupted != 0) << "the moments miss the saving";
}

/// A disk of 16 pages of which this many are left.
class NearlyFullDisk {
  public:
    explicit NearlyFullDisk(const fs::path& folder) : ballast_(folder / "Ballast") {
        mounted_ = ::unshare(CLONE_NEWNS) == 0 &&
                   ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
                   ::mount("none", folder.c_str(), "tmpfs", 0, "size=65536,mode=755") == 0;
    }
    explicit operator bool() const { return mounted_; }

    void leave(std::size_t pages) {
        fs::remove(ballast_);
        putBytes(ballast_, std::string(fs::space(ballast_.parent_path()).available - pages * pageSize, 'x'));
        ASSERT_EQ(fs::space(ballast_.parent_path()).available, pages * pageSize);
    }

    static constexpr std::size_t pageSize = 4096;

  private:
    fs::path ballast_;
    bool mounted_ = false;
};

TEST_P(Durability, AFullDiskLeavesTheOldFile) {
    if (!holdsInOwnProcess([this] { ASSERT_TRUE(NearlyFullDisk(folder.path())); })) {
        GTEST_SKIP() << "only the administrator can have a small disk of his own";
    }
    EXPECT_TRUE(holdsInOwnProcess([this] {
        NearlyFullDisk disk(folder.path());
        putBytes(path, ";" + std::string(2 * NearlyFullDisk::pageSize, '7') + "\r\n");
        save(false);
        const std::string old = bytesOf(path);
        for (const std::size_t pages : {0U, 1U, 2U}) {
            disk.leave(pages);
            EXPECT_EQ(boxesOfSaving(path, true), GetParam().refused) << pages << " pages left";
            EXPECT_TRUE(bytesOf(path) == old) << pages << " pages left";
            EXPECT_EQ(entryCount(folder.path()), 2) << pages << " pages left";
        }
        disk.leave(3);
        save(true);
        EXPECT_NE(bytesOf(path).find(GetParam().lastEntry), std::string::npos) << "there is room for it";
    }));
}

TEST_P(Durability, AFolderThatMayNotBeWrittenToKeepsTheOldFile) {
    save(false);
    const std::string old = bytesOf(path);
    ASSERT_EQ(::chmod(path.c_str(), 0666), 0);
    ASSERT_EQ(::chmod(folder.path().c_str(), 0555), 0);
    EXPECT_TRUE(holdsInOwnProcess([this] {
        constexpr uid_t nobody = 65534;
        if (::geteuid() == 0) {
            ASSERT_TRUE(::setgid(nobody) == 0 && ::setuid(nobody) == 0)
                << "the administrator may do everything";
        }
        EXPECT_EQ(boxesOfSaving(path, true), GetParam().refused);
        EXPECT_EQ(boxesOfSaving(folder.file("neu"), true), GetParam().refused);
    }));
    EXPECT_EQ(bytesOf(path), old);
    EXPECT_EQ(entryCount(folder.path()), 1);
    ::chmod(folder.path().c_str(), 0755);
}

INSTANTIATE_TEST_SUITE_P(Files, Durability,
                         testing::Values(Kind{"Settings", saveSettings, "FRAME=,n,8,1", {}},
                                         Kind{"Parameters",
                                              saveParameters,
                                              "Tab=99",
                                              {"Fehler|stop|ok|Parameter konnten nicht gesichert werden"}}),
                         testing::PrintToStringParamName());

}  // namespace
}  // namespace vek
