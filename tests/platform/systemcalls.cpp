#include "systemcalls.h"

#include <linux/serial.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <cstdarg>

vek::SystemCalls vek::systemCalls;

// These stand before the system's own functions of the same names.
extern "C" {

int fsync(int file) {
    struct stat state {};
    ::fstat(file, &state);
    vek::systemCalls.log.emplace_back(S_ISDIR(state.st_mode) ? "flush folder" : "flush file");
    return static_cast<int>(::syscall(SYS_fsync, file));
}

int renameat(int fromFolder, const char* from, int toFolder, const char* to) noexcept {
    vek::systemCalls.log.emplace_back("rename");
    return static_cast<int>(::syscall(SYS_renameat2, fromFolder, from, toFolder, to, 0));
}

int ioctl(int device, unsigned long request, ...) noexcept {
    static unsigned driverFlags = ASYNC_SPD_HI;
    std::va_list arguments;
    va_start(arguments, request);
    void* const argument = va_arg(arguments, void*);
    va_end(arguments);
    const bool toDriver = request == TIOCGSERIAL || request == TIOCSSERIAL;
    if (!toDriver || !vek::systemCalls.driverHasLowLatency) {
        return static_cast<int>(::syscall(SYS_ioctl, device, request, argument));
    }
    int& flags = static_cast<serial_struct*>(argument)->flags;
    if (request == TIOCSSERIAL) {
        driverFlags = static_cast<unsigned>(flags);
        vek::systemCalls.log.emplace_back(driverFlags == ASYNC_SPD_HI ? "low latency off" : "low latency on");
    }
    flags = static_cast<int>(driverFlags);
    return 0;
}
}
