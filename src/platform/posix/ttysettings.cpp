#include "platform/posix/ttysettings.h"

#include <linux/serial.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>

#include <algorithm>
#include <array>
#include <cerrno>

namespace vek {

namespace {

/// What the system calls the baud rates, in their order.
constexpr std::array<speed_t, baudRates.size()> speeds = {B1200,  B2400,  B4800,  B9600,
                                                          B19200, B38400, B57600, B115200};

constexpr tcflag_t frameFlags = CSIZE | PARENB | PARODD | CMSPAR | CSTOPB | CRTSCTS;

/// B0 for a rate that is not in the table.
speed_t speedOf(int baudRate) {
    const auto found = std::find(baudRates.begin(), baudRates.end(), baudRate);
    return found == baudRates.end() ? B0 : speeds.at(static_cast<std::size_t>(found - baudRates.begin()));
}

tcflag_t frameFlagsOf(const SerialSettings& settings) {
    tcflag_t flags = settings.dataBits == 7 ? CS7 : CS8;
    flags |= settings.parity == 'n' ? 0 : PARENB;
    flags |= settings.parity == 'o' ? PARODD : 0;
    flags |= settings.stopBits == 2 ? CSTOPB : 0;
    return flags;
}

/// A pseudo-terminal has no line: the kernel drops parity and data bits there whatever is asked for.
bool isPseudoTerminal(int terminal) {
    constexpr unsigned firstMajor = 136;
    constexpr unsigned lastMajor = 143;
    struct stat state {};
    if (::fstat(terminal, &state) != 0) {
        return false;
    }
    const unsigned driver = major(state.st_rdev);
    return driver >= firstMajor && driver <= lastMajor;
}

bool sameLine(const termios& wanted, const termios& actual, tcflag_t comparedFlags) {
    return ::cfgetispeed(&wanted) == ::cfgetispeed(&actual) &&
           ::cfgetospeed(&wanted) == ::cfgetospeed(&actual) &&
           ((wanted.c_cflag ^ actual.c_cflag) & comparedFlags) == 0;
}

bool switchLowLatency(int terminal, bool on) {
    constexpr int lowLatency = ASYNC_LOW_LATENCY;
    serial_struct driver{};
    if (::ioctl(terminal, TIOCGSERIAL, &driver) != 0 || ((driver.flags & lowLatency) != 0) == on) {
        return false;
    }
    driver.flags ^= lowLatency;
    return ::ioctl(terminal, TIOCSSERIAL, &driver) == 0;
}

}  // namespace

PortError portErrorOf(int code) {
    switch (code) {
        case ENOENT:
        case ENXIO:
        case ENODEV:
        case EIO:
        case ENOTTY:
        case ENOTDIR:
        case EISDIR:
        case ELOOP:
        case ENAMETOOLONG:
            return PortError::NotThere;
        case EBUSY:
        case EWOULDBLOCK:
            return PortError::InUse;
        case EACCES:
        case EPERM:
            return PortError::NotPermitted;
        case EINVAL:
            return PortError::SettingsRefused;
        default:
            return PortError::Failed;
    }
}

termios byteLine(termios line, const SerialSettings& settings) {
    ::cfmakeraw(&line);
    line.c_iflag &= ~static_cast<tcflag_t>(IXOFF | IXANY | INPCK | IGNPAR);
    // Of seven bits nothing else tells that a byte was spoiled; the driver then hands on a NUL in its place.
    line.c_iflag |= settings.dataBits == 7 && settings.parity != 'n' ? INPCK : 0;
    line.c_cflag = (line.c_cflag & ~frameFlags) | frameFlagsOf(settings) | CLOCAL | CREAD;
    line.c_cc[VMIN] = 1;
    line.c_cc[VTIME] = 0;
    const speed_t speed = speedOf(settings.baudRate);
    ::cfsetispeed(&line, speed);
    ::cfsetospeed(&line, speed);
    return line;
}

PortError applySettings(int terminal, const SerialSettings& settings) {
    termios line{};
    if (::tcgetattr(terminal, &line) != 0) {
        return portErrorOf(errno);
    }
    const termios wanted = byteLine(line, settings);
    const bool pseudo = isPseudoTerminal(terminal);
    // A pseudo-terminal refuses parity with EINVAL when nothing else changes, although it takes all the rest.
    if (::tcsetattr(terminal, TCSANOW, &wanted) != 0 && !(pseudo && errno == EINVAL)) {
        return portErrorOf(errno);
    }
    // tcsetattr() succeeds as soon as it could do anything of what was asked for.
    if (::tcgetattr(terminal, &line) != 0) {
        return portErrorOf(errno);
    }
    const tcflag_t compared = pseudo ? 0 : frameFlags;
    return sameLine(wanted, line, compared) ? PortError::None : PortError::SettingsRefused;
}

bool raiseLowLatency(int terminal) {
    return switchLowLatency(terminal, true);
}

void lowerLowLatency(int terminal) {
    switchLowLatency(terminal, false);
}

}  // namespace vek
