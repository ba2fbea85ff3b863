#include <gtest/gtest.h>
#include <sys/stat.h>

#include "platform/posix/comports.h"
#include "platform/posix/posixfolders.h"
#include "platform/temporaryfolder.h"

namespace vek {
namespace {

namespace fs = std::filesystem;

TEST(ComPorts, EachNumberHasItsDeviceUnlessALinkNamesAnother) {
    const TemporaryFolder data;
    fs::create_directory(data.path() / "ports");
    fs::create_symlink("/dev/null", data.file("ports/com3"));
    fs::create_symlink("/dev/absent", data.file("ports/com9"));
    fs::create_symlink("../line", data.file("ports/com10"));
    putBytes(data.file("ports/com4"), "no link");
    const std::pair<int, std::string> cases[] = {{0, ""},
                                                 {1, "/dev/ttyUSB0"},
                                                 {3, "/dev/null"},
                                                 {4, "/dev/ttyUSB3"},
                                                 {8, "/dev/ttyUSB7"},
                                                 {17, ""},
                                                 {9, "/dev/absent"},
                                                 {12, "/dev/ttyACM3"},
                                                 {10, data.file("line")},
                                                 {13, "/dev/ttyS0"},
                                                 {16, "/dev/ttyS3"}};
    for (const auto& [number, device] : cases) {
        EXPECT_EQ(comDevicePath(data.path(), number), device);
    }
    EXPECT_EQ(comDevicePath("", 3), "/dev/ttyUSB2");
    EXPECT_EQ(comPortInfo(data.path(), 3).permitted, "nur für Mitglieder der Gruppe root");
    EXPECT_EQ(comPortInfo(data.path(), 9).device, "/dev/absent");
    EXPECT_EQ(comPortInfo(data.path(), 9).permitted, "");
}

TEST(PosixFolders, PreferTheSharedFolderThenTheUsersChoiceThenHome) {
    const TemporaryFolder root;
    const std::string shared = root.file("shared");
    const std::string xdg = root.file("xdg/data");
    const std::string home = root.file("home");
    const std::string file = root.file("file");
    fs::create_directory(shared);
    putBytes(file, "");
    const std::tuple<FolderCandidates, FolderResult, std::string> cases[] = {
        {{shared, xdg, home}, FolderResult::Ok, shared},
        {{shared + "//", "", ""}, FolderResult::Ok, shared},
        {{root.file("absent"), xdg + "/", home}, FolderResult::Ok, xdg},
        {{file, "relative", home + "/"}, FolderResult::Ok, home + "/.local/share"},
        {{"", "", "relative"}, FolderResult::NotFound, ""},
        {{"", file + "/x", home}, FolderResult::Failed, ""},
    };
    for (const auto& [candidates, result, path] : cases) {
        const Folder folder = PosixFolders(candidates).commonAppData();
        EXPECT_EQ(folder.result, result) << path;
        EXPECT_EQ(folder.path, path);
        EXPECT_TRUE(path.empty() || fs::is_directory(path)) << path;
    }
    struct stat state {};
    ASSERT_EQ(::stat((home + "/.local").c_str(), &state), 0);
    EXPECT_EQ(state.st_mode & 0777U, 0700U);
}

}  // namespace
}  // namespace vek
