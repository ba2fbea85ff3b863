#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include "simulator/modbusslave.h"

namespace vek::sim {

// A file descriptor that closes itself.
class FileDescriptor {
  public:
    explicit FileDescriptor(int fd = -1) : fd_(fd) {}
    FileDescriptor(FileDescriptor&& other) noexcept;
    FileDescriptor& operator=(FileDescriptor&& other) noexcept;
    ~FileDescriptor();

    int get() const { return fd_; }

  private:
    int fd_;
};

// A raw pseudo-terminal whose one end is the simulated line. It outlives the programs that open its other
// end: it keeps that end open itself, and when one of them goes it tidies up as a serial port does, which
// forgets what nobody has read and who wanted to be alone. Failures of the constructor throw
// std::system_error.
class PseudoTerminal {
  public:
    PseudoTerminal();

    const std::string& path() const { return path_; }
    // Readable when bytes are there.
    int dataFd() const { return master_.get(); }
    // Readable when a program has opened or closed the port.
    int usersFd() const { return events_.get(); }

    void followUsers();
    // What is there to read, possibly nothing. Call followUsers() first if there is both.
    Bytes read();
    // Bytes for which there is no room or nobody to read them are lost.
    void write(std::span<const std::uint8_t> bytes);
    // The rate that the program at the other end has set in bit/s, nothing if it is none of the usual ones.
    std::optional<int> baudRate() const;

  private:
    void forgetUser();

    FileDescriptor master_;
    FileDescriptor slave_;
    FileDescriptor events_;
    std::string path_;
    bool used_ = false;
};

// A symbolic link to the pseudo-terminal, made in one step and removed at the end if it is still ours.
class PortLink {
  public:
    // Replaces a link, refuses to replace anything else. Failures throw std::runtime_error.
    PortLink(std::string path, const std::string& target);
    PortLink(const PortLink&) = delete;
    PortLink& operator=(const PortLink&) = delete;
    ~PortLink();

  private:
    std::string path_;
    std::string target_;
};

}  // namespace vek::sim
