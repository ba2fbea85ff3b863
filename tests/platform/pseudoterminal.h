#pragma once

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <stdexcept>
#include <string>
#include <string_view>

#include "platform/posix/filedescriptor.h"

namespace vek {

/// A serial line in software: the port is `path`, the test holds the other end. The number in the path goes
/// to whichever process asks next once the line is hung up: nothing must point to it any more by then.
class PseudoTerminal {
  public:
    PseudoTerminal() : master_(::posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC)) {
        if (!master_ || ::grantpt(master_.get()) != 0 || ::unlockpt(master_.get()) != 0) {
            throw std::runtime_error("no pseudo-terminal");
        }
        path_ = ::ptsname(master_.get());
    }

    const std::string& path() const { return path_; }

    /// A second way into the port; to be opened before it becomes exclusive.
    FileDescriptor openPort() const {
        return FileDescriptor(::open(path_.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC));
    }

    /// Whether the line took all bytes.
    bool send(std::string_view bytes) {
        return ::write(master_.get(), bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size());
    }

    /// What arrives until `count` bytes are there, or no more come for so many milliseconds: a loaded machine
    /// may take long, so that only a test that expects nothing should be impatient.
    std::string take(std::size_t count, int patience = 10'000) {
        std::string bytes;
        std::array<char, 256> chunk;
        pollfd state{master_.get(), POLLIN, 0};
        while (bytes.size() < count && ::poll(&state, 1, patience) == 1 && (state.revents & POLLIN) != 0) {
            const ssize_t result = ::read(master_.get(), chunk.data(), chunk.size());
            if (result <= 0) {
                break;
            }
            bytes.append(chunk.data(), static_cast<std::size_t>(result));
        }
        return bytes;
    }

    /// Pulls the plug.
    void hangUp() { master_.reset(); }

  private:
    FileDescriptor master_;
    std::string path_;
};

}  // namespace vek
