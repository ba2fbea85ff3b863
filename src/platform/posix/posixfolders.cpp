#include "platform/posix/posixfolders.h"

#include <fcntl.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cstddef>
#include <cstdlib>
#include <utility>

namespace vek {

namespace {

bool isAbsolute(const std::string& path) {
    return !path.empty() && path.front() == '/';
}

bool isFolder(const std::string& path) {
    struct stat state {};
    return ::stat(path.c_str(), &state) == 0 && S_ISDIR(state.st_mode);
}

bool isWritable(const std::string& path) {
    return ::faccessat(AT_FDCWD, path.c_str(), W_OK | X_OK, AT_EACCESS) == 0;
}

std::string withoutTrailingSeparators(std::string path) {
    while (path.size() > 1 && path.back() == '/') {
        path.pop_back();
    }
    return path;
}

/// Makes the folder and its parents as far as they are missing.
bool makeFolder(const std::string& path) {
    std::size_t end = 0;
    do {
        end = path.find('/', end + 1);
        const std::string part = path.substr(0, end);
        if (::mkdir(part.c_str(), S_IRWXU) != 0 && !isFolder(part)) {
            return false;
        }
    } while (end != std::string::npos);
    return true;
}

std::string environment(const char* name) {
    const char* value = std::getenv(name);
    return value == nullptr ? "" : value;
}

std::string homeOfAccount() {
    std::array<char, 16384> texts;
    passwd account{};
    passwd* found = nullptr;
    ::getpwuid_r(::getuid(), &account, texts.data(), texts.size(), &found);
    return found == nullptr || found->pw_dir == nullptr ? "" : found->pw_dir;
}

}  // namespace

FolderCandidates systemFolderCandidates() {
    const std::string home = environment("HOME");
    return {"/var/lib/vekXX731_Monitor", environment("XDG_DATA_HOME"),
            isAbsolute(home) ? home : homeOfAccount()};
}

PosixFolders::PosixFolders(FolderCandidates candidates) : candidates_(std::move(candidates)) {}

Folder PosixFolders::commonAppData() {
    const std::string shared = withoutTrailingSeparators(candidates_.shared);
    if (isFolder(shared) && isWritable(shared)) {
        return {FolderResult::Ok, shared};
    }
    std::string own = candidates_.xdgDataHome;
    if (!isAbsolute(own)) {
        if (!isAbsolute(candidates_.home)) {
            return {FolderResult::NotFound, ""};
        }
        own = withoutTrailingSeparators(candidates_.home) + "/.local/share";
    }
    own = withoutTrailingSeparators(own);
    if (!makeFolder(own)) {
        return {FolderResult::Failed, ""};
    }
    return {FolderResult::Ok, own};
}

}  // namespace vek
