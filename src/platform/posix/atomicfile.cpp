#include "platform/seams/atomicfile.h"

#include <fcntl.h>
#include <sys/random.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <optional>
#include <system_error>
#include <utility>

#include "platform/posix/filedescriptor.h"

namespace vek {

namespace fs = std::filesystem;

namespace {

constexpr off_t largestFile = off_t{8} * 1024 * 1024;
constexpr mode_t permissionBits = S_IRWXU | S_IRWXG | S_IRWXO;
constexpr mode_t groupWrites = S_IRGRP | S_IWGRP;

/// A path of the system's own functions ends at a NUL; one inside would name another file.
bool isUsablePath(const std::string& path) {
    return !path.empty() && path.find('\0') == std::string::npos;
}

bool readAll(int descriptor, std::string& bytes) {
    std::array<char, 65536> chunk;
    for (;;) {
        const ssize_t count = ::read(descriptor, chunk.data(), chunk.size());
        if (count == 0) {
            return true;
        }
        if (count > 0) {
            bytes.append(chunk.data(), static_cast<std::size_t>(count));
        } else if (errno != EINTR) {
            return false;
        }
    }
}

bool writeAll(int descriptor, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t count = ::write(descriptor, bytes.data(), bytes.size());
        if (count >= 0) {
            bytes.remove_prefix(static_cast<std::size_t>(count));
        } else if (errno != EINTR) {
            return false;
        }
    }
    return true;
}

/// The path behind any chain of links, whether or not it exists; nothing for a chain that does not end.
std::optional<fs::path> behindLinks(fs::path path) {
    constexpr int mostLinks = 40;  // as many as the system itself follows
    for (int i = 0; i < mostLinks; ++i) {
        std::error_code notALink;
        const fs::path target = fs::read_symlink(path, notALink);
        if (notALink) {
            return path;
        }
        path = path.parent_path() / target;
    }
    return std::nullopt;
}

/// A new file beside the one to replace, under a name that nobody can foresee; goes again unless it is moved
/// into place.
class TemporaryFile {
  public:
    TemporaryFile(int folder, mode_t mode) : folder_(folder) {
        constexpr int flags = O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC;
        std::uint64_t random = 0;
        if (::getrandom(&random, sizeof random, 0) != ssize_t{sizeof random}) {
            return;
        }
        std::snprintf(name_.data(), name_.size(), ".%016llx.tmp", static_cast<unsigned long long>(random));
        file_ = FileDescriptor(::openat(folder_, name_.data(), flags, mode));
    }
    ~TemporaryFile() {
        if (file_) {
            ::unlinkat(folder_, name_.data(), 0);
        }
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    explicit operator bool() const { return static_cast<bool>(file_); }
    int descriptor() const { return file_.get(); }

    bool moveTo(const std::string& name) {
        if (::renameat(folder_, name_.data(), folder_, name.c_str()) != 0) {
            return false;
        }
        file_.reset();
        return true;
    }

  private:
    int folder_;
    std::array<char, 24> name_{};
    FileDescriptor file_;
};

/// Gives the new file the owner, group and permissions of the old one, as far as the user may.
bool takeOver(int descriptor, const struct stat& old) {
    constexpr auto unchanged = static_cast<uid_t>(-1);
    mode_t mode = old.st_mode & permissionBits;
    const bool groupKept = ::fchown(descriptor, unchanged, old.st_gid) == 0;
    if (!groupKept) {
        // The bits would now speak for another group: it gets no more than everybody has.
        mode = (mode & ~mode_t{S_IRWXG}) | (mode & S_IRWXO) << 3;
    }
    struct stat now {};
    if (::fstat(descriptor, &now) != 0) {
        return false;
    }
    if (now.st_uid != old.st_uid && ::fchown(descriptor, old.st_uid, unchanged) != 0) {
        // Only the administrator gives files away; for all others the file now belongs to its last writer.
        mode |= S_IRUSR | S_IWUSR;
    }
    return ::fchmod(descriptor, mode) == 0;
}

/// In a folder that hands its group down and lets it write, a new file is for the whole group too.
bool shareWithGroup(int descriptor, int folder) {
    constexpr mode_t shared = S_ISGID | S_IWGRP;
    struct stat folderState {};
    struct stat fileState {};
    if (::fstat(folder, &folderState) != 0 || ::fstat(descriptor, &fileState) != 0) {
        return false;
    }
    return (folderState.st_mode & shared) != shared ||
           ::fchmod(descriptor, (fileState.st_mode & permissionBits) | groupWrites) == 0;
}

/// State of the file that is to be replaced; nothing when there is none.
struct OldFile {
    bool replaceable = true;
    std::optional<struct stat> state;
};

OldFile inspect(int folder, const std::string& name) {
    struct stat state {};
    if (::fstatat(folder, name.c_str(), &state, AT_SYMLINK_NOFOLLOW) != 0) {
        return {errno == ENOENT, std::nullopt};
    }
    // A rename would replace a read-only file as well; who made it so did not want that.
    const bool writable = S_ISREG(state.st_mode) && ::faccessat(folder, name.c_str(), W_OK, AT_EACCESS) == 0;
    return {writable, state};
}

bool replaceIn(int folder, const std::string& name, std::string_view bytes) {
    const OldFile old = inspect(folder, name);
    if (!old.replaceable) {
        return false;
    }
    constexpr mode_t ownerOnly = S_IRUSR | S_IWUSR;
    constexpr mode_t asUsual = ownerOnly | groupWrites | S_IROTH | S_IWOTH;  // less the user's mask
    TemporaryFile temporary(folder, old.state ? ownerOnly : asUsual);
    if (!temporary) {
        return false;
    }
    const int file = temporary.descriptor();
    const bool complete = (old.state ? takeOver(file, *old.state) : shareWithGroup(file, folder)) &&
                          writeAll(file, bytes) && ::fsync(file) == 0 && temporary.moveTo(name);
    if (complete) {
        // The new file is in place whatever this says; it only hastens the folder's way to the disk.
        ::fsync(folder);
    }
    return complete;
}

}  // namespace

FileRead readRegularFile(const std::string& path, std::string& bytes) {
    if (!isUsablePath(path)) {
        return FileRead::Refused;
    }
    const FileDescriptor file(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    if (!file) {
        return errno == ENOENT ? FileRead::Missing : FileRead::Refused;
    }
    struct stat state {};
    if (::fstat(file.get(), &state) != 0 || !S_ISREG(state.st_mode) || state.st_size > largestFile) {
        return FileRead::Refused;
    }
    std::string all;
    all.reserve(static_cast<std::size_t>(state.st_size));
    if (!readAll(file.get(), all)) {
        return FileRead::Refused;
    }
    bytes = std::move(all);
    return FileRead::Ok;
}

bool replaceFile(const std::string& path, std::string_view bytes) {
    const auto target = isUsablePath(path) ? behindLinks(path) : std::nullopt;
    if (!target || !target->has_filename()) {
        return false;
    }
    const fs::path folder = target->has_parent_path() ? target->parent_path() : fs::path(".");
    const FileDescriptor descriptor(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    return descriptor && replaceIn(descriptor.get(), target->filename().string(), bytes);
}

}  // namespace vek
